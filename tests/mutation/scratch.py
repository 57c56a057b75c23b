"""A copy of the sources in which they may be broken."""

import hashlib
import os
import shutil
import subprocess
from contextlib import contextmanager
from pathlib import Path


def files_under_control(root: Path) -> list[str]:
    """The files that git knows and the new ones that it does not ignore, as they lie in the work tree."""
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=root,
        check=True,
        stdout=subprocess.PIPE,
    ).stdout
    names = sorted({os.fsdecode(name) for name in listed.split(b"\0") if name})
    return [name for name in names if (root / name).is_file()]


class Scratch:
    """The copy. It is brought up to date file by file, so that only what changed is built again."""

    def __init__(self, root: Path, copy: Path):
        self.root = root
        self.path = copy
        self.files: list[str] = []
        self.hash = ""
        self._originals: dict[Path, bytes] = {}

    def update(self):
        """Makes the copy equal to the sources; what an earlier run left broken is mended by that."""
        self.files = files_under_control(self.root)
        total = hashlib.sha256()
        for name in self.files:
            content = (self.root / name).read_bytes()
            total.update(name.encode() + b"\0" + hashlib.sha256(content).digest())
            self._write(name, content)
        self.hash = total.hexdigest()
        self._remove_others()

    def _write(self, name: str, content: bytes):
        copy = self.path / name
        if not copy.is_file() or copy.read_bytes() != content:
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.write_bytes(content)
        shutil.copymode(self.root / name, copy)

    def _remove_others(self):
        wanted = set(self.files)
        for folder, _, names in os.walk(self.path):
            for name in names:
                file = Path(folder, name)
                if str(file.relative_to(self.path)) not in wanted:
                    file.unlink()

    @contextmanager
    def changed(self, name: str, text: str):
        """Has another text in a file for a while."""
        file = self.path / name
        self._originals[file] = file.read_bytes()
        try:
            file.write_bytes(text.encode())
            yield
        finally:
            self.restore()

    def restore(self):
        """Takes all changes back; to be called again where it was interrupted."""
        for file, original in list(self._originals.items()):
            file.write_bytes(original)
            del self._originals[file]
