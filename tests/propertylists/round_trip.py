#!/usr/bin/env python3
"""Asks for every key of property lists that Python wrote, XML and binary, and holds types and values to Python's.

usage: round_trip.py ZELQ COUNT
"""
import concurrent.futures
import datetime
import os
import plistlib
import random
import sys
import tempfile

import lists

# Characters of all kinds: plain ones, some that XML must escape, some of Mac Roman, some that it does not have.
CHARACTERS = "abcdefgXYZ 0129_.-<>&'\"]\t\néüßÆøΩ√∞€ﬁ•\u0416\u4e2d\uffe6\U0001f600"
KEY_CHARACTERS = "abcdefghijklmnopqrstuvwxyzABC 0123456789_.-<>&'"


def text(chance, characters, least=0):
    return "".join(chance.choices(characters, k=chance.randint(least, 12)))


def scalar(chance):
    kind = chance.randrange(8)
    if kind < 2:
        return text(chance, CHARACTERS)
    if kind == 2:
        return chance.random() < 0.5
    if kind == 3:
        return chance.choice([0, 1, -1, 127, 128, 255, 256, 65535, 65536, 2**31 - 1, 2**31, -2**31, -2**31 - 1, 2**40,
                              2**63 - 1, -2**63, 2**63, 2**64 - 1, chance.randrange(-2**31, 2**31)])
    if kind == 4:
        return chance.choice([0.5, 2.5, 2.0, -3.0, 1e10, 1e300, -1e-300, float("inf"), float("nan"), chance.uniform(-9, 9)])
    if kind == 5:
        return datetime.datetime(chance.randrange(1, 10000), chance.randrange(1, 13), chance.randrange(1, 29),
                                 chance.randrange(24), chance.randrange(60), chance.randrange(60))
    if kind == 6:  # no zero byte: it ends an answer
        return bytes(chance.randrange(1, 256) for _ in range(chance.randrange(70)))
    return text(chance, "ab", least=1) * 20


def value(chance, depth):
    kind = chance.random()
    if depth > 0 and kind < 0.12:
        return [value(chance, depth - 1) for _ in range(chance.randrange(6))]
    if depth > 0 and kind < 0.25:
        return dictionary(chance, depth - 1, chance.randrange(6))
    return scalar(chance)


def dictionary(chance, depth, size):
    made = {text(chance, KEY_CHARACTERS, least=1): value(chance, depth) for _ in range(size)}
    return dict(sorted(made.items()))  # as they are written


def check(zelq, folder, seed):
    chance = random.Random(seed)
    made = dictionary(chance, 3, chance.choice([0, 1, 3, 8, 9, 20]))
    questions = list(lists.dictionary_questions(made, "it"))
    faults = []
    for form, kind in ((plistlib.FMT_XML, "xml"), (plistlib.FMT_BINARY, "binary")):
        path = os.path.join(folder, f"{seed}.{kind}")
        with open(path, "wb") as file:
            plistlib.dump(made, file, fmt=form)
        faults.append(lists.difference(zelq, f'dictionary of file "{path}"', questions))
        os.unlink(path)
    return [fault for fault in faults if fault]


def main():
    zelq, count = sys.argv[1], int(sys.argv[2])
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(2) as pool:
        faults = [fault for found in pool.map(lambda seed: check(zelq, folder, seed), range(count)) for fault in found]
    print("\n\n".join(faults[:5]) or f"{count} lists agree in both formats")
    sys.exit(1 if faults else 0)


main()
