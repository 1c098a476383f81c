"""What zelq must answer when it is asked for everything in a property list, told from Python's objects."""
import datetime
import os
import subprocess


def mac_roman(text):
    """The text's bytes in Mac Roman, with a question mark for each UTF-16 unit of what it does not have."""
    return b"".join(character.encode("mac_roman") if encodable(character) else b"?" * (2 if ord(character) > 0xFFFF else 1)
                    for character in text)


def encodable(character):
    try:
        character.encode("mac_roman")
    except UnicodeEncodeError:
        return False
    return True


def type_name(value):
    names = {bool: "boolean", str: "string", int: "integer", float: "integer", bytes: "data",
             datetime.datetime: "date", list: "array", dict: "dictionary"}
    return names.get(type(value), "unknown type").encode()


def fits(number):
    """Whether "integer" has an answer: for a whole number of 32 bits."""
    return number == number and abs(number) < 2**63 and int(number) == number and -2**31 <= number < 2**31


def value_questions(value, where):
    """Pairs of an expression and the answers to it, for the value that stands at `where`, such as '"key" of it'."""
    if isinstance(value, bool):
        yield f"boolean {where} as string", [b"true" if value else b"false"]
    elif isinstance(value, (int, float)):
        if fits(value):
            yield f"integer {where} as string", [b"%d" % value]
        else:
            yield f"(exists integer {where}) as string", [b"false"]
    elif isinstance(value, str):
        yield f"string {where}", [mac_roman(value)]
    elif isinstance(value, bytes):
        yield f"string {where}", [value]
    elif isinstance(value, datetime.datetime):
        yield f"date {where} as string", [value.isoformat().encode() + b"+00:00"]
    elif isinstance(value, list):
        yield from array_questions(value, f"array {where}")
    elif isinstance(value, dict):
        yield from dictionary_questions(value, f"dictionary {where}")
    for other in ("string", "boolean", "integer", "date", "array", "dictionary"):
        is_text = other == "string" and isinstance(value, (str, bytes))
        is_number = other == "integer" and isinstance(value, (int, float))
        if not is_text and not is_number and type_name(value) != other.encode():
            yield f"(exists {other} {where}) as string", [b"false"]


def array_questions(values, expression):
    yield f"size of {expression} as string", [b"%d" % len(values)]
    yield f"types of values of {expression}", [type_name(value) for value in values]
    for index, value in enumerate(values):
        yield from value_questions(value, f"{index} of {expression}")


def dictionary_questions(values, expression):
    """Keys are ASCII, without quotation marks."""
    yield f"size of {expression} as string", [b"%d" % len(values)]
    yield f"keys of {expression}", [key.encode() for key in values]
    yield f"types of values of entries of {expression}", [type_name(value) for value in values.values()]
    for key, value in values.items():
        yield from value_questions(value, f'"{key}" of {expression}')


def difference(zelq, of, questions):
    """Asks all questions of one object, "it", in one query; says where the answers differ, or nothing."""
    questions = list(questions)
    expected = [answer for _, answers in questions for answer in answers]
    query = f"({'; '.join(f'({expression})' for expression, _ in questions)}) of {of}"
    result = subprocess.run([zelq, "-0", "-f", "/dev/stdin"], input=query.encode(), stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, env={**os.environ, "TZ": "UTC"})
    found = result.stdout.split(b"\0")[:-1]
    if result.returncode == 0 and found == expected:
        return None
    place = next((n for n, (a, b) in enumerate(zip(found, expected)) if a != b), min(len(found), len(expected)))
    return (f"{of}: of {len(expected)} answers number {place} is {found[place:place + 1]}, not {expected[place:place + 1]}; "
            f"status {result.returncode} {result.stderr.decode(errors='replace')[-1000:]}\n{query[:2000]}")
