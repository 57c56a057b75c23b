"""How C++ tokens hang together: brackets, scopes, statements and conditions.

No parser: what is told from the layout of names and brackets, for text in the format of this project. What it takes for
something else costs a mutant that does not compile, or one that is not made.
"""

from typing import NamedTuple

from cpp_text import Token

_CLOSING = {"(": ")", "[": "]", "{": "}"}
_DECLARING = {"declarations", "members"}
_CLASS_KEYS = {"class", "struct", "union"}
# What may stand between the parameters of a function and its body.
_AFTER_PARAMETERS = {"const", "noexcept", "mutable", "override", "final", "&", "&&", "try", "volatile"}
_ACCESS = {"public", "protected", "private"}
_BEFORE_BLOCK = {"else", "do", "try", ";", "{", "}", ":"}
JUMPS = {"return", "break", "continue", "throw", "goto"}


class Condition(NamedTuple):
    """What decides in an if, while or for: the tokens from `first` to before `end`, at the keyword `keyword`."""

    keyword: int
    first: int
    end: int


class Statement(NamedTuple):
    """A statement that a semicolon ends: the tokens from `first` to `last`, the semicolon."""

    first: int
    last: int
    guarded: bool  # an if alone decides whether it is reached
    block_end: int  # the bracket that closes the block around it


class Structure:
    """The structure of a file's tokens; all members are indexes of tokens."""

    def __init__(self, tokens: list[Token]):
        self.tokens = tokens
        self.match: dict[int, int] = {}
        self.conditions: list[Condition] = []
        self.statements: list[Statement] = []
        self._match_brackets()
        # For each token what the braces around it hold: "declarations", "members" of a class, "code", "values", or
        # "initial" values of members.
        self.scope: list[str] = []
        self.head: list[int] = []  # for each token the first one of the declaration or statement in which it is
        self.in_parentheses: list[bool] = []
        self._find_scopes()
        self._parsed: set[int] = set()
        for i, token in enumerate(tokens):
            if token.text == "{" and self.block_kind.get(i) == "code" and i not in self._parsed:
                self._parse_block(i)

    def text(self, i: int) -> str:
        """The text of a token; nothing where there is none."""
        return self.tokens[i].text if 0 <= i < len(self.tokens) else ""

    def kind(self, i: int) -> str:
        return self.tokens[i].kind if 0 <= i < len(self.tokens) else ""

    def after(self, i: int) -> int:
        """The token behind this one, or behind the bracket that it opens."""
        return self.match.get(i, i) + 1 if self.text(i) in _CLOSING else i + 1

    def top_level(self, first: int, end: int):
        """The tokens of a range that lie in no bracket of it; opening brackets are among them."""
        i = first
        while i < end:
            yield i
            i = self.after(i)

    def _match_brackets(self):
        opened = []
        for i, token in enumerate(self.tokens):
            if token.kind != "sign":
                continue
            if token.text in _CLOSING:
                opened.append(i)
            elif opened and token.text == _CLOSING[self.text(opened[-1])]:
                self.match[opened.pop()] = i

    def _find_scopes(self):
        self.block_kind: dict[int, str] = {}
        around: list[tuple[int, int, str]] = []  # opening bracket, closing bracket, kind of block for braces
        head = 0  # where the declaration or statement began in which we are
        for i, token in enumerate(self.tokens):
            while around and i > around[-1][1]:
                around.pop()
            kind = next((block for _, _, block in reversed(around) if block), "declarations")
            in_parentheses = bool(around) and not around[-1][2]
            self.scope.append(kind)
            self.head.append(head)
            self.in_parentheses.append(in_parentheses)
            if token.text in _CLOSING and i in self.match:
                block = ""
                if token.text == "{":
                    block = self._kind_of_block(i, head, kind, in_parentheses)
                    self.block_kind[i] = block
                around.append((i, self.match[i], block))
            if not in_parentheses and (
                token.text == ";"
                or (token.text == ":" and self.text(i - 1) in _ACCESS)
                or (token.text == "{" and self.block_kind.get(i) not in ("values", "initial"))
                or (token.text == "}" and around and around[-1][2] not in ("values", "initial"))
            ):
                head = i + 1

    def _closes_parameters(self, i: int) -> bool:
        """True if what ends with this token may be the parameters of a function, and what may follow them."""
        while self.text(i) in _AFTER_PARAMETERS:
            i -= 1
        return self.text(i) in (")", "]")

    def _has_return_type(self, i: int, head: int) -> bool:
        """True if a `-> Type` ends with this token."""
        while i > head and (self.kind(i) == "name" or self.text(i) in ("::", "<", ">", "*", "&", ",")):
            i -= 1
        return self.text(i) == "->" and self._closes_parameters(i - 1)

    def _kind_of_block(self, brace: int, head: int, around: str, in_parentheses: bool) -> str:
        before = brace - 1
        if in_parentheses or around not in _DECLARING:
            is_code = self._closes_parameters(before) or self._has_return_type(before, head)
            if not in_parentheses and around == "code":
                if self.text(head) in _CLASS_KEYS | {"enum"} and self.text(before) != ")":
                    return "members"
                is_code = is_code or self.text(before) in _BEFORE_BLOCK
            return "code" if is_code else "values"
        kind = self._kind_of_declared(brace, head)
        return "initial" if kind == "values" and around == "members" and not self.is_constant(head) else kind

    def _kind_of_declared(self, brace: int, head: int) -> str:
        """The kind of a block whose surroundings are declarations; its own declaration begins at `head`."""
        if self.text(head) == "template" and self.text(head + 1) == "<":
            head = self.end_of_angles(head + 1)
        before = self.text(brace - 1)
        words = [self.text(i) for i in self.top_level(head, brace)]
        if "namespace" in words or (words[:1] == ["extern"] and self.kind(head + 1) == "text"):
            return "declarations"
        if words[:1] == ["enum"]:
            return "values"
        if words[:1] and words[0] in _CLASS_KEYS and before != ")":
            return "members"
        if "=" in words and "operator" not in words:
            return "code" if self._closes_parameters(brace - 1) else "values"
        if "(" not in words:
            return "values"
        if ":" in words[words.index("(") :]:
            return "code" if before in (")", "}") else "values"
        return "code"

    def is_constant(self, head: int) -> bool:
        """True if what is declared from this token on is a value that no object has of its own."""
        return self.text(head) in ("static", "constexpr", "inline", "enum")

    def end_of_angles(self, i: int) -> int:
        """The token behind the angle bracket that closes the one at `i`."""
        depth = 0
        while i < len(self.tokens):
            text = self.text(i)
            depth += {"<": 1, ">": -1, ">>": -2}.get(text, 0)
            i = self.after(i) if text in _CLOSING else i + 1
            if depth <= 0:
                break
        return i

    def _parse_block(self, brace: int):
        self._parsed.add(brace)
        end = self.match[brace]
        i = brace + 1
        while i < end:
            i = self._parse_statement(i, end, False)

    def _parse_statement(self, i: int, end: int, guarded: bool) -> int:
        """Takes the statement at `i` in; the token behind it."""
        text = self.text(i)
        if text == "{" and self.block_kind.get(i) == "code":
            self._parsed.add(i)
            inner, last = i + 1, self.match[i]
            while inner < last:
                inner = self._parse_statement(inner, last, guarded)
            return last + 1
        if text in ("if", "while", "for", "switch", "catch"):
            return self._parse_controlled(i, end)
        if text in ("else", "do", "try"):
            return self._parse_statement(i + 1, end, False)
        if text in ("case", "default"):
            while i < end and self.text(i) != ":":
                i = self.after(i)
            return i + 1
        return self._parse_simple(i, end, guarded)

    def _parse_controlled(self, i: int, end: int) -> int:
        keyword = self.text(i)
        opening = i + 1
        is_constexpr = self.text(opening) == "constexpr"
        if is_constexpr:
            opening += 1
        closing = self.match.get(opening, end)
        self._find_lambdas(opening, closing)
        if keyword in ("if", "while", "for") and not is_constexpr:
            self._add_condition(i, opening, closing)
        if self.text(closing + 1) == ";":
            return closing + 2
        return self._parse_statement(closing + 1, end, keyword == "if")

    def _add_condition(self, keyword: int, opening: int, closing: int):
        parts = [opening]
        parts += [i for i in self.top_level(opening + 1, closing) if self.text(i) == ";"]
        parts.append(closing)
        if self.text(keyword) == "for":
            if len(parts) != 4:
                return  # over a range
            first, last = parts[1] + 1, parts[2]
        else:
            first, last = parts[-2] + 1, parts[-1]
        declares = any(self.text(i) == "=" for i in self.top_level(first, last))
        if first < last and not declares:
            self.conditions.append(Condition(keyword, first, last))

    def _parse_simple(self, i: int, end: int, guarded: bool) -> int:
        last = i
        while last < end and self.text(last) != ";":
            last = self.after(last)
        self._find_lambdas(i, last)
        if last < end and last > i:
            self.statements.append(Statement(i, last, guarded, end))
        return last + 1

    def _find_lambdas(self, first: int, end: int):
        for i in range(first, end):
            if self.text(i) == "{" and self.block_kind.get(i) == "code" and i not in self._parsed:
                self._parse_block(i)
