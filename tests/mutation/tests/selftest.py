"""The whole of it on a tiny project: what is tested is killed, what is not is told, and no file of the user changes.

usage: selftest.py FOLDER, which is made anew
"""

import os
import shutil
import signal
import subprocess
import sys
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
FOLDER = Path("selftest").resolve()


def contents(folder: Path) -> dict[str, bytes]:
    """All files by name, but for the build."""
    names = [path.relative_to(folder) for path in folder.rglob("*") if path.is_file()]
    return {str(name): (folder / name).read_bytes() for name in names if name.parts[0] != "build"}


class TinyProject(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(FOLDER, ignore_errors=True)
        shutil.copytree(HERE / "tiny", FOLDER)
        subprocess.run(["git", "init", "-q", str(FOLDER)], check=True)
        (FOLDER / ".gitignore").write_text("/build/\n", encoding="utf-8")
        cls.before = contents(FOLDER)
        # All mutants, once; the tests look at what was said.
        cls.first = cls.run_mutants("--sample", "0")

    @staticmethod
    def command(*arguments: str) -> list[str]:
        list_of_equivalents = ["--equivalents", str(FOLDER / "equivalents.txt")]
        own = ["--root", str(FOLDER), *list_of_equivalents]
        return [sys.executable, str(HERE.parent / "mutants.py"), *own, *arguments]

    @classmethod
    def run_mutants(cls, *arguments: str) -> subprocess.CompletedProcess:
        return subprocess.run(cls.command(*arguments), check=False, capture_output=True, text=True)

    def tearDown(self):
        self.assertEqual(contents(FOLDER), self.before)
        for name in ("src/Tiny.cpp", "src/Tiny.h"):
            copy = FOLDER / "build" / "mutants" / "auto" / "tree" / name
            self.assertEqual(copy.read_bytes(), self.before[name])

    def said(self, text: str):
        self.assertIn(text, self.first.stdout, self.first.stderr)

    def test_what_is_tested_is_killed(self):
        for killed in (
            "src/Tiny.cpp:14 swap-relation by Tiny.knowsOddNumbers",
            "src/Tiny.cpp:7 drop-guard by Tiny.keepsTheLimit",
            "src/Tiny.cpp:35 swap-relation by plain (ends with status 1)",
            # A constant is no code of a line, so the tests of its users run.
            "src/Tiny.h:5 off-by-one by Tiny.keepsTheLimit",
        ):
            self.said(f"killed   {killed}")

    def test_what_hangs_is_ended(self):
        self.said("killed   src/Tiny.cpp:36 drop-assignment by plain (does not end)")

    def test_what_no_test_looks_at_survives(self):
        self.assertEqual(self.first.returncode, 1)
        self.said(
            "src/Tiny.cpp:21: swap-relation\n"
            "  -     if (n < -1) {\n"
            "  +     if (n <= -1) {\n"
            "  not noticed by 1 tests:\n"
            "    Tiny.signs\n"
        )

    def test_what_no_test_reaches_survives(self):
        self.said(
            "src/Tiny.cpp:29: off-by-one\n"
            "  -     return n - 1;\n"
            "  +     return n + 1;\n"
            "  no test reaches this line\n"
        )

    def test_what_does_not_compile_is_not_counted(self):
        self.said("refused  src/Tiny.cpp:45 drop-guard")
        self.said("not counted, as they do not compile: 1\n")

    def test_known_equivalents_are_left_out(self):
        self.said("left out, as they are known to be equivalent: 1\n")
        self.assertNotIn("src/Tiny.cpp:6 swap-relation", self.first.stdout)

    def test_a_sample_is_the_same_each_time_and_may_be_enough(self):
        outcomes = []
        for _ in range(2):
            run = self.run_mutants("--sample", "3", "--seed", "word", "--require", "1", "src/Tiny.cpp:5-15")
            self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
            self.assertNotIn("to learn what they reach", run.stdout)  # it is known from the first run
            lines = [line.rpartition(" (")[0] for line in run.stdout.splitlines() if " src/Tiny.cpp:" in line]
            outcomes.append(lines)
        self.assertEqual(outcomes[0], outcomes[1])
        self.assertEqual(len(outcomes[0]), 3)

    def test_an_interruption_leaves_all_as_it_was(self):
        process = subprocess.Popen(self.command("--sample", "0"), stdout=subprocess.PIPE, text=True)
        for line in process.stdout:
            if line.startswith(("killed", "SURVIVED")):
                process.send_signal(signal.SIGINT)
                break
        process.communicate()
        self.assertEqual(process.returncode, 130)

    def test_what_names_nothing_is_refused(self):
        run = self.run_mutants("src/None.cpp")
        self.assertEqual(run.returncode, 2)
        self.assertIn("mutants: 'src/None.cpp' is no C++ file", run.stderr)

    def test_tests_that_fail_already_are_told(self):
        broken = FOLDER / "tests" / "Plain.cpp"
        text = broken.read_text(encoding="utf-8")
        broken.write_text(text.replace("0 : 1", "1 : 0"), encoding="utf-8")
        run = self.run_mutants("--sample", "1")
        broken.write_text(text, encoding="utf-8")
        self.assertEqual(run.returncode, 2)
        self.assertIn("mutants: 1 tests fail on the unchanged code: plain", run.stderr)


if __name__ == "__main__":
    FOLDER = Path(sys.argv.pop(1)).resolve()
    unittest.main()
