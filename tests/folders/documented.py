#!/usr/bin/env python3
"""Compares the table of special folders in docs/linux.md with the one that the platform has.

usage: documented.py [--write]      --write brings the document up to date
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DOCUMENT = ROOT / "docs/linux.md"
BEGIN, END = "<!-- the table of platform/folders/folders.conf -->\n", "<!-- end of the table -->\n"
RECORD = re.compile(r'SpecialFolderRecords<0x([0-9A-F]{8})> \w+\{\s*"([^"]+)"', re.S)


def read_table():
    """The lines of each type: lists of paths by key."""
    types, lines = {}, None
    for line in (ROOT / "platform/folders/folders.conf").read_text().splitlines():
        if line.startswith("["):
            lines = types.setdefault(line[1:-1], {})
        elif line and not line.startswith("#"):
            key, value = line.split(" = ", 1)
            lines.setdefault(key, []).append(value)
    return types


def code_of(number):
    return "".join("ƒ" if byte == 0xC4 else chr(byte) for byte in bytes.fromhex(number))


def on_linux(lines, domain):
    """The paths in a domain, without those of a tree of Mac folders."""
    paths = [path for path in lines.get(domain, lines.get("every", [])) if not path.startswith("$MAC_")]
    return ", ".join(f"`{path}`" for path in paths)


def rows():
    types = read_table()
    yield "| phrase | type | usual | system | local | user |"
    yield "|---|---|---|---|---|---|"
    module = (ROOT / "inspectors/modules/SpecialFoldersModule.h").read_text()
    for number, phrase in RECORD.findall(module):
        code = code_of(number)
        lines = types[code]
        folders = [on_linux(lines, domain) for domain in ("system", "local", "user")]
        if "pair" in lines:
            folders = [f"that of `{lines['pair'][0]}` with ` (Disabled)`"] * 3
        usual = lines.get("usual", ["system"])[0]
        yield f"| {phrase} | `{code}` | {usual} | {' | '.join(folders)} |"


def main():
    text = DOCUMENT.read_text()
    begin, end = text.index(BEGIN) + len(BEGIN), text.index(END)
    table = "\n".join(rows()) + "\n"
    if sys.argv[1:] == ["--write"]:
        DOCUMENT.write_text(text[:begin] + table + text[end:])
    elif text[begin:end] != table:
        sys.exit("docs/linux.md is not up to date: tests/folders/documented.py --write")


main()
