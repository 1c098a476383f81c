#!/usr/bin/env python3
"""Holds what the library registers, in order, against the list beside this file.

usage: registrations.py ZELQ [--write]

With --write the list is written anew; look at the difference before you commit it: every row is a promise.
"""
import difflib
import os
import subprocess
import sys

LIST = os.path.join(os.path.dirname(os.path.abspath(__file__)), "registrations.jsonl")


def main():
    present = subprocess.run([sys.argv[1], "--registrations"], stdout=subprocess.PIPE, text=True, check=True).stdout
    if "--write" in sys.argv:
        with open(LIST, "w", encoding="utf-8") as file:
            file.write(present)
        return
    with open(LIST, encoding="utf-8") as file:
        promised = file.read()
    difference = list(difflib.unified_diff(promised.splitlines(), present.splitlines(), "promised", "present",
                                           lineterm="", n=0))
    print("\n".join(difference) or f"{len(present.splitlines())} registrations, as promised")
    sys.exit(1 if difference or not present else 0)


main()
