#!/usr/bin/env python3
"""Asks the recorded machines beside this file, and this one, for their facts.

usage: facts.py ZELQ
"""
import os
import platform
import sys
from pathlib import Path

sys.dont_write_bytecode = True
from recorded import NONE, hold  # noqa: E402

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
    cases = [(machine, *case) for machine, answers in ANSWERS.items() for case in answers.items()]
    cases += [(None, *case) for case in of_this_machine()]
    cases += [(machine, query, NONE) for machine in (None, *ANSWERS) for query in MISSING]
    hold(sys.argv[1], cases)


main()
