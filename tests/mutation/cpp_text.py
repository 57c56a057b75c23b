"""C++ text as tokens: comments, literals and preprocessor lines are told apart from code."""

import re
from bisect import bisect_right
from typing import NamedTuple

# What is no code, at its beginning; the rest of a match is found by _end_of().
_NO_CODE = re.compile(
    r"""//|/\*|^[ \t]*\#|(?:u8|[uUL])?R"|(?:u8|[uUL])?"|(?<![0-9A-Fa-f])(?:u8|[uUL])?'""", re.MULTILINE
)
_TOKEN = re.compile(
    r"""(?P<number>\.?[0-9](?:[eEpP][+-]|[0-9A-Za-z_.]|'(?=[0-9A-Za-z]))*)
      | (?P<name>[A-Za-z_][A-Za-z_0-9]*)
      | (?P<sign><<=|>>=|->\*|\.\.\.|::|->|\+\+|--|<<|<=|>=|==|!=|&&|\|\||\+=|-=|\*=|/=|%=|&=|\|=|\^=|[^\s\w])""",
    re.VERBOSE,
)


class Token(NamedTuple):
    """A piece of code; `kind` is name, number, sign or text (a literal of characters)."""

    kind: str
    text: str
    start: int
    end: int


def _end_of_line(text: str, start: int) -> int:
    """The end of the line, lines that a backslash continues included."""
    at = start
    while True:
        end = text.find("\n", at)
        if end < 0:
            return len(text)
        if text[end - 1] != "\\":
            return end
        at = end + 1


def _end_of_quoted(text: str, start: int, quote: str) -> int:
    at = start
    while at < len(text) and text[at] != quote and text[at] != "\n":
        at += 2 if text[at] == "\\" else 1
    return min(at + 1, len(text))


def _end_of(text: str, match: re.Match) -> int:
    """Where the comment, the literal or the preprocessor line ends."""
    begin = match.group()
    if begin == "//" or begin.endswith("#"):
        return _end_of_line(text, match.start())
    if begin == "/*":
        end = text.find("*/", match.end())
        return end + 2 if end >= 0 else len(text)
    if begin.endswith('R"'):
        delimiter = text[match.end() : text.index("(", match.end())]
        closing = ")" + delimiter + '"'
        return text.index(closing, match.end()) + len(closing)
    return _end_of_quoted(text, match.end(), begin[-1])


def tokens_of(text: str) -> list[Token]:
    """The tokens of a source text; comments and preprocessor lines give none."""
    tokens = []
    at = 0
    while at < len(text):
        match = _NO_CODE.search(text, at)
        end = match.start() if match else len(text)
        for token in _TOKEN.finditer(text, at, end):
            tokens.append(Token(token.lastgroup, token.group(), token.start(), token.end()))
        if match is None:
            break
        at = _end_of(text, match)
        if match.group()[-1] in "\"'":
            tokens.append(Token("text", text[match.start() : at], match.start(), at))
    return tokens


class Lines:
    """The lines of a text, by offset."""

    def __init__(self, text: str):
        self._text = text
        self._starts = [0] + [i + 1 for i, c in enumerate(text) if c == "\n"]

    def number(self, offset: int) -> int:
        """The line of an offset, counted from 1."""
        return bisect_right(self._starts, offset)

    def text(self, number: int) -> str:
        start = self._starts[number - 1]
        end = self._text.find("\n", start)
        return self._text[start : end if end >= 0 else len(self._text)]
