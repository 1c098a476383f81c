"""Writes docs/vocabulary.md: a document in Markdown from the text and the registrations."""
import re
import textwrap

from vocabulary import HOSTS
from text import WORLD
from world import SHOWN, SITE

ELLIPSIS = "…"
WIDTH = 120


class Writer:
    def __init__(self, text, vocabulary):
        self.text, self.vocabulary, self.blocks = text, vocabulary, []
        self.types = [section.name for section in text.sections if not section.is_world() and section.is_registered()]

    def document(self):
        self.add("# The vocabulary", "<!-- tests/vocabulary/document.py writes this file, from docs/vocabulary.txt -->",
                 self.text.opening.meaning(), "\n".join(self.contents()))
        for section in self.text.sections:
            if section.is_registered():
                self.add_section(section)
        self.add(*samples())
        return "\n\n".join(self.blocks) + "\n"

    def add(self, *blocks):
        self.blocks += [wrapped(block) for block in blocks if block]

    def contents(self):
        topics = [topic.title for section in self.text.sections if section.is_world() for topic in section.topics
                  if topic.title and topic.is_registered()]
        yield item("[The world](#the-world): " + ", ".join(f"[{title}](#{anchor(title)})" for title in topics))
        yield item("Types: " + ", ".join(self.link(name) for name in self.types))

    def link(self, name):
        return f"[{name}](#{anchor(name)})" if name in self.types else f"[{name}](language.md#types)"

    def add_section(self, section):
        self.add("## The world" if section.is_world() else f"## {section.name}")
        for topic in section.topics:
            entries = [entry for entry in topic.entries if entry.found]
            if topic.title and entries:
                self.add(f"### {topic.title}")
            if not topic.title or entries:
                self.add(topic.head.meaning(), examples(topic.head))
            if not topic.title and not section.is_world():
                self.add(self.relations(section.name))
            if topic.also:
                self.add(table(entries))
            else:
                for entry in entries:
                    self.add_entry(entry)

    def relations(self, name):
        """The base of a type, and where its values come from."""
        if name in HOSTS:
            return ""
        sentences = []
        if base := self.vocabulary.registered[name, ""][0].base:
            sentences.append(f"Each is a {self.link(base)}, too, and has all its phrases.")
        sources = {}
        for (section, _), found in self.vocabulary.registered.items():
            for each in found:
                if each.result == name and each.kind in ("property", "iterated"):
                    sources.setdefault(section, {})[self.called(section, each)] = None
        shared = {}
        for section, phrases in sources.items():
            shared.setdefault(tuple(phrases), []).append("the world" if section == WORLD else self.link(section))
        if shared:
            named = (f"{listed(phrases)} of {listed(places)}" for phrases, places in shared.items())
            sentences.append(f"It comes from {', from '.join(named)}.")
        return " ".join(sentences)

    def called(self, section, each):
        """The phrase of a registration, or the topic that it is one of."""
        for home, topic, entry in self.text.entries():
            if topic.also and section in (home.name, topic.also) and each.key() in entry.keys:
                return "the " + topic.title.lower()
        return f"`{each.singular}`"

    def add_entry(self, entry):
        first = entry.found[0]
        if first.kind == "operator":
            self.add(f"**Operators.** {entry.meaning()}", self.operators(entry.found))
        else:
            many = "any number of " if first.kind == "iterated" else ""
            heads = ", ".join(head(each) for each in entry.found)
            self.add(f"{heads} → {many}{self.link(first.result)}. {entry.meaning()}")
        self.add(examples(entry))

    def operators(self, found):
        rows = {}
        for each in found:
            rows.setdefault((each.object, each.right, each.result), []).append(f"`{each.singular}`")
        return "\n".join(["| left | | right | gives |", "|---|---|---|---|"] + [
            f"| {left} | {' '.join(signs)} | {self.link(right)} | {self.link(result)} |"
            for (left, right, result), signs in rows.items()])


def head(each):
    index = f" *{each.index}*" if each.index else ""
    if each.kind == "cast":
        return f"**`as {each.singular}`**"
    if each.kind == "iterated":
        return f"**`{each.plural}`**{index}, singular `{each.singular}`"
    return f"**`{each.singular}`**{index}, plural `{each.plural}`"


def table(entries):
    return "\n".join(["| phrase | plural | what for |", "|---|---|---|"] + [
        f"| `{entry.found[0].singular}` | `{entry.found[0].plural}` | {entry.meaning()} |" for entry in entries])


def examples(entry):
    lines = []
    for example in entry.examples:
        if not example.error:
            answers = [ELLIPSIS] if example.depends else example.answers
            lines += [example.query, *(f"→ {answer}" for answer in answers)]
    return "\n".join(["```", *lines, "```"]) if lines else ""


def samples():
    """What there is to ask about: the files of the site, and what is in some."""
    yield "## The files that are asked about"
    yield ("The examples are asked in a folder that holds a folder `site` and a folder `lists`, which is the home of "
           "the user. `tests/vocabulary/world.py` makes the site and what belongs to the machine, "
           "`tests/queries/tree.py` the property lists, bundles, preferences and Internet settings of the home. The "
           "administrator of this machine has put frameworks, components and items that are on or off into the home, as "
           "[a file of folders](linux.md#other-folders-than-these) allows. The facts of the machine are those of "
           "`tests/machines/server`, with three processes of the user. These are the files of the site; times are "
           "universal.")
    yield "\n".join(["| file | bytes | modified |", "|---|---|---|"] + [
        f"| `site/{name}` | {len(content)} | {modified}Z |" for name, (content, modified) in SITE.items()])
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
