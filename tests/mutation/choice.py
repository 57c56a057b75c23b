"""Which mutants there are, and which of them are taken."""

import hashlib
import re
from dataclasses import dataclass
from pathlib import Path
from typing import Iterable

import operators
from cpp_text import Lines

# The folders whose code is broken unless other files are asked for.
FOLDERS = ("bundle_checker", "bundle_reader", "framework/src", "framework/tools", "inspection", "src", "text", "tools")


class BadSelection(Exception):
    """What was asked for names nothing."""


@dataclass(frozen=True)
class Mutant:
    """One change of one file. `line` is the first line that it changes, `before` and `after` are that line's text."""

    path: str
    line: int
    operator: str
    before: str
    after: str
    change: operators.Change

    def describe(self) -> str:
        return f"{self.path}:{self.line} {self.operator}"

    def group(self) -> tuple[str, str, str, str]:
        """What does not depend on where in the file the line stands."""
        return self.path, self.operator, self.before.strip(), self.after.strip()


def mutants_of(path: str, text: str) -> list[Mutant]:
    """All mutants of a file, in the order of its text."""
    lines = Lines(text)
    found = []
    for change in operators.changes_of(text):
        line = lines.number(min(edit.start for edit in change.edits))
        after = Lines(operators.apply(text, change)).text(line)
        found.append(Mutant(path, line, change.operator, lines.text(line), after, change))
    return found


@dataclass(frozen=True)
class Selection:
    """A file or a folder, and of a file all lines or some."""

    path: str
    first: int = 1
    last: int = 1 << 30

    @staticmethod
    def parse(text: str) -> "Selection":
        """From `PATH`, `PATH:LINE` or `PATH:FIRST-LAST`."""
        path, first, last = re.fullmatch(r"(.+?)(?::(\d+)(?:-(\d+))?)?", text).groups()
        path = path.removeprefix("./").rstrip("/")
        return Selection(path, int(first), int(last or first)) if first else Selection(path)

    def has_file(self, path: str) -> bool:
        return path == self.path or path.startswith(self.path + "/")


def source_files(files: Iterable[str], selections: list[Selection]) -> list[str]:
    """The C++ files among `files` that are selected."""
    chosen = [path for path in files if path.endswith((".cpp", ".h")) and any(s.has_file(path) for s in selections)]
    return sorted(chosen)


def folders_with(selections: list[Selection]) -> tuple[str, ...]:
    """The folders that hold the usual code and all that is selected."""
    usual = [Selection(folder) for folder in FOLDERS]
    others = [s.path for s in selections if not any(folder.has_file(s.path) for folder in usual)]
    own = {path.rpartition("/")[0] or path if path.endswith((".cpp", ".h")) else path for path in others}
    return tuple(sorted({*FOLDERS, *own}))


def candidates(root: Path, files: Iterable[str], selections: list[Selection]) -> list[Mutant]:
    """The mutants of the selected files, in the order of the files.

    Raises BadSelection when a selection has no file.
    """
    files = source_files(files, selections)
    for selection in selections:
        if selection.path not in FOLDERS and not any(selection.has_file(path) for path in files):
            raise BadSelection(f"'{selection.path}' is no C++ file of this build, and no folder with one")
    found = []
    for path in files:
        for mutant in mutants_of(path, (root / path).read_text(encoding="utf-8")):
            if any(s.has_file(path) and s.first <= mutant.line <= s.last for s in selections):
                found.append(mutant)
    return found


def shuffled(mutants: list[Mutant], seed: str) -> list[Mutant]:
    """The mutants in an order that the seed and the texts of their lines decide.

    A mutant keeps its place among those that stay when other lines change.
    """

    seen: dict[tuple, int] = {}
    keyed = []
    for mutant in mutants:
        number = seen[mutant.group()] = seen.get(mutant.group(), 0) + 1
        key = "\0".join((seed, *mutant.group(), str(number)))
        keyed.append((hashlib.sha256(key.encode()).hexdigest(), mutant))
    return [mutant for _, mutant in sorted(keyed, key=lambda pair: pair[0])]
