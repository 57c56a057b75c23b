"""Samples are the same for the same lines, and selections mean what they say."""

import tempfile
import unittest
from pathlib import Path

import choice
from choice import Selection

TEXT = "int f(int a)\n{\n    if (a < 3) {\n        return 1;\n    }\n    return a - 1;\n}\n"


class Candidates(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.root = Path(self.folder.name)
        for name in ("src/a/A.cpp", "src/B.cpp", "src/b.txt", "srcs/C.cpp"):
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            (self.root / name).write_text(TEXT, encoding="utf-8")
        self.files = ["src/a/A.cpp", "src/B.cpp", "src/b.txt", "srcs/C.cpp"]

    def tearDown(self):
        self.folder.cleanup()

    def of(self, *texts: str) -> list[choice.Mutant]:
        return choice.candidates(self.root, self.files, [Selection.parse(text) for text in texts])

    def test_of_folders_and_files(self):
        self.assertEqual({mutant.path for mutant in self.of("src")}, {"src/a/A.cpp", "src/B.cpp"})
        self.assertEqual({mutant.path for mutant in self.of("./src/a/")}, {"src/a/A.cpp"})
        self.assertEqual({mutant.path for mutant in self.of("src/B.cpp")}, {"src/B.cpp"})

    def test_of_lines(self):
        self.assertEqual({mutant.line for mutant in self.of("src/B.cpp:3")}, {3})
        self.assertEqual({mutant.line for mutant in self.of("src/B.cpp:4-6")}, {4, 6})

    def test_of_nothing(self):
        for text in ("src/None.cpp", "src/b.txt", "none"):
            with self.assertRaisesRegex(choice.BadSelection, f"'{text}' is no C"):
                self.of(text)
        self.assertEqual(self.of("bundle_checker"), [])  # a folder that a tree may lack

    def test_the_folders_of_selections_join_the_usual_ones(self):
        texts = ("src/a/A.cpp:3", "framework/src", "framework/include/A.h", "more")
        folders = choice.folders_with([Selection.parse(text) for text in texts])
        self.assertEqual(set(folders) - set(choice.FOLDERS), {"framework/include", "more"})

    def test_lines_are_those_of_the_change(self):
        guard = [mutant for mutant in self.of("src/B.cpp") if mutant.operator == "drop-guard"]
        self.assertEqual([(m.line, m.before.strip(), m.after.strip()) for m in guard], [(4, "return 1;", ";")])


class Samples(unittest.TestCase):
    mutants = choice.mutants_of("src/A.cpp", TEXT)

    def test_are_the_same_for_a_seed(self):
        self.assertEqual(choice.shuffled(self.mutants, "1"), choice.shuffled(list(reversed(self.mutants)), "1"))
        self.assertEqual(set(choice.shuffled(self.mutants, "1")), set(self.mutants))

    def test_differ_with_the_seed(self):
        orders = {tuple(choice.shuffled(self.mutants, str(seed))) for seed in range(5)}
        self.assertGreater(len(orders), 1)

    def test_keep_their_order_when_lines_move(self):
        moved = choice.mutants_of("src/A.cpp", "\n\n" + TEXT)

        def names(mutants):
            return [mutant.group() for mutant in choice.shuffled(mutants, "1")]

        self.assertEqual(names(moved), names(self.mutants))


if __name__ == "__main__":
    unittest.main()
