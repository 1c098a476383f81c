#!/usr/bin/env python3
"""Holds what the library registers, in order, against the list beside this file.

usage: registrations.py ZELQ

The list was made by hand from the tables of the contract, and is changed by hand: every row is a promise. Its lines are
such as these; "pure" is what depends on nothing but its parameters.

    # NUMBER of a module, and what it is about
    type "file" base "filesystem object" fingerprint               values of it can be told apart
    property "maker" "makers" of "component": "string"
    property "gestalt" "gestalts" ["string"]: "integer"            the index's type in brackets
    iterated property "component" "components": "component"
    cast "string" "version": "string" pure                         phrase, source, result
    operator = "version" "string": "boolean" pure                  left and right operand, result
    cache
"""
import difflib
import json
import subprocess
import sys
from pathlib import Path

SIGNS = {0: "+", 1: "-", 2: "*", 3: "/", 6: "=", 7: "<", 8: "<=", 11: "contains"}
LIST = Path(__file__).with_name("registrations.txt")


def row(entry):
    """The line of a registration as the program prints it."""
    kind, end = entry["kind"], " pure" if entry.get("dependsOnlyOnParameters") else ""
    quoted = {key: f'"{entry[key]}"' for key in entry if isinstance(entry[key], str)}
    if kind == "type":
        base = f' base {quoted["base"]}' if "base" in entry else ""
        return f'type {quoted["singular"]}{base}' + (" fingerprint" if entry["fingerprint"] else "")
    if kind == "cast":
        return f'cast {quoted["singular"]} {quoted["object"]}: {quoted["result"]}{end}'
    if kind == "operator":
        sign = SIGNS[entry["operator"]]
        return f'operator {sign} {quoted["left"]} {quoted["right"]}: {quoted["result"]}{end}'
    if kind == "cache":
        return "cache"
    kind = {"iterated": "iterated property"}.get(kind, kind)
    index = f' [{quoted["index"]}]' if "index" in entry else ""
    of = f' of {quoted["object"]}' if "object" in entry else ""
    return f'{kind} {quoted["singular"]} {quoted["plural"]}{index}{of}: {quoted["result"]}{end}'


def main():
    printed = subprocess.run([sys.argv[1], "--registrations"], stdout=subprocess.PIPE, text=True, check=True).stdout
    present = [row(json.loads(line)) for line in printed.splitlines()]
    lines = LIST.read_text(encoding="utf-8").splitlines()
    promised = [line for line in lines if not line.startswith("#")]
    modules = [line for line in lines if line.startswith("#")]
    difference = list(difflib.unified_diff(promised, present, "promised", "present", lineterm="", n=0))
    print("\n".join(difference) or f"{len(present)} registrations of {len(modules)} modules, as promised")
    sys.exit(1 if difference or len(promised) != 495 or promised.count("cache") != 6 else 0)


main()
