"""Entries of the list mean mutants, wherever their lines are, and are told when they mean none."""

import tempfile
import unittest
from pathlib import Path

import equivalents

SOURCE = "bool f(int a)\n{\n    if (a < 3) {\n        g();\n    }\n    g();\n    return a < 3;\n}\n"
ENTRY = "src/A.cpp: swap-relation\n- if (a < 3) {\n+ if (a <= 3) {\nNobody asks for 3.\n"


class Lists(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.root = Path(self.folder.name)
        (self.root / "src").mkdir()
        self.write_source(SOURCE)

    def tearDown(self):
        self.folder.cleanup()

    def write_source(self, text: str):
        (self.root / "src" / "A.cpp").write_text(text, encoding="utf-8")

    def matched(self, text: str):
        path = self.root / "list.txt"
        path.write_text(text, encoding="utf-8")
        return equivalents.match(equivalents.read(path), self.root)

    def test_an_entry_means_its_mutant(self):
        known, faults = self.matched("# Comment.\n\n" + ENTRY)
        self.assertEqual(faults, [])
        found = [(mutant.line, mutant.operator, entry.reason) for mutant, entry in known.items()]
        self.assertEqual(found, [(3, "swap-relation", "Nobody asks for 3.")])

    def test_an_entry_follows_its_line(self):
        self.write_source("// More.\n\n" + SOURCE)
        known, faults = self.matched(ENTRY)
        self.assertEqual(([mutant.line for mutant in known], faults), ([5], []))

    def test_an_entry_whose_line_is_gone_is_told(self):
        self.write_source(SOURCE.replace("a < 3", "a < 4"))
        known, faults = self.matched(ENTRY)
        self.assertEqual(known, {})
        self.assertIn("list.txt:1: src/A.cpp: swap-relation: 'if (a < 3) {' matches 0 mutants", faults[0])

    def test_an_entry_whose_file_is_gone_is_told(self):
        (self.root / "src" / "A.cpp").unlink()
        self.assertEqual(len(self.matched(ENTRY)[1]), 1)

    def test_equal_mutants_are_told_apart_by_their_number(self):
        entry = "src/A.cpp: drop-call{}\n- g();\n+ ;\nReason.\n"
        self.assertIn("matches 2 mutants, and the entry says 1", self.matched(entry.format(""))[1][0])
        known, faults = self.matched(entry.format(" [2 of 2]"))
        self.assertEqual(([mutant.line for mutant in known], faults), ([6], []))

    def test_an_entry_twice_is_told(self):
        self.assertIn("says the same as list.txt:1", self.matched(ENTRY + "\n" + ENTRY)[1][0])

    def test_what_is_no_entry_is_refused(self):
        without_reason = ENTRY.replace("Nobody asks for 3.\n", "")
        for text in ("nonsense\n- a\n+ b\nReason.\n", without_reason, ENTRY.replace("+ ", "")):
            with self.assertRaisesRegex(equivalents.BadList, "list.txt:1: expected"):
                self.matched(text)


if __name__ == "__main__":
    unittest.main()
