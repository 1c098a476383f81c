#!/usr/bin/env python3
"""Asks the queries of a folder and compares what is printed with what is expected. README.md tells the format.

usage: run.py ZELQ FOLDER
"""
import os
import plistlib
import re
import subprocess
import sys
import tempfile
from datetime import datetime, timezone
from pathlib import Path

DIVIDER = re.compile(rb"^---(?: (error|status (\d+)))?$")


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


SETTINGS = {
    "name": "Editor", "size": 42, "scale": 2.5, "large": 1 << 40, "enabled": True, "since": datetime(2001, 1, 1),
    "token": b"abc\0", "recent": ["a.txt", 7, {"page": 3}, []], "window": {"title": "caf\u00e9", "width": 640}, "none": {},
}
BUNDLE = {"CFBundleIdentifier": "org.example.editor", "CFBundleShortVersionString": "2.5b3", "CFBundleVersion": "build 7"}
PREFERENCES = {"font": "Mono", "recent": ["a.txt", "b.txt"], "tabs": 4, "wrap": False, "window": {"width": 640},
               "opened": datetime(2026, 1, 2, 3, 4, 5)}

# Internet settings as they are stored: a byte for the length of a text, and numbers with their high byte in front.
INTERNET = {
    "Email": b"\x0dme@stored.org", "UseSocks": b"\1", "PrinterFont": b"\0\x0c\0\0\6Monaco".ljust(260, b"\0"),
    "Services": b"\0\5\4http\0\x50\0\3\4ntp4\0\x7b\0\2\5https\1\xbb\0\1\3ftp\0\x15\0\1\4last\0\1\0\1",
    "ArchieAll": b"\0\2\x0barchie.a.fi\4more", "Helper\u2022mailto": b"MAIL\6Mailer".ljust(68, b"\0"),
    "Helper\u2022spoilt": b"MAIL",
}


def make_lists(folder):
    """Property lists, a bundle, and the preferences of a user whose home this is."""
    def write(name, content):
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)

    write("settings.plist", plistlib.dumps(SETTINGS, sort_keys=False))
    write("binary.plist", plistlib.dumps(SETTINGS, sort_keys=False, fmt=plistlib.FMT_BINARY))
    write("array.plist", plistlib.dumps(["a"]))
    write("spoilt.plist", b"<plist>\n<dict><key>a</key></dict>\n</plist>\n")
    write("Editor.app/Contents/Info.plist", plistlib.dumps(BUNDLE))
    write("Editor.app/Contents/PkgInfo", b"APPLEdit")
    write("Packed.bundle/Info.plist", plistlib.dumps({"CFBundleVersion": "1.2.3b69"}))
    write("Numbered.bundle/Info.plist", plistlib.dumps({"CFBundleShortVersionString": 2.5}))
    write("Library/Preferences/org.example.editor.plist", plistlib.dumps(PREFERENCES))
    stored = {key: {"ic-data": value} for key, value in INTERNET.items()}
    write("Library/Preferences/com.apple.internetconfig.plist", plistlib.dumps({"Version 2.5.4": {"ic-added": stored}}))
    write(".signature", b"-- \nMe, of the tests\n")
    write(".config/user-dirs.dirs", b'XDG_DOWNLOAD_DIR="$HOME/Editor.app"\n')


def make_tree(root):
    """The files that the queries ask about; README.md shows them."""
    def write(name, content, modified):
        path = os.path.join(os.fsencode(root), name)
        with open(path, "wb") as file:
            file.write(content)
        when = datetime.fromisoformat(modified).replace(tzinfo=timezone.utc).timestamp()
        os.utime(path, (when, when))

    os.makedirs(root / "letters/deeper")
    write(b"notes.txt", b"one\ntwo\nred\n", "2026-01-02T03:04:05")
    write(b"empty.txt", b"", "2026-01-01T00:00:00")
    write(b"two words.txt", b"two words\n", "2025-12-31T23:59:59")
    write(b"caf\xe9.txt", b"latin\n", "2025-06-15T12:00:00")
    write(b"letters/a.txt", b"A\n", "2024-02-29T00:00:01")
    write(b"letters/b.txt", b"BB\n", "2024-03-01T00:00:01")
    write(b"letters/deeper/c.txt", b"CCC\n", "2024-03-02T00:00:01")
    write(b"endings.txt", b"unix\nmac\rwindows\r\nodd\n\r\nlast", "2026-01-03T00:00:00")
    write(b"versions.txt", b"1.10\n1.9\n1.9b2\n1.05\n", "2026-01-05T00:00:00")
    write(b"settings.ini", b"user = root\n[client]\n  Port = 3306 ; the usual one\nname:\t\"alpha\" \nempty =\n"
          b"none=;x\n\n<server>\nport=80\nzone=north\n[Server]\nport = 8080\nportable=1\n[void]\n[end]\n", "2026-01-04T00:00:00")
    make_lists(root / "lists")
    os.symlink("notes.txt", root / "link.txt")
    os.symlink("letters", root / "link to letters")
    os.symlink("nowhere", root / "dangling")


def ask(zelq, query, tree):
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("LANG", "LANGUAGE") and not name.startswith(("LC_", "XDG_"))}
    return subprocess.run([os.fsencode(zelq), query], cwd=tree, env=environment | {"TZ": "UTC", "HOME": str(tree / "lists")},
                          stdin=subprocess.DEVNULL, capture_output=True, timeout=60)


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
        for path in paths:
            case = Case(path)
            ran = ask(zelq, case.query, tree)
            ran.stderr = ran.stderr.replace(os.fsencode(tree), b"/tree")
            if difference := differences(case, ran):
                failed += 1
                print(f"{path.relative_to(folder)}\n{difference}")
    print(f"{len(paths)} queries, {failed} failed")
    sys.exit(1 if failed or not paths else 0)


main()
