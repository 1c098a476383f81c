#!/usr/bin/env python3
"""Asks the recorded machines beside this file, and this one, for their facts.

usage: facts.py ZELQ
"""
import os
import platform
import subprocess
import sys
from pathlib import Path

MACHINES = Path(__file__).resolve().parent
NONE = "no such object"
ANSWERS = {
    "laptop": {
        "physical ram": "4294967295", "logical ram": "4294967295", 'gestalt "ram "': "-1", 'gestalt "ramm"': "15833",
        "powerpc": "false", "virtual memory": "true", "system version": "24.4.1", "rom version": "1.9",
        "cpu speed": "4294967295", 'gestalt "mclk"': "4700", 'gestalt "cpus"': "4", "machine name": "Example Book 14",
        'gestalt "sysv"': "9281", 'gestalt "sys"': NONE, 'gestalt "sysvv"': NONE,
        "system version > version \"24.4\"": "true", 'length of machine name': "15",
    },
    "server": {
        'gestalt "ramm"': "128834", "system version": "10.4", "major revision of system version": "10", "rom version": "2.9",
        "cpu speed": "2400000000", 'gestalt "pclk"': "-1894967296", 'gestalt "cpus"': "16",
        "machine name": "Example Server 720",
    },
    "vm": {
        "physical ram": "2147483648", "logical ram": "2147483648", 'gestalt "ram "': "-2147483648", "powerpc": "false",
        "machine name": "build-7", "system version": NONE, "rom version": NONE, "cpu speed": NONE,
    },
}
# What Linux has no counterpart for.
MISSING = ["quickdraw version", "machine type", "keyboard type", "nubus map", "name registry version", 'gestalt "QUIK"']


def ask(zelq, query, machine=None):
    """The answer, or what the error says."""
    environment = dict(os.environ)
    environment.pop("ZELQ_MACHINE_ROOT", None)
    if machine:
        environment["ZELQ_MACHINE_ROOT"] = str(MACHINES / machine)
    result = subprocess.run([zelq, query], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=environment)
    error = result.stderr.splitlines()[0].removeprefix("error: ") if result.stderr else None
    return error or result.stdout.rstrip("\n")


def of_this_machine():
    """Pairs of a query and what the system says to it."""
    if Path("/sys/devices/system/cpu/online").exists():  # not in every container
        yield 'gestalt "cpus"', str(os.sysconf("SC_NPROCESSORS_ONLN"))
    yield 'gestalt "pgsz"', str(os.sysconf("SC_PAGESIZE"))
    yield "powerpc", str(platform.machine().startswith("ppc")).lower()
    total = next(line.split()[1] for line in Path("/proc/meminfo").read_text().splitlines() if line.startswith("MemTotal:"))
    yield 'gestalt "ramm"', str(int(total) // 1024)
    release = platform.freedesktop_os_release()
    if "VERSION_ID" in release:
        yield 'gestalt "sys1"', release["VERSION_ID"].split(".")[0].lstrip("0")


def main():
    zelq, failed, count = sys.argv[1], 0, 0
    cases = [(machine, *case) for machine, answers in ANSWERS.items()
             for case in [*answers.items(), *((query, NONE) for query in MISSING)]]
    cases += [(None, *case) for case in [*of_this_machine(), *((query, NONE) for query in MISSING)]]
    for machine, query, expected in cases:
        answer = ask(zelq, query, machine)
        count += 1
        if answer != expected:
            failed += 1
            print(f"{machine or 'this machine'}: {query}\n  expected {expected}\n  answered {answer}")
    print(f"{count} questions, {failed} failed")
    sys.exit(1 if failed or not count else 0)


main()
