"""The copy follows the sources, and the sources never follow the copy."""

import subprocess
import tempfile
import unittest
from pathlib import Path

from scratch import Scratch


class Copies(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.root = Path(self.folder.name, "root")
        self.root.mkdir()
        subprocess.run(["git", "init", "-q", str(self.root)], check=True)
        self.write(".gitignore", "/build/\n")
        self.write("a.cpp", "one")
        self.write("b/c.cpp", "two")
        self.write("build/d.cpp", "ignored")
        self.scratch = Scratch(self.root, Path(self.folder.name, "copy"))
        self.scratch.update()

    def tearDown(self):
        self.folder.cleanup()

    def write(self, name: str, text: str):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def text(self, name: str) -> str:
        return (self.scratch.path / name).read_text(encoding="utf-8")

    def test_hold_new_files_and_no_ignored_ones(self):
        self.assertEqual(self.scratch.files, [".gitignore", "a.cpp", "b/c.cpp"])
        self.assertEqual((self.text("a.cpp"), self.text("b/c.cpp")), ("one", "two"))
        self.assertFalse((self.scratch.path / "build").exists())

    def test_follow_changes_and_leave_the_rest_alone(self):
        former, untouched = self.scratch.hash, (self.scratch.path / "a.cpp").stat().st_mtime_ns
        self.write("b/c.cpp", "three")
        self.scratch.update()
        self.assertEqual(self.text("b/c.cpp"), "three")
        self.assertEqual((self.scratch.path / "a.cpp").stat().st_mtime_ns, untouched)
        self.assertNotEqual(self.scratch.hash, former)

    def test_lose_what_the_sources_lose(self):
        (self.root / "a.cpp").unlink()
        self.scratch.update()
        self.assertFalse((self.scratch.path / "a.cpp").exists())

    def test_have_a_change_for_a_while(self):
        with self.assertRaises(KeyboardInterrupt):
            with self.scratch.changed("a.cpp", "broken"):
                self.assertEqual(self.text("a.cpp"), "broken")
                raise KeyboardInterrupt
        self.assertEqual(self.text("a.cpp"), "one")
        self.assertEqual((self.root / "a.cpp").read_text(encoding="utf-8"), "one")

    def test_are_restored_where_an_interruption_kept_them_from_it(self):
        change = self.scratch.changed("a.cpp", "broken")
        change.__enter__()
        self.scratch.restore()
        self.assertEqual(self.text("a.cpp"), "one")

    def test_mend_what_was_left_broken(self):
        (self.scratch.path / "a.cpp").write_text("broken", encoding="utf-8")
        self.scratch.update()
        self.assertEqual(self.text("a.cpp"), "one")


if __name__ == "__main__":
    unittest.main()
