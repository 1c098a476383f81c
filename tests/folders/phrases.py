#!/usr/bin/env python3
"""Asks every phrase of special folders, on a machine whose table has another folder for each type and domain.

usage: phrases.py ZELQ
"""
import os
import subprocess
import sys
import tempfile
from pathlib import Path

# Phrase and code of each type.
TYPES = {
    "system folder": "macs",
    "apple menu items folder": "amnu",
    "control panels folder": "ctrl",
    "desktop folder": "desk",
    "extensions folder": "extn",
    "fonts folder": "font",
    "preferences folder": "pref",
    "printmonitor documents folder": "prnt",
    "startup items folder": "strt",
    "shutdown items folder": "shdf",
    "temporary items folder": "temp",
    "disabled startup items folder": "strD",
    "disabled extensions folder": "extD",
    "applications folder": "apps",
    "documents folder": "docs",
    "chewable items folder": "flnt",
    "application support folder": "asup",
    "text encodings folder": "ƒtex",
    "help folder": "ƒhlp",
    "internet plugins folder": "ƒnet",
    "modem scripts folder": "ƒmod",
    "printer descriptions folder": "ppdf",
    "printer drivers folder": "ƒprd",
    "scripting additions folder": "ƒscr",
    "shared libraries folder": "ƒlib",
    "voices folder": "fvoc",
    "control strip modules folder": "sdev",
    "assistants folder": "astƒ",
    "utilities folder": "utiƒ",
    "apple extras folder": "aexƒ",
    "contextual menu items folder": "cmnu",
    "macos read me folder": "morƒ",
    "colorsync profiles folder": "prof",
    "themes folder": "thme",
    "favorites folder": "favs",
    "disabled control panels folder": "ctrD",
    "disabled system extensions folder": "macD",
    "disabled shutdown items folder": "shdD",
    "location manager modules folder": "walk",
    "location manager preferences folder": "trip",
    "locations folder": "fall",
    "classic folder": "sdsk",
    "domain top folder": "dtop",
    "domain library folder": "dlib",
    "color sync folder": "sync",
    "printers folder": "impr",
    "speech folder": "spch",
    "carbon folder": "carb",
    "documentation folder": "info",
    "developer docs folder": "ddoc",
    "developer help folder": "devh",
    "download folder": "issd",
    "user temp folder": "utmp",
    "cache folder": "cach",
    "framework folder": "fram",
    "private framework folder": "pfrm",
    "developer folder": "devf",
    "sound folder": "ssnd",
    "component folder": "cmpd",
    "quicktime folder": "wcmp",
    "core services folder": "csrv",
    "audio folder": "adio",
    "kernel extensions folder": "kext",
    "users folder": "usrs",
    "current user folder": "cusr",
    "shared folder": "sdat",
    "volume settings folder": "vsfd",
    "locales folder": "ƒloc",
    "receipts folder": "rcpt",
}
# Phrase and name in the table of each domain.
DOMAINS = {
    "system domain": "system", "local domain": "local", "user domain": "user", "network domain": "network",
    "classic domain": "classic", "on system disk domain": "usual", "on appropriate disk domain": "usual",
}


def make_machine(root):
    """The usual domain of every type is the network's."""
    lines = []
    for number, code in enumerate(TYPES.values()):
        lines += [f"[{code}]", "usual = network"]
        for domain in ("system", "local", "user", "network", "classic"):
            folder = root / f"{number} {domain}"
            folder.mkdir()
            lines.append(f"{domain} = {folder}")
    conf = root / "etc/zelq/folders.conf"
    conf.parent.mkdir(parents=True)
    conf.write_text("\n".join(lines))


def plural(phrase):
    return phrase + "s"


def questions():
    """Pairs of an expression and the names that answer it."""
    for number, phrase in enumerate(TYPES):
        yield f"name of {phrase}", f"{number} system"
        yield f"names of {plural(phrase)}", f"{number} system"
        for domain, name in DOMAINS.items():
            name = "network" if name == "usual" else name
            yield f"name of {phrase} of {domain}", f"{number} {name}"
            yield f"names of {plural(phrase)} of {plural(domain)}", f"{number} {name}"


def main():
    zelq = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        make_machine(Path(folder))
        environment = {**os.environ, "ZELQ_MACHINE_ROOT": folder}
        asked = list(questions())
        query = "; ".join(f"({expression})" for expression, _ in asked)
        result = subprocess.run([zelq, "-f", "/dev/stdin"], input=query, capture_output=True, text=True, env=environment)
    if result.returncode != 0:
        sys.exit(result.stderr)
    answers = result.stdout.splitlines()
    wrong = [f"{expression}: {answer}, not {expected}" for (expression, expected), answer in zip(asked, answers) if answer != expected]
    if wrong or len(answers) != len(asked):
        sys.exit("\n".join([f"{len(answers)} answers to {len(asked)} questions", *wrong[:20]]))
    print(f"{len(asked)} phrases answered")


main()
