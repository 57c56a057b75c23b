"""The operators: each finds the places in a source text where it can break the code, and says how.

They rely on the format of this project's code (`./dev format`): binary operators stand between blanks, brackets of
templates do not.
"""

import re
from typing import Iterator, NamedTuple

from cpp_structure import JUMPS, Statement, Structure
from cpp_text import tokens_of


class Edit(NamedTuple):
    """Replaces the text from `start` to before `end`."""

    start: int
    end: int
    text: str


class Change(NamedTuple):
    """One way to break a source text; `start` is the offset to which it belongs."""

    operator: str
    start: int
    edits: tuple[Edit, ...]


def apply(text: str, change: Change) -> str:
    """The text with the change made. No line is added or taken away."""
    for edit in sorted(change.edits, reverse=True):
        text = text[: edit.start] + edit.text + text[edit.end :]
    return text


class Source:
    """A source text, its tokens and their structure."""

    def __init__(self, text: str):
        self.text = text
        self.tokens = tokens_of(text)
        self.structure = Structure(self.tokens)

    def replaced(self, operator: str, i: int, text: str) -> Change:
        """The change of one token."""
        token = self.tokens[i]
        return Change(operator, token.start, (Edit(token.start, token.end, text),))

    def enclosed(self, operator: str, first: int, end: int, before: str, after: str) -> Change:
        """The change that puts something around the tokens from `first` to before `end`."""
        start, stop = self.tokens[first].start, self.tokens[end - 1].end
        return Change(operator, start, (Edit(start, start, before), Edit(stop, stop, after)))

    def dropped(self, operator: str, statement: Statement) -> Change:
        """The change that leaves nothing of a statement but the semicolon; line ends stay."""
        start, stop = self.tokens[statement.first].start, self.tokens[statement.last].start
        return Change(operator, start, (Edit(start, stop, "\n" * self.text.count("\n", start, stop)),))

    def is_between_blanks(self, i: int) -> bool:
        token = self.tokens[i]
        return self.text[token.start - 1].isspace() and self.text[token.end : token.end + 1].isspace()

    def is_executed(self, i: int) -> bool:
        """True for a token of a function body or of a value that is given to something; false for declarations."""
        return self._executed[i]

    @property
    def _executed(self) -> list[bool]:
        if not hasattr(self, "_executed_tokens"):
            self._executed_tokens = _executed_tokens(self.structure)
        return self._executed_tokens


def _executed_tokens(structure: Structure) -> list[bool]:
    executed = [scope in ("code", "values") for scope in structure.scope]
    # Values of constants, and what constructors give to members, stand among declarations.
    i = 0
    while i < len(executed):
        end = i + 1
        if structure.scope[i] in ("declarations", "members"):
            if structure.text(i) == "=":
                end = _end_of_value(structure, i)
            elif structure.text(i) == ":":
                end = _end_of_member_values(structure, i)
            if end > i + 1:
                executed[i:end] = [True] * (end - i)
        i = end
    _exclude_types(structure, executed)
    return executed


def _end_of_value(structure: Structure, i: int) -> int:
    """The end of the value behind the `=` of a constant; what lies in braces of it has a scope of its own."""
    head = structure.head[i]
    if structure.scope[i] == "members" and not structure.is_constant(head):
        return i + 1
    if structure.text(i - 1) in ("operator", ")", "noexcept", "override", "const") or structure.in_parentheses[i]:
        return i + 1  # `= default`, `= 0`, a parameter's default
    if structure.text(head) == "template" and i < structure.end_of_angles(head + 1):
        return i + 1
    end = i + 1
    while end < len(structure.tokens) and structure.text(end) != ";":
        end = structure.after(end)
    return end


def _end_of_member_values(structure: Structure, i: int) -> int:
    """The end of what a constructor gives to members, if that stands behind the `:`."""
    if structure.text(i - 1) not in (")", "noexcept"):
        return i + 1
    end = i + 1
    while end < len(structure.tokens) and structure.text(end) not in (";", "}"):
        if structure.block_kind.get(end) == "code":
            return end
        end = structure.after(end)
    return i + 1


def _exclude_types(structure: Structure, executed: list[bool]):
    """Takes out what only the compiler looks at."""
    for i, _ in enumerate(executed):
        text = structure.text(i)
        end = i
        if text == "template" and structure.text(i + 1) == "<":
            end = i + 2
            while end < len(executed) and structure.text(end) not in (">", ";", "{"):
                end += 1
        elif text in ("static_assert", "noexcept", "decltype", "alignas") and structure.text(i + 1) == "(":
            end = structure.after(i + 1)
        elif text == "constexpr" and structure.text(i - 1) == "if":
            end = structure.after(i + 1)
        elif text in ("using", "typedef", "case"):
            end = i
            while end < len(executed) and structure.text(end) not in (";", ":"):
                end += 1
        executed[i:end] = [False] * (end - i)


def swap_relation(source: Source) -> Iterator[Change]:
    """`<` for `<=`, `>` for `>=`, `==` for `!=`, and back."""
    swapped = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
    yield from _swapped_signs("swap-relation", source, swapped)


def swap_logic(source: Source) -> Iterator[Change]:
    """`&&` for `||`, and back."""
    yield from _swapped_signs("swap-logic", source, {"&&": "||", "||": "&&"})


def _swapped_signs(operator: str, source: Source, swapped: dict[str, str]) -> Iterator[Change]:
    for i, token in enumerate(source.tokens):
        if token.text in swapped and source.is_executed(i) and source.is_between_blanks(i):
            yield source.replaced(operator, i, swapped[token.text])


def negate_condition(source: Source) -> Iterator[Change]:
    """`!(...)` around what an if, while, for or ?: decides by; not where another operator does the same."""
    structure = source.structure
    for condition in structure.conditions:
        if not _other_operators_negate(structure, condition.first, condition.end):
            change = source.enclosed("negate-condition", condition.first, condition.end, "!(", ")")
            yield change._replace(start=source.tokens[condition.keyword].start)
    for i, token in enumerate(source.tokens):
        if token.text == "?" and source.is_executed(i):
            first = _beginning_of_choice(structure, i)
            if first < i and not _other_operators_negate(structure, first, i):
                yield source.enclosed("negate-condition", first, i, "!(", ")")


def _beginning_of_choice(structure: Structure, question: int) -> int:
    """Where the condition of a `?` begins."""
    openings = {closing: opening for opening, closing in structure.match.items()}
    i = question
    while i > 0:
        before = i - 1
        if before in openings:
            i = openings[before]
        elif structure.text(before) in ("=", "return", "(", "[", "{", ",", ";", "?", ":", "<<", "+=", "+", "=>", "}"):
            return i
        else:
            i = before
    return i


def _other_operators_negate(structure: Structure, first: int, end: int) -> bool:
    texts = [structure.text(i) for i in structure.top_level(first, end)]
    if "&&" in texts or "||" in texts:
        return False
    return texts[0] in ("!", "true", "false") or "==" in texts or "!=" in texts


def drop_not(source: Source) -> Iterator[Change]:
    """Takes the `!` away."""
    for i, token in enumerate(source.tokens):
        if token.text == "!" and source.is_executed(i):
            yield source.replaced("drop-not", i, "")


def swap_truth(source: Source) -> Iterator[Change]:
    """`true` for `false`, and back."""
    swapped = {"true": "false", "false": "true"}
    for i, token in enumerate(source.tokens):
        in_angles = source.structure.text(i - 1) == "<" or source.structure.text(i + 1) == ">"
        if token.text in swapped and source.is_executed(i) and not in_angles:
            yield source.replaced("swap-truth", i, swapped[token.text])


_INTEGER = re.compile(r"(0[xX][0-9A-Fa-f']+|0|[1-9][0-9']*)([uUlLzZ]*)")


def off_by_one(source: Source) -> Iterator[Change]:
    """A number one greater, or one less; `+ 1` for `- 1`, and back."""
    structure = source.structure
    for i, token in enumerate(source.tokens):
        if not source.is_executed(i):
            continue
        if token.kind == "number":
            in_angles = structure.text(i + 1) == ">" and not source.is_between_blanks(i + 1)
            number = _INTEGER.fullmatch(token.text)
            if number and not in_angles:
                yield from _neighbours(source, i, number)
        elif token.text in ("+", "-") and source.is_between_blanks(i):
            if "number" in (structure.kind(i - 1), structure.kind(i + 1)) or token.text == "-":
                yield source.replaced("off-by-one", i, {"+": "-", "-": "+"}[token.text])


def _neighbours(source: Source, i: int, number: re.Match) -> Iterator[Change]:
    digits, suffix = number.group(1).replace("'", ""), number.group(2)
    base = 16 if digits[:2] in ("0x", "0X") else 10
    value = int(digits, base)
    for other in (value + 1, value - 1):
        if other >= 0:
            text = f"0x{other:x}" if base == 16 else str(other)
            yield source.replaced("off-by-one", i, text + suffix)


_ASSIGNMENTS = {"=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>="}


def _shape(source: Source, statement: Statement) -> str:
    """What a statement is: "call", "assignment", "declaration" or nothing of these."""
    structure = source.structure
    i, last = statement.first, statement.last
    if structure.text(i) in ("++", "--"):
        return "assignment"
    if structure.text(i) == "delete":
        return "call"
    while structure.text(i) in ("*", "::"):
        i += 1
    if structure.text(i) == "(":
        i = structure.after(i)  # an expression in brackets, of which something is called or assigned to
    elif structure.kind(i) != "name" or structure.text(i) in _NO_EXPRESSION:
        return "declaration" if structure.kind(i) == "name" else ""
    called = False
    while i < last:
        text = structure.text(i)
        if structure.kind(i) == "name":
            if structure.kind(i - 1) == "name" and i > statement.first and structure.text(i - 1) != "template":
                return "declaration"
            called = False
            i += 1
        elif text in (".", "->", "::"):
            i += 1
        elif text in ("(", "["):
            called = text == "("
            i = structure.after(i)
        elif text == "{":
            called = True
            i = structure.after(i)
        elif text == "<" and not source.is_between_blanks(i):
            i = structure.end_of_angles(i)
            if structure.kind(i) == "name" or structure.text(i) in ("&", "*", "&&"):
                return "declaration"
        else:
            break
    text = structure.text(i)
    if text in _ASSIGNMENTS or text in ("++", "--"):
        return "assignment"
    if text == ";":
        return "call" if called else ""
    if text in ("<<", ">>"):
        return "call"
    return "declaration" if text in ("&", "*", "&&") else ""


_NO_EXPRESSION = JUMPS | {
    "using", "typedef", "static_assert", "const", "constexpr", "auto", "static", "thread_local", "struct", "class",
    "enum", "union", "template", "typename", "unsigned", "int", "long", "char", "bool", "double", "float", "short",
    "void", "static_cast", "extern", "friend", "namespace", "inline",
}  # fmt: skip


def drop_call(source: Source) -> Iterator[Change]:
    """Takes a statement away that calls something, or writes to a stream."""
    for statement in source.structure.statements:
        if _shape(source, statement) == "call":
            yield source.dropped("drop-call", statement)


def drop_assignment(source: Source) -> Iterator[Change]:
    """Takes a statement away that changes a variable."""
    for statement in source.structure.statements:
        if _shape(source, statement) == "assignment":
            yield source.dropped("drop-assignment", statement)


_LOCK = re.compile(r"(lock_guard|unique_lock|scoped_lock|shared_lock|[A-Za-z]*Lock|[A-Za-z]*Scope)")


def drop_lock(source: Source) -> Iterator[Change]:
    """Takes the declaration of a lock, or of another guard of a scope, away where nothing else names it."""
    structure = source.structure
    for statement in structure.statements:
        names = [i for i in structure.top_level(statement.first, statement.last) if structure.kind(i) == "name"]
        if len(names) < 2 or structure.text(names[-1] + 1) not in ("(", "{"):
            continue
        types = [structure.text(i) for i in names[:-1]]
        variable = structure.text(names[-1])
        declares = structure.kind(names[-1] - 1) == "name" or structure.text(names[-1] - 1) == ">"
        used = any(structure.text(i) == variable for i in range(statement.last, statement.block_end))
        if declares and not used and any(_LOCK.fullmatch(word) for word in types):
            yield source.dropped("drop-lock", statement)


def notify_one(source: Source) -> Iterator[Change]:
    """`notify_one` for `notify_all`."""
    for i, token in enumerate(source.tokens):
        if token.text == "notify_all":
            yield source.replaced("notify-one", i, "notify_one")


def drop_guard(source: Source) -> Iterator[Change]:
    """Takes a return, break, continue or throw away that an if guards, so that what follows is reached."""
    for statement in source.structure.statements:
        if statement.guarded and source.structure.text(statement.first) in JUMPS:
            yield source.dropped("drop-guard", statement)


OPERATORS = (
    negate_condition,
    swap_relation,
    swap_logic,
    off_by_one,
    drop_call,
    drop_assignment,
    drop_lock,
    notify_one,
    drop_guard,
    swap_truth,
    drop_not,
)


def changes_of(text: str) -> list[Change]:
    """All ways in which the operators break a source text, in its order."""
    source = Source(text)
    changes = [change for operator in OPERATORS for change in operator(source)]
    return sorted(changes, key=lambda change: (change.start, change.operator, change.edits))
