#!/usr/bin/env python3
"""Compares the folders that a user has chosen with what xdg-user-dir says of them.

usage: user_directories.py ZELQ
"""
import os
import subprocess
import sys
import tempfile
from pathlib import Path

# What zelq calls them, and the tool.
NAMES = {"desktop folder": "DESKTOP", "documents folder": "DOCUMENTS", "download folder": "DOWNLOAD",
         "shared folder of user domain": "PUBLICSHARE"}
FILES = [
    'XDG_DESKTOP_DIR="$HOME/Desk top"\nXDG_DOCUMENTS_DIR="$HOME/d"\nXDG_DOWNLOAD_DIR="{home}/loads"\n'
    'XDG_PUBLICSHARE_DIR="$HOME/public"\n',
    '# chosen twice\nXDG_DESKTOP_DIR="$HOME/old"\nXDG_DESKTOP_DIR="$HOME/d"\nXDG_DOCUMENTS_DIR="$HOME"\n'
    'XDG_DOWNLOAD_DIR="$HOME/Desk top"\nXDG_PUBLICSHARE_DIR="{home}/public"\n',
]


def main():
    zelq, wrong = sys.argv[1], []
    with tempfile.TemporaryDirectory() as folder:
        home = Path(folder).resolve() / "home"
        for name in ("Desk top", "d", "loads", "public", "old", ".config"):
            (home / name).mkdir(parents=True)
        environment = {"PATH": os.environ["PATH"], "HOME": str(home)}
        for text in FILES:
            (home / ".config/user-dirs.dirs").write_text(text.format(home=home))
            for phrase, name in NAMES.items():
                told = subprocess.run(["xdg-user-dir", name], capture_output=True, text=True, env=environment, check=True)
                expected = told.stdout.rstrip("\n")
                # The same folder, if each has the other's items.
                query = f'({phrase} = folder "{expected}") as string'
                answer = subprocess.run([zelq, query], capture_output=True, text=True, env=environment)
                if answer.stdout != "true\n":
                    wrong.append(f"{phrase}: {expected}: {answer.stdout}{answer.stderr}")
    if wrong:
        sys.exit("\n".join(wrong))
    print("the same folders")


main()
