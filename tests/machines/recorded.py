"""Asks the recorded machines beside this file, and this one."""
import os
import subprocess
import sys
from pathlib import Path

MACHINES = Path(__file__).resolve().parent
NONE = "no such object"


def ask(zelq, query, machine):
    """The lines of the answer with | between them, or what the error says. No machine means this one."""
    environment = {name: value for name, value in os.environ.items() if name != "ZELQ_MACHINE_ROOT"}
    if machine:
        environment["ZELQ_MACHINE_ROOT"] = str(MACHINES / machine)
    result = subprocess.run([zelq, query], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=environment)
    if result.returncode == 1:
        return result.stderr.splitlines()[0].removeprefix("error: ")
    return "|".join(result.stdout.splitlines()) if result.returncode == 0 and not result.stderr else f"{result}"


def hold(zelq, cases):
    """Asks each case, a machine, a query and the answer that is expected, and ends the program."""
    count = failed = 0
    for machine, query, expected in cases:
        answer = ask(zelq, query, machine)
        count += 1
        if answer != expected:
            failed += 1
            print(f"{machine or 'this machine'}: {query}\n  expected {expected}\n  answered {answer}")
    print(f"{count} questions, {failed} failed")
    sys.exit(1 if failed or not count else 0)
