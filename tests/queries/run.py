#!/usr/bin/env python3
"""Asks the queries of a folder and compares what is printed with what is expected. README.md tells the format.

usage: run.py ZELQ FOLDER
"""
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
from tree import make_machine, make_tree  # noqa: E402

DIVIDER = re.compile(rb"^---(?: (error|status (\d+)))?$")

OF_THE_MACHINE = "components"  # the folder of queries that ask make_machine's machine


class Case:
    """A query and what it is expected to print."""

    def __init__(self, path):
        self.output, self.error, self.status = b"", b"", 0
        query, part = [], "query"
        for line in path.read_bytes().splitlines(keepends=True):
            divider = DIVIDER.match(line.rstrip(b"\n"))
            if divider and divider[2]:
                self.status, part = int(divider[2]), "end"
            elif divider:
                part = "error" if divider[1] else "output"
            elif part == "query":
                if query or not line.startswith(b"#"):
                    query.append(line)
            elif part == "end":
                raise ValueError(f"{path}: nothing may follow the status")
            else:
                setattr(self, part, getattr(self, part) + line)
        if part == "query" or not query:
            raise ValueError(f"{path}: a query and a line --- are wanted")
        self.query = b"".join(query).removesuffix(b"\n")


def ask(zelq, query, tree, machine):
    """Of the machine whose facts are below a folder; None for this one."""
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("LANG", "LANGUAGE") and not name.startswith(("LC_", "XDG_"))}
    environment |= {"TZ": "UTC", "HOME": str(tree / "lists")} | ({"ZELQ_MACHINE_ROOT": str(machine)} if machine else {})
    return subprocess.run([os.fsencode(zelq), query], cwd=tree, env=environment, stdin=subprocess.DEVNULL, capture_output=True,
                          timeout=60)


def shown(text):
    return "".join(f"    {line}\n" for line in text.decode(errors="backslashreplace").splitlines())


def differences(case, ran):
    """What is not as expected, for a person to read; nothing when all is."""
    text = ""
    for what, expected, printed in (("standard output", case.output, ran.stdout),
                                    ("standard error", case.error, ran.stderr)):
        if expected != printed:
            text += f"  expected on {what}\n{shown(expected)}  printed\n{shown(printed)}"
    if case.status != ran.returncode:
        text += f"  expected exit status {case.status}, and it was {ran.returncode}\n"
    return text and f"  query\n{shown(case.query)}{text}"


def main():
    zelq, folder = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    paths = sorted(folder.rglob("*.query"))
    failed = 0
    with tempfile.TemporaryDirectory(prefix="zelq-queries-") as scratch:
        tree = Path(scratch) / "tree"
        make_tree(tree)
        make_machine(Path(scratch) / "machine")
        for path in paths:
            case = Case(path)
            ran = ask(zelq, case.query, tree, Path(scratch) / "machine" if path.parent.name == OF_THE_MACHINE else None)
            ran.stderr = ran.stderr.replace(os.fsencode(tree), b"/tree")
            if difference := differences(case, ran):
                failed += 1
                print(f"{path.relative_to(folder)}\n{difference}")
    print(f"{len(paths)} queries, {failed} failed")
    sys.exit(1 if failed or not paths else 0)


main()
