#!/usr/bin/env python3
"""Looks at the dynamic symbols of the libraries.

usage: symbols.py INSPECTORS EVALUATOR

The inspector library exports its entry, the name of a character set and the two data of the exclusion list, and
nothing else. The evaluator exports
every service that an inspector library may call, by the very name and arguments that services.txt lists. No library of
ours has a GNU-unique symbol, which would keep it mapped for ever.
"""
import os
import subprocess
import sys


SERVICES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "services.txt")


def symbols(library, *options):
    """Name to type letter, of what the library defines."""
    lines = subprocess.run(["nm", "-D", "--defined-only", *options, library], stdout=subprocess.PIPE, text=True,
                           check=True).stdout.splitlines()
    return {name: letter for _, letter, name in (line.split(maxsplit=2) for line in lines)}


def missing_services(evaluator):
    offered = symbols(evaluator, "--demangle")
    with open(SERVICES, encoding="utf-8") as file:
        return [line for line in file.read().splitlines() if line not in offered]


def main():
    faults = []
    inspectors, evaluator = symbols(sys.argv[1]), symbols(sys.argv[2])
    expected = {"GetCurrentCharSet": "T", "__init": "T", "gFileExclusionList": "data", "gFileExclusionListLength": "data"}
    found = {name: letter if letter == "T" else "data" for name, letter in inspectors.items()
             if not name.startswith(("__asan", "__ubsan", "__odr_asan"))}
    if found != expected:
        faults.append(f"the inspector library exports {found}, not {expected}")
    missing = missing_services(sys.argv[2])
    if missing:
        faults.append("the evaluator does not export " + "; ".join(missing))
    for library, its in ((sys.argv[1], inspectors), (sys.argv[2], evaluator)):
        unique = [name for name, letter in its.items() if letter == "u"]
        if unique:
            faults.append(f"{library} has unique symbols: {unique}")
    print("\n".join(faults) or f"{len(found)} symbols of the inspector library, {len(evaluator)} of the evaluator")
    sys.exit(1 if faults else 0)


main()
