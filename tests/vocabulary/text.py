"""docs/vocabulary.txt, which people write: what it says of each phrase. Its form is told at its top."""
WORLD = "world"


class Entry:
    """What is said of one key or more: a meaning and examples. Without a key it is what is below a heading."""

    def __init__(self, place):
        self.place, self.keys, self.paragraphs, self.examples = place, [], [], []
        self.found = []  # the registrations of the keys

    def meaning(self):
        return "\n\n".join(" ".join(lines) for lines in self.paragraphs)


class Example:
    """A query, which is answered, or depends on the machine, or fails."""

    def __init__(self, place, mark, query):
        self.place, self.query, self.depends, self.fails = place, query, mark == ">?", mark == ">!"
        self.answers, self.behind, self.error = [], [], ""
        self.is_explained = False  # whether what is behind was looked up


class Topic:
    """A heading below that of a type, and its entries; `also` is a type that all its phrases may be asked of too."""

    def __init__(self, title, also, place):
        self.title, self.also, self.head, self.entries = title, also, Entry(place), []

    def registered(self):
        return [each for entry in [self.head, *self.entries] for each in entry.found]

    def is_registered(self):
        return bool(self.registered())


class Section:
    """A type, or the world. Its first topic has no title."""

    def __init__(self, name, place):
        self.name, self.topics = name, [Topic(None, None, place)]

    def is_world(self):
        return self.name == WORLD

    def is_registered(self):
        return any(topic.is_registered() for topic in self.topics)


class Text:
    """What is said before the first section, and the sections."""

    def __init__(self, path):
        self.opening, self.sections = Entry(0), []
        self.entry, self.fresh = self.opening, True
        for place, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            if not line.startswith("#"):
                self.read(line, place)
                self.fresh = not line.startswith("  ")

    def read(self, line, place):
        if line.startswith("=== "):
            title, _, also = line[4:].partition(" | also of ")
            self.sections[-1].topics.append(Topic(title, also or None, place))
            self.entry = self.sections[-1].topics[-1].head
        elif line.startswith("== "):
            self.sections.append(Section(line[3:], place))
            self.entry = self.sections[-1].topics[0].head
        elif line.startswith("  "):
            self.read_indented(line.strip(), place)
        elif line:
            if self.entry.paragraphs or self.entry.examples or not self.entry.keys:
                self.entry = Entry(place)
                self.sections[-1].topics[-1].entries.append(self.entry)
            self.entry.keys.append(line)

    def read_indented(self, line, place):
        if line.startswith((">? ", ">! ", "> ")):
            self.entry.examples.append(Example(place, *line.split(" ", 1)))
        elif self.fresh or not self.entry.paragraphs:
            self.entry.paragraphs.append([line])
        else:
            self.entry.paragraphs[-1].append(line)

    def entries(self):
        """Section, topic and entry, for all that has a text."""
        for section in self.sections:
            for topic in section.topics:
                yield section, topic, topic.head
                for entry in topic.entries:
                    yield section, topic, entry

    def examples(self):
        return [example for _, _, entry in self.entries() for example in entry.examples]
