"""Runs programs that may hang, take all memory or fill the disk."""

import os
import signal
import subprocess
import threading
import time
from dataclasses import dataclass
from pathlib import Path

MEMORY_LIMIT = 2 << 30  # bytes that can be written to
FILE_LIMIT = 8 << 30  # bytes of each file; tests make one of 5 GiB, with holes

@dataclass(frozen=True)
class Ending:
    """How a program ended: its status, negative for a signal, or by one of our reasons."""

    status: int
    timed_out: bool = False
    cancelled: bool = False

    @property
    def good(self) -> bool:
        return self.status == 0 and not self.timed_out and not self.cancelled

    def describe(self) -> str:
        if self.timed_out:
            return "does not end"
        if self.status < 0:
            try:
                return f"ends by {signal.Signals(-self.status).name}"
            except ValueError:
                return f"ends by signal {-self.status}"
        return f"ends with status {self.status}"


class Running:
    """The programs that run at the moment; all of them can be ended from another thread."""

    def __init__(self, memory: int = MEMORY_LIMIT):
        # Threads reserve far more addresses than they use, so it is not these that are few.
        limits = f"ulimit -c 0; ulimit -d {memory >> 10}; ulimit -v {memory >> 7}; ulimit -f {FILE_LIMIT // 512}"
        self._shell = ["/bin/sh", "-c", limits + '; exec "$@"', "sh"]
        self._lock = threading.Lock()
        self._groups: set[int] = set()
        self._cancelled = False

    def end_all(self):
        """Ends what runs; what is begun later with this object ends at once."""
        with self._lock:
            self._cancelled = True
            for group in self._groups:
                _end(group)

    def run(self, command: list[str], silence: float, log: Path, *, cwd: Path, env: dict[str, str]) -> Ending:
        """Runs a command within the limits; what it started ends with it.

        Its output goes to `log`. It may take as long as it likes while it says something once in `silence` seconds.
        """
        with open(log, "wb") as output:
            with self._lock:
                if self._cancelled:
                    return Ending(0, cancelled=True)
                process = subprocess.Popen(
                    [*self._shell, *command],
                    cwd=cwd,
                    env=env,
                    stdin=subprocess.DEVNULL,
                    stdout=output,
                    stderr=subprocess.STDOUT,
                    start_new_session=True,
                )
                self._groups.add(process.pid)
            try:
                timed_out = not _ends(process, silence, output.fileno())
            finally:
                with self._lock:
                    _end(process.pid)
                    self._groups.discard(process.pid)
                    cancelled = self._cancelled
                process.wait()
        return Ending(process.returncode, timed_out, cancelled and process.returncode != 0)


def _ends(process: subprocess.Popen, silence: float, output: int) -> bool:
    """Waits for a process; false if it says nothing for so many seconds."""
    size = -1
    said = time.monotonic()
    while True:
        try:
            process.wait(1)
            return True
        except subprocess.TimeoutExpired:
            if os.fstat(output).st_size != size:
                size = os.fstat(output).st_size
                said = time.monotonic()
            elif time.monotonic() - said > silence:
                return False


def _end(group: int):
    """Ends all processes of a group."""
    try:
        os.killpg(group, signal.SIGKILL)
    except ProcessLookupError:
        pass
