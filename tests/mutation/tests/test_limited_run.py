"""Programs that misbehave are ended, with all that they started."""

import os
import tempfile
import threading
import time
import unittest
from pathlib import Path

from limited_run import Running


class Limits(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.path = Path(self.folder.name)
        self.running = Running()

    def tearDown(self):
        self.folder.cleanup()

    def run_shell(self, script: str, silence: float = 60):
        return self.running.run(
            ["/bin/sh", "-c", script], silence, self.path / "log", cwd=self.path, env=dict(os.environ)
        )

    def test_a_status_is_told(self):
        self.assertTrue(self.run_shell("echo said").good)
        self.assertEqual((self.path / "log").read_text(encoding="utf-8"), "said\n")
        self.assertEqual(self.run_shell("exit 3").describe(), "ends with status 3")
        self.assertEqual(self.run_shell("kill -SEGV $$").describe(), "ends by SIGSEGV")

    def test_one_that_says_nothing_is_ended(self):
        self.assertEqual(self.run_shell("sleep 1000", silence=1).describe(), "does not end")

    def test_one_that_goes_on_talking_is_not(self):
        self.assertTrue(self.run_shell("for i in 1 2 3 4 5 6; do echo $i; sleep 0.5; done", silence=2).good)

    def test_one_that_takes_all_memory_fails(self):
        self.running = Running(memory=100 << 20)
        self.assertFalse(self.run_shell("exec tail /dev/zero").good)  # keeps the last line, which has no end

    def test_what_it_left_behind_is_ended(self):
        self.run_shell("sleep 1000 & echo $! >child")
        child = int((self.path / "child").read_text(encoding="utf-8"))
        for _ in range(100):
            if not self._lives(child):
                return
            time.sleep(0.05)
        self.fail("the child lives on")

    @staticmethod
    def _lives(process: int) -> bool:
        """False for a process that is gone, or whose parent only has not asked for its status yet."""
        try:
            return Path(f"/proc/{process}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()[0] != "Z"
        except OSError:
            return False

    def test_all_are_ended_at_once(self):
        threading.Timer(0.5, self.running.end_all).start()
        self.assertTrue(self.run_shell("sleep 1000").cancelled)
        self.assertTrue(self.run_shell("sleep 1000").cancelled)


if __name__ == "__main__":
    unittest.main()
