"""Breaks the code on purpose and says where no test notices. `./dev mutants` runs it; docs/mutations.md explains it."""

import argparse
import fcntl
import hashlib
import json
import os
import signal
import sys
import time
from pathlib import Path

sys.dont_write_bytecode = True  # the sources stay as they are

import choice
import equivalents
import report
from build import Build, BuildFailed
from choice import Mutant, Selection
from coverage import Coverage, Measurement, TestsFail
from judge import Judge, Verdict
from limited_run import Running
from scratch import Scratch, files_under_control
from test_list import NoTests, Test, tests_of

ROOT = Path(__file__).resolve().parents[2]
EQUIVALENTS = Path(__file__).resolve().with_name("equivalents.txt")


class Fault(Exception):
    """What keeps a run from being made."""


def arguments(given: list[str]) -> argparse.Namespace:
    cmake = given.index("--") if "--" in given else len(given)
    parser = argparse.ArgumentParser(
        prog="./dev mutants",
        usage="%(prog)s [options] [FILE...] [-- CMAKE_OPTION...]",
        description=__doc__.partition(".")[0] + ".",
    )
    parser.add_argument("--framework", default="auto", choices=["auto", "system", "embedded"])
    parser.add_argument("--sample", type=int, default=20, metavar="N", help="how many mutants (0: all; default: 20)")
    parser.add_argument("--seed", default="1", help="any word; each chooses another sample (default: 1)")
    parser.add_argument("--require", type=float, metavar="PERCENT", help="be content with so many killed")
    parser.add_argument("--list", action="store_true", help="only list the mutants; build and run nothing")
    parser.add_argument("--check-equivalents", action="store_true", help="only check the list of equivalent mutants")
    parser.add_argument("--jobs", type=int, default=min(os.cpu_count() or 1, 2), help=argparse.SUPPRESS)
    parser.add_argument("--root", type=Path, default=ROOT, help=argparse.SUPPRESS)
    parser.add_argument("--equivalents", type=Path, default=EQUIVALENTS, help=argparse.SUPPRESS)
    parser.add_argument("files", nargs="*", metavar="FILE", help="files or folders, PATH:LINE or PATH:FIRST-LAST")
    options = parser.parse_args(given[:cmake])
    options.cmake = given[cmake + 1 :]
    return options


def say(text: str):
    print(text, flush=True)


class Run:
    """One run, from the sources to the summary."""

    def __init__(self, options: argparse.Namespace):
        self._options = options
        self._root = options.root.resolve()
        selections = [Selection.parse(text) for text in options.files]
        self._selections = selections or [Selection(folder) for folder in choice.FOLDERS]
        self._work = self._root / "build" / "mutants" / options.framework
        self._scratch = Scratch(self._root, self._work / "tree")
        self._judge: Judge | None = None

    def list_mutants(self):
        files = files_under_control(self._root)
        known, faults = equivalents.match(equivalents.read(self._options.equivalents), self._root)
        for mutant in choice.candidates(self._root, files, self._selections):
            say(f"{mutant.describe()}{' (known to be equivalent)' if mutant in known else ''}")
            say(f"  - {mutant.before.strip()}\n  + {mutant.after.strip()}")
        self._complain(faults)

    def check_equivalents(self) -> bool:
        known, faults = equivalents.match(equivalents.read(self._options.equivalents), self._root)
        self._complain(faults)
        say(f"{len(known)} equivalent mutants are known")
        return not faults

    @staticmethod
    def _complain(faults: list[str]):
        for fault in faults:
            say(f"mutants: {fault}")

    def make(self) -> bool:
        """True if enough mutants are killed. Raises Fault and the exceptions of the other modules."""
        begin = time.monotonic()
        self._lock()
        scratch = self._scratch
        scratch.update()
        # The list is that of the sources at work, also when it changed since.
        known, faults = equivalents.match(equivalents.read(self._options.equivalents), scratch.path)
        found = choice.candidates(scratch.path, scratch.files, self._selections)
        if not found:
            raise Fault("there is nothing to break in the selected lines")
        build = Build(scratch.path, self._work, self._options.framework, self._options.cmake, self._options.jobs)
        say(f"Building the unchanged code in {build.path}")
        build.configure()
        build.build_all()
        tests = tests_of(build)
        coverage = self._coverage(scratch, tests)
        self._judge = Judge(scratch, build, tests, coverage, self._work, self._options.jobs)
        found = [mutant for mutant in found if self._judge.is_built(mutant.path)]
        if not found:
            raise Fault("this build uses none of the selected files; choose another --framework")
        verdicts = self._judged([mutant for mutant in found if mutant not in known])
        for verdict in verdicts:
            if verdict.outcome == "survived":
                say("\n" + report.survivor(verdict, scratch.path))
        say("")
        self._complain(faults)
        left_out = sum(1 for mutant in found if mutant in known)
        say(report.summary(verdicts, left_out, time.monotonic() - begin))
        return self._is_enough(verdicts)

    def _lock(self):
        """Two runs in one copy would see each other's mutants."""
        self._work.mkdir(parents=True, exist_ok=True)
        self._locked = open(self._work / "lock", "w", encoding="utf-8")  # closed with the process
        try:
            fcntl.flock(self._locked, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise Fault(f"another run is at work in {self._work}") from None

    def _coverage(self, scratch: Scratch, tests: list[Test]) -> Coverage:
        """Which tests reach what; measured once for each state of the sources."""
        folders = choice.folders_with(self._selections)
        key = hashlib.sha256(json.dumps([scratch.hash, folders, self._options.cmake]).encode()).hexdigest()[:16]
        kept = self._work / f"coverage-{key}.json"
        if not kept.is_file():
            say(f"Running {len(tests)} tests of the unchanged code, to learn what they reach")
            begin = time.monotonic()
            measurement = Measurement(self._work, scratch.path, Running(), self._options.jobs)
            coverage = measurement.measure(tests, folders)
            for old in self._work.glob("coverage-*.json"):
                old.unlink()
            coverage.write(kept)
            say(f"  took {time.monotonic() - begin:.0f} s; kept while the sources stay")
        return Coverage.read(kept)

    def _judged(self, mutants: list[Mutant]) -> list[Verdict]:
        """Judges as many mutants as the sample has; those that do not compile do not count."""
        wanted = self._options.sample or len(mutants)
        rest = choice.shuffled(mutants, self._options.seed)
        verdicts: list[Verdict] = []
        say(f"{len(mutants)} mutants; taking {min(wanted, len(mutants))} of them, seed {self._options.seed}")
        while rest and wanted > 0:
            # In the order of the files: one that is left has to be built once more as it was.
            portion, rest = sorted(rest[:wanted], key=lambda mutant: (mutant.path, mutant.line)), rest[wanted:]
            for mutant in portion:
                verdict = self._judge.judge(mutant)
                verdicts.append(verdict)
                wanted -= verdict.outcome != "refused"
                say(report.one_line(verdict))
        return verdicts

    def _is_enough(self, verdicts: list[Verdict]) -> bool:
        if self._options.require is not None:
            return report.percentage(verdicts) >= self._options.require
        return all(verdict.outcome != "survived" for verdict in verdicts)

    def end(self):
        """Ends what an interrupted run still does."""
        for number in (signal.SIGINT, signal.SIGTERM):
            signal.signal(number, signal.SIG_IGN)
        if self._judge is not None:
            self._judge.end()
        self._scratch.restore()


def _interrupt(*_):
    raise KeyboardInterrupt


def main() -> int:
    """0: enough mutants are killed; 1: not enough; 2: the run could not be made; 130: interrupted."""
    signal.signal(signal.SIGTERM, _interrupt)
    options = arguments(sys.argv[1:])
    run = Run(options)
    try:
        if options.check_equivalents:
            return 0 if run.check_equivalents() else 1
        if options.list:
            run.list_mutants()
            return 0
        return 0 if run.make() else 1
    except KeyboardInterrupt:
        run.end()
        print("mutants: interrupted", file=sys.stderr)
        return 130
    except (Fault, BuildFailed, TestsFail, NoTests, choice.BadSelection, equivalents.BadList) as fault:
        print(f"mutants: {fault}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main())
