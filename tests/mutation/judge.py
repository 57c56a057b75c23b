"""What becomes of a mutant: it is built, and the tests that reach it run until one fails."""

import os
import re
import shutil
import threading
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field
from pathlib import Path

import operators
from build import Build
from choice import Mutant
from coverage import Coverage
from limited_run import Ending, Running
from scratch import Scratch
from test_list import Test

_LONGEST_FILTER = 100_000  # characters; the system takes no argument of more than 128 KiB
_PASSED = re.compile(r"^\[  PASSED  \] (\d+) tests?\.", re.MULTILINE)
_FAILED = re.compile(r"^\[  FAILED  \] ([\w./]+)", re.MULTILINE)
_BEGUN = re.compile(r"^\[ RUN      \] ([\w./]+)", re.MULTILINE)


@dataclass
class Verdict:
    """What became of a mutant: "killed", "survived", or "refused" by the compiler."""

    mutant: Mutant
    outcome: str
    seconds: float = 0
    reason: str = ""  # what noticed it, and how
    ran: list[str] = field(default_factory=list)  # the tests that did not notice it
    timed_out: bool = False


@dataclass
class _Group:
    """The tests of one program that reach a mutant."""

    program: tuple[str, ...]
    tests: list[Test]


class Judge:
    """Judges mutants one by one."""

    def __init__(self, scratch: Scratch, build: Build, tests: list[Test], coverage: Coverage, work: Path, jobs: int):
        self._scratch = scratch
        self._build = build
        self._tests = {test.name: test for test in tests}
        self._coverage = coverage
        self._work = work
        self._jobs = jobs
        self._users = build.users()
        self._killers: Counter = Counter()
        self._building = threading.Lock()
        self._running = Running()

    def is_built(self, file: str) -> bool:
        """True if some object is compiled from a file or includes it."""
        return file in self._users

    def end(self):
        """Ends what runs at the moment."""
        self._running.end_all()

    def judge(self, mutant: Mutant) -> Verdict:
        begin = time.monotonic()
        text = (self._scratch.path / mutant.path).read_text(encoding="utf-8")
        with self._scratch.changed(mutant.path, operators.apply(text, mutant.change)):
            verdict = self._verdict(mutant)
        shutil.rmtree(self._work / "temporary", ignore_errors=True)  # tests that were ended leave things behind
        verdict.seconds = time.monotonic() - begin
        return verdict

    def _names_of_tests(self, mutant: Mutant) -> list[str]:
        """The tests that reach the line; where it is no code of its own, those that reach the file or its users."""
        of_line = self._coverage.tests_of_line(mutant.path, mutant.line)
        if of_line is not None:
            return of_line
        files = {mutant.path, *self._users[mutant.path].values()}
        return sorted({name for file in files for name in self._coverage.tests_of_file(file)})

    def _groups(self, names: list[str], file: str) -> list[_Group]:
        """The tests by program, those programs first that will most likely notice the mutant soon."""
        groups: dict[tuple[str, ...], _Group] = {}
        for name in names:
            test = self._tests[name]
            groups.setdefault(test.program(), _Group(test.program(), [])).tests.append(test)

        def promise(group: _Group) -> tuple[int, float]:
            aim = sum(1 / max(self._coverage.lines_reached(test.name), 1) for test in group.tests)
            cost = 1 + sum(self._coverage.seconds[test.name] for test in group.tests)
            return self._killers[file, group.program], aim / cost

        return sorted(groups.values(), key=promise, reverse=True)

    def _verdict(self, mutant: Mutant) -> Verdict:
        groups = self._groups(self._names_of_tests(mutant), mutant.path)
        if not groups:
            # Built all the same, as only what compiles is a mutant; an object of the product says that soonest.
            target = min(self._users[mutant.path], key=lambda target: (target.startswith("tests/"), target))
            return Verdict(mutant, "survived" if self._build.build([target]) else "refused")
        self._running = Running()
        verdict = Verdict(mutant, "survived")
        self._take(groups[0], verdict)
        if verdict.outcome == "survived":
            with ThreadPoolExecutor(self._jobs) as pool:
                results = [pool.submit(self._take, group, verdict) for group in groups[1:]]
                try:
                    for result in results:
                        result.result()
                except BaseException:
                    verdict.outcome = "interrupted"
                    self._running.end_all()
                    raise
        return verdict

    def _take(self, group: _Group, verdict: Verdict):
        """Builds and runs the tests of a program, and writes down what comes of it, unless the mutant is dead."""
        targets = sorted({target for test in group.tests for target in test.targets})
        with self._building:
            if verdict.outcome != "survived":
                return
            if targets and not self._build.build(targets):
                verdict.outcome = "refused"
                return
        for tests in self._portions(group.tests):
            failure = self._failure(tests)
            if verdict.outcome != "survived":
                return
            if failure is None:
                verdict.ran += [test.name for test in tests]
                continue
            verdict.outcome, (verdict.reason, verdict.timed_out) = "killed", failure
            self._killers[verdict.mutant.path, group.program] += 1
            self._running.end_all()
            return

    def _portions(self, tests: list[Test]) -> list[list[Test]]:
        """Tests that can run in one process; those that reach little come first."""
        if not tests[0].filter:
            return [[test] for test in tests]
        portions: list[list[Test]] = [[]]
        length = 0
        for test in sorted(tests, key=lambda test: self._coverage.lines_reached(test.name)):
            if length + len(test.filter) > _LONGEST_FILTER:
                portions.append([])
                length = 0
            portions[-1].append(test)
            length += len(test.filter) + 1
        return portions

    def _failure(self, tests: list[Test]) -> tuple[str, bool] | None:
        """Which test fails and how, and whether it was a matter of time; nothing if none does."""
        log = self._work / f"test-{threading.get_ident()}.log"
        command = list(tests[0].command)
        if tests[0].filter:
            command = [argument for argument in command if not argument.startswith("--gtest_filter=")]
            command += ["--gtest_filter=" + ":".join(test.filter for test in tests), "--gtest_fail_fast"]
        ending = self._run(tests, command, log)
        if ending.cancelled:
            return None
        said = log.read_text(encoding="utf-8", errors="replace")
        if not ending.good:
            return _noticed(tests, ending, said), ending.timed_out
        passed = _PASSED.search(said)
        if len(tests) > 1 and (passed is None or int(passed.group(1)) != len(tests)):
            # A test ended the process as if all were well. CTest runs each alone, so do we.
            return next((failure for test in tests if (failure := self._failure([test]))), None)
        return None

    def _run(self, tests: list[Test], command: list[str], log: Path) -> Ending:
        longest = max(self._coverage.seconds[test.name] for test in tests)
        temporary = self._work / "temporary"
        temporary.mkdir(exist_ok=True)
        env = dict(os.environ, TMPDIR=str(temporary))
        env.pop("OSTREL_COVERAGE_DIRECTORY", None)
        env.update(each.split("=", 1) for each in tests[0].environment)
        return self._running.run(command, 15 + 10 * longest, log, cwd=Path(tests[0].cwd), env=env)


def _noticed(tests: list[Test], ending: Ending, said: str) -> str:
    """Names the test that failed, and says how if it is no failed expectation."""
    failed = _FAILED.search(said)
    if failed and not ending.timed_out:
        return failed.group(1)
    begun = _BEGUN.findall(said)
    name = begun[-1] if begun and tests[0].filter else tests[0].name
    return f"{name} ({ending.describe()})"
