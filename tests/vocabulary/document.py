#!/usr/bin/env python3
"""Makes docs/vocabulary.md from what the libraries registered and from what docs/vocabulary.txt says of it.

usage: document.py ZELQ [--quick]        holds the document against what it should be
       document.py ZELQ --write          writes it, as far as nothing is amiss
       document.py ZELQ --ask QUERY...   asks queries as the examples are asked

Every registration but the caches has a meaning and an example in docs/vocabulary.txt, which tells its own form at its
top. The examples are run, in the world of world.py; each must be answered, and use what it is an example of, which
--quick does not look up.
"""
import concurrent.futures
import difflib
import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
from text import Text  # noqa: E402
from vocabulary import Registration, Vocabulary  # noqa: E402
from world import ROOT, World  # noqa: E402
from writer import Writer  # noqa: E402

TEXT, DOCUMENT = ROOT / "docs/vocabulary.txt", ROOT / "docs/vocabulary.md"
BEHIND = re.compile(r": ((?:iterated )?(?:property|cast|operator) .*)$", re.M)


class Zelq:
    """The command, asked in the world of the examples."""

    def __init__(self, command, world):
        self.command, self.world = command, world

    def run(self, *arguments):
        return subprocess.run([str(self.command), *arguments], cwd=self.world.tree, env=self.world.environment,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="backslashreplace",
                              timeout=60)

    def registrations(self):
        ran = self.run("--registrations")
        if ran.returncode != 0 or not ran.stdout:
            sys.exit(f"the registrations cannot be told: {ran.stderr}")
        rows = (json.loads(line) for line in ran.stdout.splitlines())
        return [Registration(row) for row in rows if row["kind"] != "cache"]

    def try_out(self, example, is_quick):
        if example.depends or not is_quick:
            ran = self.run("--explain", example.query)
            example.behind, example.error = BEHIND.findall(ran.stdout), ran.stderr
            example.is_explained = True
        if not example.depends and not example.error:
            ran = self.run(example.query)
            example.answers, example.error = ran.stdout.splitlines(), ran.stderr
            if example.fails:
                example.answers += ran.stderr.splitlines()[:1]
                example.error = "" if ran.returncode == 1 else "does not fail"
            elif not example.answers and not example.error:
                example.error = "is answered with nothing"

    def ask(self, query):
        ran = self.run(query)
        return ran.stdout + ran.stderr


def answers_in(document):
    """The answers of a document, by the queries."""
    answers = {}
    for block in re.findall(r"^```\n(.*?)^```$", document, re.M | re.S):
        for line in block.splitlines():
            if line.startswith("→ "):
                answers[query].append(line[2:])
            else:
                query = line
                answers[query] = []
    return answers


def differences(present, wanted):
    """What is not as it should be in the document, for a person to read."""
    there = answers_in(present)
    for query, answers in answers_in(wanted).items():
        if there.get(query, answers) != answers:
            yield f"docs/vocabulary.md: {query}\n    says {there[query]}\n    and the answer is {answers}"
    yield from list(difflib.unified_diff(present.splitlines(), wanted.splitlines(), "docs/vocabulary.md",
                                         "as it should be", lineterm="", n=0))[:60]
    if present != wanted:
        yield "docs/vocabulary.md is not up to date: tests/vocabulary/document.py ZELQ --write"


def main():
    sys.stdout.reconfigure(errors="backslashreplace")  # a fault is told in any locale
    command, options = Path(sys.argv[1]).resolve(), sys.argv[2:]
    with tempfile.TemporaryDirectory(prefix="zelq-vocabulary-") as folder:
        zelq = Zelq(command, World(Path(folder)))
        if options[:1] == ["--ask"]:
            for query in options[1:]:
                print(f"{query}\n{zelq.ask(query)}", end="")
            return
        text = Text(TEXT)
        vocabulary = Vocabulary(text, zelq.registrations())
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            list(pool.map(lambda example: zelq.try_out(example, options == ["--quick"]), text.examples()))
    vocabulary.hold_examples()
    wanted = Writer(text, vocabulary).document()
    if options == ["--write"]:
        DOCUMENT.write_text(wanted, encoding="utf-8")
    present = DOCUMENT.read_text(encoding="utf-8") if DOCUMENT.is_file() else ""
    faults = vocabulary.faults + list(differences(present, wanted))
    print("\n".join(faults) or f"{len(text.examples())} examples of {len(vocabulary.registered)} phrases hold")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
