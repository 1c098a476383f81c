#!/usr/bin/env python3
"""Tries packaging/set-up on machines that are only pretended: the tools that it asks are scripts of this test.

usage: set_up.py SET_UP
"""
import os
import subprocess
import sys
import tempfile

FAULTS = []


def machine(folder, installed, user, sudo):
    """A folder of tools of a Debian machine with these packages; apt-get and sudo write down what they are told."""
    tools = {
        "dpkg": "echo amd64",
        "dpkg-query": f'case " {" ".join(installed)} " in *" $4 "*) echo installed ;; *) exit 1 ;; esac',
        "id": f"echo {user}",
        "apt-get": f'echo "$*" >>{folder}/log',
        "env": 'while [[ $1 == *=* ]]; do shift; done; exec "$@"',
        "dirname": 'exec /usr/bin/dirname "$@"',
    }
    if sudo:
        tools["sudo"] = f'echo sudo >>{folder}/log; exec "$@"'
    for name, body in tools.items():
        path = os.path.join(folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(f"#!/bin/bash\n{body}\n")
        os.chmod(path, 0o755)


def try_set_up(set_up, purposes, installed, user, sudo):
    """Exit status, what was printed, and what apt-get and sudo were told."""
    with tempfile.TemporaryDirectory() as folder:
        machine(folder, installed, user, sudo)
        result = subprocess.run(["/bin/bash", set_up, *purposes], env={"PATH": folder}, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, text=True)
        log = os.path.join(folder, "log")
        told = open(log, encoding="utf-8").read().splitlines() if os.path.exists(log) else []
        return result.returncode, result.stdout, told


def expect(what, true):
    if not true:
        FAULTS.append(what)


def main():
    set_up = sys.argv[1]
    with open(os.path.join(os.path.dirname(set_up), "debian-packages"), encoding="utf-8") as lines:
        rows = [line.split() for line in lines if line.strip() and not line.startswith("#")]
    every = [row[0] for row in rows]
    build = [row[0] for row in rows if row[1] == "build"]

    expect("nothing is done or said where nothing is missing",
           try_set_up(set_up, ["build", "test", "benchmark"], every, 0, False) == (0, "", []))
    expect("packages of other purposes are not asked for", try_set_up(set_up, ["build"], build, 0, False)[2] == [])

    status, said, told = try_set_up(set_up, ["build"], build[1:], 0, False)
    expect("root installs what is missing, and only that",
           status == 0 and build[0] in said and told[0].startswith("update") and told[1].endswith(" " + build[0]))
    status, said, told = try_set_up(set_up, ["build"], build[1:], 1000, True)
    expect("another user goes through sudo", status == 0 and told[0] == "sudo" and told[-1].endswith(build[0]))
    status, said, told = try_set_up(set_up, ["build"], build[1:], 1000, False)
    expect("without root and sudo the message names the package and the command",
           status == 1 and told == [] and f"apt-get install {build[0]}" in said)

    print("\n".join(f"not so: {fault}" for fault in FAULTS) or "set-up does what it should")
    sys.exit(1 if FAULTS else 0)


main()
