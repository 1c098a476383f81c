#!/usr/bin/env python3
"""Runs the examples of the documents and of --help, so that they stay true.

usage: examples.py ZELQ DOCUMENT...

In a document, a line `$ ./run ARGUMENTS` in a code block is run; the lines behind it, up to the next such line or the
end of the block, are what it prints (both streams). A line `…` stands for any further lines. The examples of --help
are run and must be answered. In a table, `QUERY` → `VALUE`, `VALUE` is a query and the values that it has.
"""
import re
import shlex
import subprocess
import sys


def run(zelq, arguments):
    return subprocess.run([zelq, *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="surrogateescape")


def examples(document):
    """Pairs of a command line and the lines that it prints."""
    found, inside = [], False
    with open(document, encoding="utf-8") as lines:
        for line in lines.read().splitlines():
            if line.startswith("```"):
                inside = not inside
                found.append((None, []))
            elif inside and line.startswith("$ ./run "):
                found.append((line[len("$ ./run "):], []))
            elif inside and found and line.startswith("$ "):
                found.append((None, []))
            elif inside and found:
                found[-1][1].append(line)
            elif not inside and line.startswith("|"):
                found += [(shlex.quote(query), re.findall("`([^`]*)`", values))
                          for query, values in re.findall("`([^`]*)` → (`[^`]*`(?:, `[^`]*`)*)", line)]
    return [example for example in found if example[0] is not None]


def matches(expected, printed):
    if "…" in expected:
        before = expected[:expected.index("…")]
        return printed[:len(before)] == before
    return expected == printed


def main():
    zelq, documents = sys.argv[1], sys.argv[2:]
    failed = count = 0
    for document in documents:
        for command, expected in examples(document):
            count += 1
            printed = run(zelq, shlex.split(command)).stdout.splitlines()
            if not matches(expected, printed):
                failed += 1
                print(f"{document}: ./run {command}\n  expected {expected}\n  printed  {printed}")
    for line in run(zelq, ["--help"]).stdout.splitlines():
        if line.startswith("  zelq "):
            count += 1
            result = run(zelq, shlex.split(line)[1:])
            if result.returncode != 0:
                failed += 1
                print(f"--help: {line.strip()}\n  exit status {result.returncode}: {result.stdout}")
    print(f"{count} examples, {failed} failed")
    sys.exit(1 if failed or not count else 0)


main()
