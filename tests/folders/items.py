#!/usr/bin/env python3
"""Asks every phrase of items that are on or off, on a machine that has one of each.

usage: items.py ZELQ
"""
import os
import subprocess
import sys
import tempfile
from pathlib import Path

KINDS = {"extension": "extn", "control panel": "ctrl", "startup item": "strt", "shutdown item": "shdf"}


def make_machine(root):
    """Each kind has an item that is on, one that is off, and one that is both, in folders named for its type."""
    lines = []
    for code in KINDS.values():
        lines += [f"[{code}]", f"system = {root / code}"]
        for folder, names in ((code, ("on", "both")), (f"{code} (Disabled)", ("off", "both"))):
            (root / folder).mkdir()
            for name in names:
                (root / folder / f"{code} {name}").touch()
    conf = root / "etc/zelq/folders.conf"
    conf.parent.mkdir(parents=True)
    conf.write_text("\n".join(lines))


def questions():
    """Pairs of an expression and the names that answer it; those of a folder come in any order."""
    for kind, code in KINDS.items():
        on, off, both = f"{code} on", f"{code} off", f"{code} both"
        yield f"names of {kind}s", [both, on, both, off]
        yield f"names of {kind}s whose (enabled of it)", [both, on]
        yield f"names of {kind}s whose (disabled of it)", [both, off]
        yield f"names of enabled {kind}s", [both, on]
        yield f"names of disabled {kind}s", [both, off]
        yield f'enableds of {kind}s "{both}" as string', ["true", "false"]
        yield f'enableds of {kind}s "{off}" as string', ["false"]
        yield f'disableds of {kind}s "{on}" as string', ["false"]
        yield f'name of enabled {kind} "{on}"', [on]
        yield f'name of disabled {kind} "{off}"', [off]
        yield f'(exists enabled {kind} "{off}") as string', ["false"]
        yield f'(exists disabled {kind} "{on}") as string', ["false"]
        yield f'sizes of {kind}s "{on}" as string', ["0"]


def main():
    zelq, wrong = sys.argv[1], []
    with tempfile.TemporaryDirectory() as folder:
        make_machine(Path(folder))
        environment = {**os.environ, "ZELQ_MACHINE_ROOT": folder}
        for expression, expected in questions():
            result = subprocess.run([zelq, expression], capture_output=True, text=True, env=environment)
            answers = result.stdout.splitlines()
            in_order = "both" not in "".join(expected) or " \"" in expression
            if (answers if in_order else sorted(answers)) != (expected if in_order else sorted(expected)):
                wrong.append(f"{expression}: {answers}, not {expected} {result.stderr}")
            # Those that are on come first.
            enabled, disabled = answers[:2], answers[2:]
            if len(expected) == 4 and any("off" in name for name in enabled) | any("on" in name for name in disabled):
                wrong.append(f"{expression}: {answers}")
    if wrong:
        sys.exit("\n".join(wrong))
    print("all as expected")


main()
