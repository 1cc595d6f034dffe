# SPDX-FileCopyrightText: 2026 The Velquarin developers
# SPDX-License-Identifier: MIT
"""C++ source as tokens, as far as it can be told without a compiler; it counts on the layout of clang-format."""

import re
from typing import NamedTuple

TOKEN = re.compile(
    r"""(?P<space>\s+)
    |(?P<comment>//[^\n]*|/\*.*?\*/)
    |(?P<directive>\#(?:\\\n|[^\n])*)
    |(?P<raw>(?:u8|[uUL])?R"(?P<mark>[^()\\\s]*)\(.*?\)(?P=mark)")
    |(?P<string>(?:u8|[uUL])?"(?:\\.|[^"\\\n])*")
    |(?P<character>'(?:\\.|[^'\\\n])+')
    |(?P<number>\.?\d(?:[eE][+-]|'?[\w.])*)
    |(?P<name>[A-Za-z_]\w*)
    |(?P<sign>::|->|<<=|>>=|<=>|<=|>=|==|!=|&&|\|\||\+\+|--|<<|>>|[-+*/%&|^]=|.)""",
    re.VERBOSE | re.DOTALL,
)
SILENT_KINDS = ("space", "comment", "directive")
# Their texts and conditions are for developers: nobody has to notice a change there.
SPOKEN_TO_DEVELOPERS = re.compile(
    r"Q_ASSERT\w*|static_assert|assert|Q_UNREACHABLE|Q_LOGGING_CATEGORY|throw|fprintf|fputs|perror"
    r"|qC?(?:Debug|Info|Warning|Critical|Fatal)"
)
CLOSING = {"(": ")", "[": "]", "{": "}"}


class Token(NamedTuple):
    kind: str
    text: str
    start: int
    end: int


def tokens_of(text):
    for found in TOKEN.finditer(text):
        if found.lastgroup not in SILENT_KINDS and found["space"] is None:
            yield Token("raw" if found["raw"] else found.lastgroup, found[0], found.start(), found.end())


def partners_of(tokens):
    """The index of the closing bracket of each opening one, and the other way round."""
    partners, opened = {}, []
    for index, token in enumerate(tokens):
        if token.text in CLOSING:
            opened.append(index)
        elif token.text in CLOSING.values() and opened:
            partners[index] = opened.pop()
            partners[partners[index]] = index
    return partners


class CppText:
    def __init__(self, text):
        self.text = text
        self.tokens = list(tokens_of(text))
        self.partners = partners_of(self.tokens)
        self.muted = set(self._spoken_to_developers())

    def __len__(self):
        return len(self.tokens)

    def at(self, index):
        """The text of a token; nothing beyond both ends."""
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def kind(self, index):
        return self.tokens[index].kind if 0 <= index < len(self.tokens) else ""

    def between(self, first, end):
        """The source from the token `first` to the one before `end`."""
        return self.text[self.tokens[first].start : self.tokens[end - 1].end] if first < end else ""

    def has_room(self, index):
        """Whether white space is on both sides, as around a binary operator and never around a template's brackets."""
        token = self.tokens[index]
        return self.text[token.start - 1].isspace() and self.text[token.end : token.end + 1].isspace()

    def end_of_expression(self, index, stops):
        """The first token from `index` on that is one of `stops` or closes a bracket opened before."""
        while index < len(self.tokens) and self.at(index) not in stops and self.at(index) not in CLOSING.values():
            index = self.partners.get(index, index) + 1 if self.at(index) in CLOSING else index + 1
        return index

    def _spoken_to_developers(self):
        for index, token in enumerate(self.tokens):
            if token.kind == "name" and SPOKEN_TO_DEVELOPERS.fullmatch(token.text):
                yield from range(index, self.end_of_expression(index, (";",)))
