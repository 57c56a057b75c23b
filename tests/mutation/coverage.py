"""Which tests reach which source lines: found out by running each test once, and kept."""

import json
import os
import shutil
import time
from array import array
from collections import Counter, defaultdict
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import places
from limited_run import Running
from test_list import Test


class TestsFail(Exception):
    """Tests fail on the unchanged code, so that their failing says nothing about a mutant."""


class Coverage:
    """For each source line with code the tests that reach it, and what each test takes."""

    def __init__(self, names: list[str], seconds: dict[str, float], lines: dict[str, dict[int, int]]):
        self._names = names
        self.seconds = seconds
        self._lines = lines  # file, line, one bit for each test
        self._weights: Counter = Counter()
        for mask, count in Counter(mask for of_file in lines.values() for mask in of_file.values()).items():
            for name in self._tests(mask):
                self._weights[name] += count

    def _tests(self, mask: int) -> list[str]:
        return [name for name, bit in zip(self._names, reversed(f"{mask:b}")) if bit == "1"]

    def tests_of_line(self, file: str, line: int) -> list[str] | None:
        """The names of the tests that reach a line; None where a line has no code of its own."""
        mask = self._lines.get(file, {}).get(line)
        return None if mask is None else self._tests(mask)

    def tests_of_file(self, file: str) -> list[str]:
        mask = 0
        for of_line in self._lines.get(file, {}).values():
            mask |= of_line
        return self._tests(mask)

    def lines_reached(self, name: str) -> int:
        """How many lines a test reaches: those of a test that reaches few are more often its subject."""
        return self._weights[name]

    def write(self, path: Path):
        lines = {file: {str(line): f"{mask:x}" for line, mask in of.items()} for file, of in self._lines.items()}
        text = json.dumps({"names": self._names, "seconds": self.seconds, "lines": lines})
        path.with_suffix(".new").write_text(text, encoding="utf-8")
        path.with_suffix(".new").replace(path)

    @staticmethod
    def read(path: Path) -> "Coverage":
        kept = json.loads(path.read_text(encoding="utf-8"))
        lines = {
            file: {int(line): int(mask, 16) for line, mask in of.items()} for file, of in kept["lines"].items()
        }
        return Coverage(kept["names"], kept["seconds"], lines)


class Measurement:
    """Runs the tests of the unchanged code, and tells what they reach."""

    def __init__(self, work: Path, tree: Path, running: Running, jobs: int):
        self._work = work / "coverage"
        self._tree = tree
        self._running = running
        self._jobs = jobs
        self._seconds: dict[str, float] = {}

    def measure(self, tests: list[Test], folders: tuple[str, ...]) -> Coverage:
        """Raises TestsFail."""
        shutil.rmtree(self._work, ignore_errors=True)
        self._work.mkdir(parents=True)
        with ThreadPoolExecutor(self._jobs) as pool:
            try:
                reached = list(pool.map(self._run, range(len(tests)), tests))
            except BaseException:
                self._running.end_all()
                raise
        failed = [test.name for test, of_test in zip(tests, reached) if of_test is None]
        if failed:
            raise TestsFail(
                f"{len(failed)} tests fail on the unchanged code: {', '.join(failed[:5])}; see *.log in {self._work}"
            )
        lines = self._lines(reached, folders)
        shutil.rmtree(self._work)
        return Coverage([test.name for test in tests], self._seconds, lines)

    def _run(self, number: int, test: Test) -> dict[str, array] | None:
        """What a test reached: the places of each program and library. None if it failed, twice."""
        for _ in range(2):
            folder = self._work / str(number)
            shutil.rmtree(folder, ignore_errors=True)
            folder.mkdir()
            begin = time.monotonic()
            env = dict(os.environ, OSTREL_COVERAGE_DIRECTORY=str(folder))
            env.update(each.split("=", 1) for each in test.environment)
            log = self._work / f"{number}.log"
            ending = self._running.run(list(test.command), test.seconds, log, cwd=Path(test.cwd), env=env)
            self._seconds[test.name] = round(time.monotonic() - begin, 3)
            reached: dict[str, array] = defaultdict(lambda: array("I"))
            for file in folder.iterdir():
                program, found = places.read_reached(file)
                reached[program].extend(found)
            shutil.rmtree(folder)
            if ending.good:
                return dict(reached)
        return None

    def _lines(self, reached: list[dict[str, array]], folders: tuple[str, ...]) -> dict[str, dict[int, int]]:
        masks: dict[str, dict[int, int]] = defaultdict(lambda: defaultdict(int))
        # Tests copy bundles to places of their own, with nothing in them that is looked for.
        programs = sorted({program for of_test in reached for program in of_test if os.path.isfile(program)})
        with ThreadPoolExecutor(self._jobs) as pool:
            of_programs = pool.map(lambda program: places.lines_of(Path(program), folders, self._tree), programs)
            for program, lines in zip(programs, of_programs):
                of_place: dict[int, list[tuple[str, int]]] = defaultdict(list)
                for (file, line), begins in lines.items():
                    masks[file][line] |= 0
                    for place in begins:
                        of_place[place].append((file, line))
                for number, of_test in enumerate(reached):
                    for place in of_place.keys() & set(of_test.get(program, ())):
                        for file, line in of_place[place]:
                            masks[file][line] |= 1 << number
        return masks
