#!/usr/bin/env python3
"""Holds the house to its law: arrows point down, and every public header stands by itself.

usage: layers.py SOURCE_FOLDER CXX

A folder may include the headers of its own and of the layers below, as the table says; a public header compiles alone.
"""
import os
import re
import subprocess
import sys

# Who may include what, by the first part of the path between the quotes or brackets.
OWN = {
    "platform": {"applications", "bundles", "files", "foundation", "internet", "machine", "preferences", "propertylists",
                 "CoreFoundation", "Carbon", "Platform"},
    "evaluator": {"core", "files", "language", "registry", "values", "Evaluator"},
    "inspectors": {"frame", "filesystem", "content", "versions", "plist", "system", "modules"},
    "command": {"command"},
}
PLATFORM_PUBLIC = {"CoreFoundation", "Carbon", "Platform"}
MAY = {
    "platform": OWN["platform"],
    "evaluator": OWN["evaluator"] | PLATFORM_PUBLIC,
    "inspectors": OWN["inspectors"] | PLATFORM_PUBLIC | {"Evaluator"},
    "command": OWN["command"] | {"Evaluator"},
}
EVERY = set().union(*OWN.values())
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^">]+)[">]')


def sources(folder):
    for path, _, files in os.walk(folder):
        for file in sorted(files):
            if file.endswith((".h", ".cpp", ".c")):
                yield os.path.join(path, file)


def broken_includes(root):
    for layer, may in MAY.items():
        for source in sources(os.path.join(root, layer)):
            with open(source, encoding="utf-8") as lines:
                for number, line in enumerate(lines, 1):
                    found = INCLUDE.match(line)
                    part = found and found.group(1).split("/")[0]
                    if part in EVERY and "/" in found.group(1) and part not in may:
                        yield f"{source}:{number}: {layer} may not include {found.group(1)}"
                    if layer == "command" and part == "Evaluator" and found.group(1) != "Evaluator/Embedding.h":
                        yield f"{source}:{number}: the command uses Evaluator/Embedding.h and nothing else of the host"


def broken_headers(root, compiler):
    folders = [os.path.join(root, layer, "include") for layer in ("platform", "evaluator")]
    for folder in folders:
        for header in sources(folder):
            name = os.path.relpath(header, folder)
            result = subprocess.run([compiler, "-std=c++20", "-fsyntax-only", "-x", "c++", "-Wall", "-Wextra",
                                     "-Wpedantic", "-Werror", *[f"-I{path}" for path in folders], "-"],
                                    input=f"#include <{name}>\n", text=True, stdout=subprocess.PIPE,
                                    stderr=subprocess.STDOUT)
            if result.returncode != 0:
                yield f"{header} does not compile alone:\n{result.stdout}"


def main():
    root, compiler = sys.argv[1], sys.argv[2]
    faults = [*broken_includes(root), *broken_headers(root, compiler)]
    print("\n".join(faults) or "the layers hold")
    sys.exit(1 if faults else 0)


main()
