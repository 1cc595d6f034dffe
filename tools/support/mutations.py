# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""The small faults that can be planted in C++ source."""

import re
from typing import NamedTuple

from cpp_text import CppText

PAIRS = (("<", "<="), (">", ">="), ("==", "!="), ("&&", "||"), ("+", "-"))
OPPOSITES = dict(PAIRS) | {other: one for one, other in PAIRS}
KIND_OF_SIGN = {"&&": "logic", "||": "logic", "+": "arithmetic", "-": "arithmetic"}
WHOLE_NUMBER = re.compile(r"(0[xX][\da-fA-F']+|0|[1-9][\d']*)([uUlLzZ]*|[a-z]+)")
FRACTION = re.compile(r"(\d+)(\.\d*[fFlL]?)")
# A value that a `return {};` gives as well.
EMPTY_VALUE = re.compile(r"|false|0|0\.0|nullptr|std::nullopt|[\w:<>]*\{\}|(?:\w+::)*[A-Z]\w*(?:<[^()]*>)?\(\)")
NO_CALLS = frozenset("return co_return co_yield throw delete using typedef if for while switch catch case else do goto "
                     "static_assert sizeof decltype Q_UNUSED Q_DISABLE_COPY Q_DISABLE_COPY_MOVE".split())  # fmt: skip
LETTER = re.compile(r"(?<![%\\])[A-Za-z]")


class Fault(NamedTuple):
    kind: str
    start: int
    end: int
    replacement: str


def fault(kind, cpp, first, end, replacement):
    """The tokens from `first` to the one before `end`, replaced."""
    return Fault(kind, cpp.tokens[first].start, cpp.tokens[end - 1].end, replacement)


def operators(cpp, index, _):
    sign = cpp.at(index)
    if sign in OPPOSITES and cpp.has_room(index) and cpp.at(index - 1) != "operator":
        yield fault(KIND_OF_SIGN.get(sign, "comparison"), cpp, index, index + 1, OPPOSITES[sign])


def next_whole(digits):
    value = int(digits.replace("'", ""), 0) + 1
    return hex(value) if digits[:2] in ("0x", "0X") else str(value)


def constants(cpp, index, _):
    text = cpp.at(index)
    if cpp.kind(index) != "number":
        return
    if whole := WHOLE_NUMBER.fullmatch(text):
        yield fault("constant", cpp, index, index + 1, next_whole(whole[1]) + whole[2])
    elif fraction := FRACTION.fullmatch(text):
        yield fault("constant", cpp, index, index + 1, next_whole(str(int(fraction[1]))) + fraction[2])


def truths(cpp, index, _):
    if cpp.at(index) in ("true", "false"):
        yield fault("truth", cpp, index, index + 1, "false" if cpp.at(index) == "true" else "true")


def negations(cpp, index, _):
    if cpp.at(index) == "!":
        yield fault("negation", cpp, index, index + 1, "")


def is_controlled(cpp, index):
    """Whether the bracket at `index` closes the condition of the statement that follows it."""
    opening = cpp.partners.get(index, 0)
    return cpp.at(opening - 1) in ("if", "for", "while", "constexpr", "Q_FOREACH")


def begins_statement(cpp, index):
    before = cpp.at(index - 1)
    return before in (";", "{", "}", "else") or (before == ")" and is_controlled(cpp, index - 1))


def end_of_call(cpp, index):
    """The semicolon after a chain of names, members and calls that ends in a call; None where it is something else."""
    while cpp.kind(index) == "name" and cpp.at(index) not in NO_CALLS:
        index += 1
        while cpp.at(index) in ("(", "["):
            index = cpp.partners.get(index, len(cpp)) + 1
        if cpp.at(index) == ";":
            return index if cpp.at(index - 1) == ")" else None
        if cpp.at(index) not in ("::", ".", "->"):
            return None
        index += 1
    return None


# An empty block, because an empty statement below an `if` is a warning.
def calls(cpp, index, _):
    if not begins_statement(cpp, index):
        return
    first = index + 1 if cpp.at(index) in ("Q_EMIT", "co_await") else index
    if (end := end_of_call(cpp, first)) is not None:
        yield fault("call", cpp, index, end + 1, "{}")


def returns(cpp, index, _):
    if cpp.at(index) not in ("return", "co_return"):
        return
    end = cpp.end_of_expression(index + 1, (";",))
    if not EMPTY_VALUE.fullmatch("".join(cpp.between(index + 1, end).split())):
        yield fault("return", cpp, index + 1, end, "{}")


def is_shown(cpp, index):
    """Whether the string at `index` is the text of a translation, and not its context or its explanation."""
    while cpp.kind(index - 1) == "string":
        index -= 1
    if cpp.at(index - 1) == "(":
        return cpp.at(index - 2) == "tr"
    is_second = cpp.at(index - 1) == "," and cpp.at(index - 3) == "("
    return is_second and cpp.at(index - 4) in ("translate", "QT_TRANSLATE_NOOP")


def texts(cpp, index, _):
    if cpp.kind(index) != "string" or not is_shown(cpp, index):
        return
    text = cpp.at(index)
    if letter := LETTER.search(text, text.index('"')):
        other = chr(ord(letter[0]) + (-1 if letter[0] in "zZ" else 1))
        yield fault("text", cpp, index, index + 1, text[: letter.start()] + other + text[letter.end() :])


def colon_of(cpp, index):
    """The colon that belongs to the question mark at `index`."""
    nested, index = 0, cpp.end_of_expression(index + 1, ("?", ":", ";"))
    while cpp.at(index) == "?" or (cpp.at(index) == ":" and nested):
        nested += 1 if cpp.at(index) == "?" else -1
        index = cpp.end_of_expression(index + 1, ("?", ":", ";"))
    return index if cpp.at(index) == ":" else None


def arms(cpp, index, _):
    if cpp.at(index) != "?" or (colon := colon_of(cpp, index)) is None:
        return
    end = cpp.end_of_expression(colon + 1, (",", ";"))
    one, other = cpp.between(index + 1, colon), cpp.between(colon + 1, end)
    if one != other and one and other:
        middle = cpp.text[cpp.tokens[colon - 1].end : cpp.tokens[colon + 1].start]
        yield fault("arms", cpp, index + 1, end, other + middle + one)


def enumerator(cpp, index):
    """The family that the name at `index` belongs to, where it looks like one of an enumeration's."""
    owner, name, after = cpp.at(index - 2), cpp.at(index), cpp.at(index + 1)
    if cpp.at(index - 1) != "::" or not owner[:1].isupper() or not re.match(r"[A-Z]\w*[a-z]", name):
        return None
    if after in ("::", "(", "{", "<", ">", "*", "&", "...") or cpp.kind(index + 1) == "name":
        return None
    return (owner, re.match(r"Key_|[A-Z][a-z]*", name)[0]) if owner == "Qt" else (owner, "")


# Two names of one value.
THE_SAME = {"AlignLeading", "AlignLeft"}


def enumerators(cpp, index, families):
    family = enumerator(cpp, index)
    for sibling in sorted(families.get(family, ())):
        if sibling != cpp.at(index) and {sibling, cpp.at(index)} != THE_SAME:
            yield fault("enumerator", cpp, index, index + 1, sibling)


def families_of(cpp):
    """The names of each family of enumerators that the source uses."""
    found = {}
    for index in range(len(cpp)):
        if family := enumerator(cpp, index):
            found.setdefault(family, set()).add(cpp.at(index))
    return found


def families_for(cpp, elsewhere):
    """The file's own siblings; where it uses but one of a family, those that other files use."""
    own = families_of(cpp)
    return {family: names if len(names) > 1 else names | elsewhere.get(family, set()) for family, names in own.items()}


OPERATORS = (operators, constants, truths, negations, calls, returns, texts, arms, enumerators)


def faults_of(text, elsewhere=None):
    cpp = CppText(text)
    families = families_for(cpp, elsewhere or {})
    for index in range(len(cpp)):
        if index not in cpp.muted:
            for operator in OPERATORS:
                yield from operator(cpp, index, families)


def planted(text, change):
    return text[: change.start] + change.replacement + text[change.end :]
