#!/usr/bin/env python3
"""Compares the services that zelq lists with those that getent lists: every name of four bytes and more, in order.

usage: services.py ZELQ
"""
import os
import subprocess
import sys
import tempfile

SHORTEST = 4


def told_by_getent():
    """Names with ports and protocols, TCP and UDP of one name and port together."""
    services = {}
    for line in subprocess.run(["getent", "services"], check=True, stdout=subprocess.PIPE, text=True).stdout.splitlines():
        name, place = line.split()[:2]  # aliases follow
        port, protocol = place.split("/")
        if protocol in ("tcp", "udp") and len(name.encode()) >= SHORTEST:
            services.setdefault((name, port), set()).add(protocol)
    return [f"{name}, {port}, {'tcp' in offered}, {'udp' in offered}".lower()
            for (name, port), offered in services.items()]


def told_by(zelq):
    with tempfile.TemporaryDirectory() as home:
        names = ("XDG_CONFIG_HOME", "ZELQ_MACHINE_ROOT")
        environment = {name: value for name, value in os.environ.items() if name not in names} | {"HOME": home}
        query = "(name of it, port of it, tcp of it, udp of it) of services of internet config"
        return subprocess.run([zelq, query], env=environment, check=True, stdout=subprocess.PIPE,
                              text=True).stdout.lower().splitlines()


def main():
    expected, told = told_by_getent(), told_by(sys.argv[1])
    for line in sorted(set(expected) ^ set(told)):
        print(f"{'missing' if line in expected else 'not of getent'}: {line}")
    print(f"{len(told)} services; getent has {len(expected)}")
    sys.exit(0 if told == expected and told else 1)


main()
