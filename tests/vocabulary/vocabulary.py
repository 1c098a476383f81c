"""What the libraries registered, held against what the text says of it."""
from text import WORLD

SIGNS = {0: "+", 1: "-", 2: "*", 3: "/", 6: "=", 7: "<", 8: "<=", 11: "contains"}
KINDS = {"property": "property", "iterated": "iterated property", "cast": "cast", "operator": "operator"}
# The types of the language itself, which no library registers.
HOSTS = ("string", "integer", "boolean", "time", "time interval")


class Registration:
    """A phrase, a cast, an operator or a type, as --registrations shows it."""

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

    def explained(self):
        """How --explain names it, behind the name of its library."""
        of = f' of "{self.object}"' if self.object else " of the world"
        if self.kind == "operator":
            of += f' and "{self.right}"'
        index = f' with index "{self.index}"' if self.index else ""
        return f'{KINDS[self.kind]} "{self.singular}"{index}{of}'


class Vocabulary:
    """All registrations, by section and key, and what is wrong with what the text says of them."""

    def __init__(self, text, registrations):
        self.text, self.faults, self.registered = text, [], {}
        for registration in registrations:
            self.registered.setdefault((registration.section(), registration.key()), []).append(registration)
        described = set()
        for section, topic, entry in text.entries():
            places = self.places(section, topic, entry)
            for place in places:
                if place in described:
                    self.fault(entry, f"{named(place)} has two meanings")
                if place not in self.registered:
                    self.fault(entry, f"{named(place)} has a meaning, but is not registered")
            described.update(places)
            entry.found = [each for place in places for each in self.registered.get(place, [])]
            self.hold_meaning(section, topic, entry)
        self.faults += [f"docs/vocabulary.txt: {named(place)} has no meaning" for place in self.registered
                        if place not in described]

    @staticmethod
    def places(section, topic, entry):
        """The section and key of all that an entry stands for."""
        if entry is section.topics[0].head and section.name not in (WORLD, *HOSTS):
            return [(section.name, "")]
        return [(home, key) for home in (section.name, topic.also) if home for key in entry.keys]

    def hold_meaning(self, section, topic, entry):
        name = f'"{", ".join(entry.keys) or topic.title or section.name}"'
        if not entry.paragraphs and (entry.keys or entry.found):
            self.fault(entry, f"{name} has no meaning")
        if entry.keys and not topic.also and not entry.meaning().endswith("."):
            self.fault(entry, f"the meaning of {name} is no sentence")
        if entry.keys and not topic.also and not entry.examples:
            self.fault(entry, f"{name} has no example")
        if topic.also and len(entry.keys) > 1:
            self.fault(entry, f"{name} share a row of a table")
        given = {(each.kind, each.result) for each in entry.found if each.kind != "operator"}
        if len(given) > 1:
            self.fault(entry, f"{name} do not give the same")

    def hold_examples(self):
        """Adds what is wrong with the examples, which have been tried out. Those of what is not registered do not
        count."""
        for section, topic, entry in self.text.entries():
            if entry.keys and not entry.found:
                continue
            for example in entry.examples:
                meant = {each.explained() for each in (entry.found if entry.keys else topic.registered())
                         if each.kind != "type"}
                if example.error:
                    self.fault(example, f"{example.query}\n{example.error.rstrip()}")
                elif not example.is_explained:
                    continue
                elif not example.behind:
                    self.fault(example, f"{example.query}\nasks nothing of the library")
                elif meant and not meant & set(example.behind):
                    name = ", ".join(entry.keys) or topic.title or "what stands below"
                    self.fault(example, f"{example.query}\nis no example of {name} of {section.name}")

    def fault(self, where, what):
        self.faults.append(f"docs/vocabulary.txt:{where.place}: " + what.replace("\n", "\n    "))


def named(place):
    section, key = place
    if not key:
        return f'the type "{section}"'
    return f'"{key}" of the world' if section == WORLD else f'"{key}" of "{section}"'
