"""The list of mutants that no test can notice, with the reasons.

An entry is a header, the line, the line as the mutant has it, and the reason:

    src/folder/File.cpp: swap-relation
    - if (count > limit) {
    + if (count >= limit) {
    The limit itself is refused three lines above.

Blanks around the lines do not count, nor does the line's number. Where a file has several equal mutants the header
says which is meant: `src/folder/File.cpp: swap-relation [2 of 3]`. Lines that begin with `#` are comments.
"""

import re
from dataclasses import dataclass
from pathlib import Path
from typing import Iterable

from choice import Mutant, mutants_of

_HEADER = re.compile(r"(?P<path>\S+): (?P<operator>[a-z-]+)(?: \[(?P<number>\d+) of (?P<count>\d+)\])?")


class BadList(Exception):
    """The list does not follow its format."""


@dataclass(frozen=True)
class Equivalent:
    """An entry: the `number`-th of `count` mutants that are equal in all but their line."""

    path: str
    operator: str
    before: str
    after: str
    reason: str
    number: int
    count: int
    where: str  # in the list

    def group(self) -> tuple[str, str, str, str]:
        return self.path, self.operator, self.before, self.after


def _entry(lines: list[str], where: str) -> Equivalent:
    header = _HEADER.fullmatch(lines[0])
    if not header:
        raise BadList(f"{where}: expected 'PATH: OPERATOR' or 'PATH: OPERATOR [N of M]', and not '{lines[0]}'")
    if len(lines) < 4 or lines[1][:1] != "-" or lines[2][:1] != "+":
        raise BadList(f"{where}: expected the line behind '-', the changed line behind '+', and the reason")
    return Equivalent(
        header["path"],
        header["operator"],
        lines[1][1:].strip(),
        lines[2][1:].strip(),
        " ".join(line.strip() for line in lines[3:]),
        int(header["number"] or 1),
        int(header["count"] or 1),
        where,
    )


def read(path: Path) -> list[Equivalent]:
    """The entries of a list. Raises BadList."""
    entries: list[Equivalent] = []
    block: list[str] = []
    start = 0
    for number, line in enumerate([*path.read_text(encoding="utf-8").split("\n"), ""], 1):
        if line.startswith("#"):
            continue
        if line.strip():
            start = start if block else number
            block.append(line)
        elif block:
            entries.append(_entry(block, f"{path.name}:{start}"))
            block = []
    return entries


def _matched(entry: Equivalent, mutants: Iterable[Mutant]) -> Mutant | None:
    """The mutant that an entry means, if there is just the number of equal ones that it says."""
    equal = [mutant for mutant in mutants if mutant.group() == entry.group()]
    return equal[entry.number - 1] if len(equal) == entry.count and 1 <= entry.number <= entry.count else None


def match(entries: list[Equivalent], root: Path) -> tuple[dict[Mutant, Equivalent], list[str]]:
    """The mutants that entries mean, and what is wrong with those entries that mean none."""
    known: dict[Mutant, Equivalent] = {}
    faults = []
    mutants: dict[str, list[Mutant]] = {}
    for entry in entries:
        file = root / entry.path
        if entry.path not in mutants:
            text = file.read_text(encoding="utf-8") if file.is_file() else ""
            mutants[entry.path] = mutants_of(entry.path, text)
        mutant = _matched(entry, mutants[entry.path])
        if mutant is None:
            count = sum(1 for other in mutants[entry.path] if other.group() == entry.group())
            faults.append(
                f"{entry.where}: {entry.path}: {entry.operator}: '{entry.before}' matches {count} mutants,"
                f" and the entry says {entry.count}; mend the entry, or take it out"
            )
        elif mutant in known:
            faults.append(f"{entry.where}: says the same as {known[mutant].where}; take one of them out")
        else:
            known[mutant] = entry
    return known, faults
