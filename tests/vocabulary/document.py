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
import textwrap
from pathlib import Path

from world import ROOT, SHOWN, SITE, World

TEXT, DOCUMENT = ROOT / "docs/vocabulary.txt", ROOT / "docs/vocabulary.md"
WORLD = "world"
SIGNS = {0: "+", 1: "-", 2: "*", 3: "/", 4: "mod", 6: "=", 7: "<", 8: "<=", 9: "starts with", 10: "ends with",
         11: "contains"}
KINDS = {"property": "property", "iterated": "iterated property", "cast": "cast", "operator": "operator"}
HOSTS = ("string", "integer", "boolean", "time", "time interval")
UNTRIED = "…"
WIDTH = 120


class Registration:
    """A phrase, a cast, an operator or a type, as the library registered it."""

    def __init__(self, row):
        self.kind, self.result = row["kind"], row.get("result")
        self.singular, self.plural = row.get("singular"), row.get("plural")
        self.index, self.object, self.base = row.get("index"), row.get("object"), row.get("base")
        self.right = row.get("right")
        if self.kind == "operator":
            self.object, self.singular = row["left"], SIGNS[row["operator"]]

    def section(self):
        return self.singular if self.kind == "type" else self.object or WORLD

    def key(self):
        """What it is called in its section of the text."""
        if self.kind == "type":
            return ""
        if self.kind == "operator":
            return "operators"
        if self.kind == "cast":
            return f"as {self.singular}"
        return self.singular + (f" <{self.index}>" if self.index else "")

    def behind(self):
        """How --explain names it, behind the name of its library."""
        of = f' of "{self.object}"' if self.object else " of the world"
        if self.kind == "operator":
            of += f' and "{self.right}"'
        index = f' with index "{self.index}"' if self.index else ""
        return f'{KINDS[self.kind]} "{self.singular}"{index}{of}'


class Entry:
    """What the text says of one key or more: a meaning and examples. Without a key it is what is below a heading."""

    def __init__(self, place):
        self.place, self.keys, self.paragraphs, self.examples = place, [], [], []

    def meaning(self):
        return "\n\n".join(" ".join(lines) for lines in self.paragraphs)


class Example:
    """A query, which is answered, or depends on the machine, or fails."""

    def __init__(self, place, query, mark):
        self.place, self.query, self.depends, self.fails = place, query, mark == ">?", mark == ">!"
        self.answers, self.used, self.error = [], "", ""

    def behind(self):
        """What --explain says is behind its phrases."""
        return re.findall(r": ((?:iterated )?(?:property|cast|operator) .*)$", self.used, re.M)


class Topic:
    """A heading below that of a type, and its entries; `also` is a type that all its phrases may be asked of too."""

    def __init__(self, title, also, place):
        self.title, self.also, self.head, self.entries = title, also, Entry(place), []


class Section:
    """A type, or the world."""

    def __init__(self, name, place):
        self.name, self.topics = name, [Topic(None, None, place)]


class Text:
    """docs/vocabulary.txt."""

    def __init__(self):
        self.opening, self.sections, self.faults = Entry(0), [], []
        entry, fresh = self.opening, True
        for place, line in enumerate(TEXT.read_text(encoding="utf-8").splitlines(), 1):
            if line.startswith("#"):
                continue
            if line.startswith("=== "):
                title, _, also = line[4:].partition(" | also of ")
                self.sections[-1].topics.append(Topic(title, also or None, place))
                entry = self.sections[-1].topics[-1].head
            elif line.startswith("== "):
                self.sections.append(Section(line[3:], place))
                entry = self.sections[-1].topics[0].head
            elif line.startswith("  "):
                self.read_indented(entry, line.strip(), fresh, place)
            elif line:
                if entry.paragraphs or entry.examples or not entry.keys:
                    entry = Entry(place)
                    self.sections[-1].topics[-1].entries.append(entry)
                entry.keys.append(line)
            fresh = not line.startswith("  ")

    def read_indented(self, entry, line, fresh, place):
        if line.startswith((">? ", ">! ", "> ")):
            mark, _, query = line.partition(" ")
            entry.examples.append(Example(place, query, mark))
        elif fresh or not entry.paragraphs:
            entry.paragraphs.append([line])
        else:
            entry.paragraphs[-1].append(line)

    def entries(self):
        """Section, topic and entry, for all that has a text."""
        for section in self.sections:
            for topic in section.topics:
                yield section, topic, topic.head
                for entry in topic.entries:
                    yield section, topic, entry

    def examples(self):
        return self.opening.examples + [example for _, _, entry in self.entries() for example in entry.examples]


class Zelq:
    """The command, asked in the world of the examples."""

    def __init__(self, command, world):
        self.command, self.world = command, world

    def run(self, *arguments):
        return subprocess.run([str(self.command), *arguments], cwd=self.world.tree, env=self.world.environment,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="backslashreplace",
                              timeout=60)

    def registrations(self):
        rows = [json.loads(line) for line in self.run("--registrations").stdout.splitlines()]
        return [Registration(row) for row in rows if row["kind"] != "cache"]

    def try_out(self, example, quick):
        if example.depends or not quick:
            explained = self.run("--explain", example.query)
            example.used, example.error = explained.stdout, explained.stderr
        if not example.depends and not example.error:
            ran = self.run(example.query)
            example.answers, example.error = ran.stdout.splitlines(), ran.stderr
            if example.fails:
                example.answers += ran.stderr.splitlines()[:1]
                example.error = "" if ran.returncode == 1 else "does not fail"
            if not example.answers and not example.error:
                example.error = "nothing is answered"

    def ask(self, query):
        ran = self.run(query)
        return ran.stdout + ran.stderr


class Vocabulary:
    """The registrations, and what the text says of each."""

    def __init__(self, text, registrations):
        self.text, self.faults, self.of = text, [], {}
        self.registered = {}
        for registration in registrations:
            self.registered.setdefault((registration.section(), registration.key()), []).append(registration)
        described = set()
        for section, topic, entry in text.entries():
            places = [(section.name, key) for key in entry.keys]
            if entry is section.topics[0].head and section.name not in (WORLD, *HOSTS):
                places = [(section.name, "")]
            if topic.also:
                places += [(topic.also, key) for key in entry.keys]
            for place in places:
                if place in described:
                    self.fault(entry, f"{self.named(place)} has two meanings")
                if place not in self.registered:
                    self.fault(entry, f"{self.named(place)} has a meaning, but is not registered")
                described.add(place)
            self.of[id(entry)] = [each for place in places for each in self.registered.get(place, [])]
            self.look_at(section, topic, entry)
        for place in self.registered:
            if place not in described:
                self.faults.append(f"docs/vocabulary.txt: {self.named(place)} has no meaning")

    def look_at(self, section, topic, entry):
        name = ", ".join(entry.keys) or topic.title or section.name
        if not entry.paragraphs and (entry.keys or self.of[id(entry)]):
            self.fault(entry, f'"{name}" has no meaning')
        elif entry.keys and not topic.also and not entry.meaning().endswith("."):
            self.fault(entry, f'the meaning of "{name}" is no sentence')
        if entry.keys and not topic.also and not entry.examples:
            self.fault(entry, f'"{name}" has no example')

    def hold_examples(self):
        """What is wrong with the examples, which have been tried out; those of what is not registered do not count."""
        for section, topic, entry in self.text.entries():
            found = self.of[id(entry)] if entry.keys else []
            if entry.keys and not found:
                continue
            for example in entry.examples:
                if example.error:
                    self.fault(example, f"{example.query}\n{indented(example.error)}")
                elif example.used and found and not any(each.behind() in example.behind() for each in found):
                    wanted = f"{', '.join(entry.keys)} of {section.name}"
                    self.fault(example, f"{example.query}\n    is no example of {wanted}")

    def fault(self, where, what):
        self.faults.append(f"docs/vocabulary.txt:{where.place}: {what}")

    @staticmethod
    def named(place):
        section, key = place
        if not key:
            return f'the type "{section}"'
        return f'"{key}" of the world' if section == WORLD else f'"{key}" of "{section}"'


class Writer:
    """Writes the document."""

    def __init__(self, text, vocabulary):
        self.text, self.vocabulary, self.lines = text, vocabulary, []
        self.types = {section.name for section in text.sections if section.name != WORLD and self.has(section)}

    def document(self):
        self.add("# The vocabulary", "<!-- tests/vocabulary/document.py writes this file, from docs/vocabulary.txt -->",
                 self.text.opening.meaning())
        self.add("\n".join(self.contents()))
        for section in self.text.sections:
            if self.has(section):
                self.section(section)
        self.add("## The files that are asked about", *self.samples())
        return "\n\n".join(self.lines) + "\n"

    def add(self, *blocks):
        self.lines += [wrapped(block) for block in blocks if block]

    def has(self, section):
        return any(self.vocabulary.of[id(entry)] for topic in section.topics for entry in [topic.head, *topic.entries])

    def contents(self):
        topics = [topic.title for section in self.text.sections if section.name == WORLD for topic in section.topics[1:]
                  if any(self.vocabulary.of[id(entry)] for entry in topic.entries)]
        yield item("[The world](#the-world): " + ", ".join(f"[{title}](#{anchor(title)})" for title in topics))
        names = (section.name for section in self.text.sections if section.name in self.types)
        yield item("Types: " + ", ".join(self.link(name) for name in names))

    def link(self, name):
        if name in self.types:
            return f"[{name}](#{anchor(name)})"
        return f"[{name}](language.md#types)"

    def section(self, section):
        self.add("## The world" if section.name == WORLD else f"## {section.name}")
        for topic in section.topics:
            entries = [entry for entry in topic.entries if self.vocabulary.of[id(entry)]]
            if topic.title and entries:
                self.add(f"### {topic.title}")
            if topic is section.topics[0] or entries:
                self.add(topic.head.meaning(), self.examples(topic.head))
            if topic is section.topics[0] and section.name != WORLD:
                self.add(self.relations(section.name))
            if topic.also:
                self.add(self.table(entries))
            else:
                for entry in entries:
                    self.entry(entry)

    def relations(self, name):
        """The base of a type, and where its values come from."""
        own = self.vocabulary.registered.get((name, ""), [])
        base = own[0].base if own else None
        sentences = [f"Each is a {self.link(base)}, too, and has all its phrases."] if base else []
        if name not in HOSTS:
            sources = {}
            for (section, _), found in self.vocabulary.registered.items():
                for each in found:
                    if each.result == name and each.kind in ("property", "iterated"):
                        sources.setdefault(section, {})[self.called(section, each)] = None
            shared = {}
            for section, phrases in sources.items():
                shared.setdefault(tuple(phrases), []).append("the world" if section == WORLD else self.link(section))
            named = [f"{listed(phrases)} of {listed(places)}" for phrases, places in shared.items()]
            sentences += [f"It comes from {', from '.join(named)}."] if named else []
        return " ".join(sentences)

    def called(self, section, each):
        """The phrase of a registration, or what it is one of."""
        for home, topic, entry in self.text.entries():
            if topic.also and section in (home.name, topic.also) and each.key() in entry.keys:
                return "the " + topic.title.lower()
        return f"`{each.singular}`"

    def table(self, entries):
        rows = ["| phrase | plural | what for |", "|---|---|---|"]
        for entry in entries:
            for each in self.vocabulary.of[id(entry)][:1]:
                rows.append(f"| `{each.singular}` | `{each.plural}` | {entry.meaning()} |")
        return "\n".join(rows)

    def entry(self, entry):
        found = self.vocabulary.of[id(entry)]
        if found[0].kind == "operator":
            self.add(f"**Operators.** {entry.meaning()}", self.operators(found))
        else:
            self.add(", ".join(self.head(each) for each in found) + self.result(found) + f" {entry.meaning()}")
        self.add(self.examples(entry))

    @staticmethod
    def head(each):
        index = f" *{each.index}*" if each.index else ""
        if each.kind == "cast":
            return f"**`as {each.singular}`**"
        if each.kind == "iterated":
            return f"**`{each.plural}`**{index}, singular `{each.singular}`"
        return f"**`{each.singular}`**{index}, plural `{each.plural}`"

    def result(self, found):
        many = "any number of " if found[0].kind == "iterated" else ""
        return f" → {many}{self.link(found[0].result)}."

    def operators(self, found):
        rows = {}
        for each in found:
            rows.setdefault((each.object, each.right, each.result), []).append(f"`{each.singular}`")
        return "\n".join(["| left | | right | gives |", "|---|---|---|---|"] + [
            f"| {left} | {' '.join(signs)} | {self.link(right)} | {self.link(result)} |"
            for (left, right, result), signs in rows.items()])

    def examples(self, entry):
        lines = []
        for example in entry.examples:
            if not example.error:
                answers = [UNTRIED] if example.depends else example.answers
                lines += [example.query, *(f"→ {answer}" for answer in answers)]
        return "\n".join(["```", *lines, "```"]) if lines else ""

    @staticmethod
    def samples():
        """What there is to ask about: the files of the site, and what is in some."""
        yield ("The examples are asked in a folder that holds a folder `site` and a folder `lists`, which is the home of "
               "the user. `tests/vocabulary/world.py` makes the site and what belongs to the machine, "
               "`tests/queries/tree.py` the property lists, bundles, preferences and Internet settings of the home. "
               "This machine's administrator has put frameworks, components and items that are on or off into the home, "
               "as [a file of folders](linux.md#other-folders-than-these) allows. The facts of the machine are those "
               "of `tests/machines/server`, with three processes of the user. These are the files of the site; times "
               "are universal.")
        rows = ["| file | bytes | modified |", "|---|---|---|"]
        rows += [f"| `site/{name}` | {len(content)} | {modified}Z |" for name, (content, modified) in SITE.items()]
        yield "\n".join(rows)
        yield ("`site/latest.log` is a link to `site/logs/mail.log`. A Mac kept more of `site/Report`: its type, its "
               "creator, dates, marks and versions, in an AppleDouble file.")
        for name in SHOWN:
            yield f"`site/{name}`:"
            yield "\n".join(f"    {line}".rstrip() for line in SITE[name][0].splitlines())


def anchor(title):
    return re.sub(r"[^\w -]", "", title.lower()).replace(" ", "-")


def listed(words):
    return " and ".join(filter(None, [", ".join(words[:-1]), words[-1]]))


def wrapped(block):
    """A paragraph in lines of a bearable length; all other blocks as they are."""
    if block.startswith(("#", "|", "```", "- ", "    ", "<!--")):
        return block
    return "\n\n".join(fill(paragraph) for paragraph in block.split("\n\n"))


def fill(paragraph, **options):
    return textwrap.fill(paragraph, WIDTH, break_long_words=False, break_on_hyphens=False, **options)


def item(text):
    return fill(text, initial_indent="- ", subsequent_indent="  ")


def indented(text):
    return "\n".join(f"    {line}" for line in text.splitlines())


def answers_in(document):
    """The answers of a document, by the queries."""
    answers = {}
    for block in re.findall(r"^```\n(.*?)^```$", document, re.M | re.S):
        query = None
        for line in block.splitlines():
            if line.startswith("→ "):
                answers[query].append(line[2:])
            else:
                query = line
                answers[query] = []
    return answers


def differences(present, wanted):
    """What is not as it should be in the document, for a person to read."""
    there, real = answers_in(present), answers_in(wanted)
    for query, answers in real.items():
        if query in there and there[query] != answers:
            yield f"docs/vocabulary.md: {query}\n    says {there[query]}\n    and the answer is {answers}"
    yield from list(difflib.unified_diff(present.splitlines(), wanted.splitlines(), "docs/vocabulary.md",
                                         "as it should be", lineterm="", n=0))[:60]


def main():
    command = Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory(prefix="zelq-vocabulary-") as folder:
        zelq = Zelq(command, World(Path(folder)))
        if sys.argv[2:3] == ["--ask"]:
            for query in sys.argv[3:]:
                print(f"{query}\n{indented(zelq.ask(query))}")
            return
        text = Text()
        vocabulary = Vocabulary(text, zelq.registrations())
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            list(pool.map(lambda example: zelq.try_out(example, sys.argv[2:] == ["--quick"]), text.examples()))
    vocabulary.hold_examples()
    wanted = Writer(text, vocabulary).document()
    if sys.argv[2:] == ["--write"]:
        DOCUMENT.write_text(wanted, encoding="utf-8")
    present = DOCUMENT.read_text(encoding="utf-8") if DOCUMENT.is_file() else ""
    faults = vocabulary.faults + list(differences(present, wanted))
    print("\n".join(faults) or f"{len(text.examples())} examples of {len(vocabulary.registered)} phrases hold")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
