#!/usr/bin/env python3
"""Looks at the dynamic symbols of the libraries.

usage: symbols.py INSPECTORS EVALUATOR

The inspector library exports its entry and the two data of the exclusion list and nothing else. No library of ours has
a GNU-unique symbol, which would keep it mapped for ever.
"""
import subprocess
import sys


def symbols(library):
    """Name to type letter, of what the library defines."""
    lines = subprocess.run(["nm", "-D", "--defined-only", library], stdout=subprocess.PIPE, text=True,
                           check=True).stdout.splitlines()
    return {line.split()[2]: line.split()[1] for line in lines}


def main():
    faults = []
    inspectors, evaluator = symbols(sys.argv[1]), symbols(sys.argv[2])
    expected = {"__init": "T", "gFileExclusionList": "data", "gFileExclusionListLength": "data"}
    found = {name: letter if letter == "T" else "data" for name, letter in inspectors.items()
             if not name.startswith(("__asan", "__ubsan", "__odr_asan"))}
    if found != expected:
        faults.append(f"the inspector library exports {found}, not {expected}")
    for library, its in ((sys.argv[1], inspectors), (sys.argv[2], evaluator)):
        unique = [name for name, letter in its.items() if letter == "u"]
        if unique:
            faults.append(f"{library} has unique symbols: {unique}")
    print("\n".join(faults) or f"{len(found)} symbols of the inspector library, {len(evaluator)} of the evaluator")
    sys.exit(1 if faults else 0)


main()
