#!/usr/bin/env python3
"""Builds the examples against an installed copy of the system and nothing else, and asks them.

usage: installed_copy.py CMAKE CXX BUILD EXAMPLES FLAGS

Installs BUILD into a temporary folder, moves that, copies the EXAMPLES beside it, builds them there with the compiler
flags FLAGS and installs them into the copy.
"""
import os
import shutil
import subprocess
import sys
import tempfile

QUERY_OF_BOTH = 'name of file "/etc/hosts" & " " & value of environment variable "ZELQ_EXAMPLE"'
ENVIRONMENT = {"PATH": os.environ["PATH"], "ZELQ_EXAMPLE": "a=b", "EMPTY": ""}


def build(cmake, compiler, build_folder, examples, flags, folder):
    """Returns the folder of the installed copy, with the examples in it."""
    copy, own = os.path.join(folder, "copy"), os.path.join(folder, "examples")
    installed = os.path.join(folder, "installed")
    shutil.copytree(examples, own)
    for step in ([cmake, "--install", build_folder, "--prefix", installed],
                 ["mv", installed, copy],
                 [cmake, "-S", own, "-B", f"{own}/build", "-G", "Ninja", f"-DCMAKE_CXX_COMPILER={compiler}",
                  f"-DCMAKE_PREFIX_PATH={copy}", f"-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Werror {flags}"],
                 [cmake, "--build", f"{own}/build"],
                 [cmake, "--install", f"{own}/build", "--prefix", copy]):
        # A umask that lets a group write: what is built and installed is trusted nevertheless.
        result = subprocess.run(step, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, umask=0o002)
        if result.returncode != 0:
            sys.exit(f"{' '.join(step)} failed:\n{result.stdout}")
    return copy


def cases(copy):
    """What is run, with the exit status and all that is printed."""
    zelq, ask = f"{copy}/bin/zelq", f"{copy}/bin/ask"
    yield [zelq, QUERY_OF_BOTH], 0, "hosts a=b\n"
    yield [zelq, "--inspectors", f"{copy}/lib/Inspectors", QUERY_OF_BOTH], 0, "hosts a=b\n"
    yield ([zelq, 'names of environment variables whose (value of it = "a=b" or value of it = "")'], 0,
           "ZELQ_EXAMPLE\nEMPTY\n")
    yield [zelq, "environment variable \"ZELQ_EXAMPLE\""], 0, "environment variable ZELQ_EXAMPLE\n"
    yield [zelq, 'exists environment variable "ZELQ_EXAMPL"'], 0, "false\n"
    yield ([zelq, 'value of environment variable "NONE"'], 1,
           'error: no such object\n  value of environment variable "NONE"\n'
           '           ^~~~~~~~~~~~~~~~~~~~\n')
    yield [ask, 'name of environment variable "EMPTY"', "2"], 0, "one of type string\n" + 2 * "string: EMPTY\n"
    yield [ask, "(1; 2)", "1", f"{copy}/lib/Inspectors"], 0, "any number of type integer\ninteger: 1\ninteger: 2\n"
    yield [ask, "1 / 0", "2"], 1, ("one of type integer\n" + 2 * "evaluation problem at bytes 2 to 3: division by zero\n")
    yield [ask, 'valeu of environment variable "EMPTY"'], 1, (
        'meaning problem at bytes 0 to 5: an environment variable has no property "valeu"\n'
        '  hint: "value" is one; so is "name"\n')
    yield [ask, "1", "1", "/no such folder"], 0, (
        'cannot read the inspectors folder "/no such folder": No such file or directory\n'
        "one of type integer\ninteger: 1\n")
    yield [ask], 1, "usage: ask QUERY [TIMES [FOLDER]]\n"


def main():
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        for command, status, printed in cases(build(*sys.argv[1:], folder)):
            result = subprocess.run(command, env=ENVIRONMENT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                    text=True)
            if (result.returncode, result.stdout) != (status, printed):
                failed += 1
                print(f"{command}\n  expected {status} {printed!r}\n  came to {result.returncode} {result.stdout!r}")
    sys.exit(1 if failed else 0)


main()
