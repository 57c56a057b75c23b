"""The instrumented build of the copied sources."""

import os
import re
import shutil
import subprocess
from collections import defaultdict
from pathlib import Path

HERE = Path(__file__).resolve().parent


class BuildFailed(Exception):
    """The unchanged code cannot be configured or built."""


class Build:
    """The build folder, its tests included. Each program and library writes down what it reaches; see
    CoverageRuntime.cpp."""

    def __init__(self, tree: Path, work: Path, framework: str, options: list[str], jobs: int):
        self.tree = tree
        self.path = work / "build"
        self.log = work / "build.log"
        self._runtime = work / "coverage_runtime.o"
        self._framework = framework
        self._options = options
        self._jobs = jobs
        self._outputs: set[str] = set()

    def configure(self):
        """Raises BuildFailed."""
        self._make_runtime()
        options = {
            "CMAKE_BUILD_TYPE": "Debug",
            "CMAKE_CXX_FLAGS_DEBUG": "-O0 -g1",
            "CMAKE_PROJECT_INCLUDE": str(HERE / "Instrumentation.cmake"),
            "OSTREL_COVERAGE_RUNTIME": str(self._runtime),
            # Programs need no new link when only a shared library changed, and no mutant runs while it is built.
            "CMAKE_LINK_DEPENDS_NO_SHARED": "ON",
            "CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE": "PRE_TEST",
            "OSTREL_INSTALL": "OFF",
        }
        if self._framework:
            options["OSTREL_FRAMEWORK"] = self._framework
        if shutil.which("ccache"):
            options["CMAKE_CXX_COMPILER_LAUNCHER"] = "ccache"
            # Objects name the files that they were made from, so those of another folder are not the same.
            os.environ.update(CCACHE_HASHDIR="true", CCACHE_BASEDIR="")
        command = ["cmake", "-S", str(self.tree), "-B", str(self.path), "-G", "Ninja"]
        command += [f"-D{name}={value}" for name, value in options.items()] + self._options
        self._run(command, "cannot configure the unchanged code")

    def _make_runtime(self):
        compiler = os.environ.get("CXX", "c++")
        source = HERE / "CoverageRuntime.cpp"
        command = [compiler, "-std=c++17", "-O2", "-fPIC", "-c", str(source), "-o", str(self._runtime)]
        if not self._runtime.is_file() or self._runtime.stat().st_mtime < source.stat().st_mtime:
            self._run(command, "cannot compile what writes down the coverage")

    def _run(self, command: list[str], failure: str):
        with open(self.log, "wb") as log:
            status = subprocess.run(command, stdout=log, stderr=subprocess.STDOUT, check=False).returncode
        if status != 0:
            raise BuildFailed(f"{failure}; see {self.log}")

    def build_all(self):
        """Builds the unchanged code. Raises BuildFailed."""
        self._run(["ninja", "-C", str(self.path), f"-j{self._jobs}"], "the unchanged code does not build")
        listed = subprocess.run(
            ["ninja", "-C", str(self.path), "-t", "targets", "all"], check=True, stdout=subprocess.PIPE, text=True
        ).stdout
        self._outputs = {line.rsplit(": ", 1)[0] for line in listed.splitlines() if ": " in line}

    def build(self, targets: list[str]) -> bool:
        """Builds some targets; false if a compiler or linker refuses. Raises BuildFailed if it fails otherwise."""
        with open(self.log, "wb") as log:
            command = ["ninja", "-C", str(self.path), f"-j{self._jobs}", *targets]
            try:
                done = subprocess.run(command, stdout=log, stderr=subprocess.STDOUT, check=False, timeout=900)
            except subprocess.TimeoutExpired:
                return False
        if done.returncode != 0 and b"error:" not in self.log.read_bytes():
            raise BuildFailed(f"no compiler refuses the mutant, but the build fails; see {self.log}")
        return done.returncode == 0

    def outputs_in(self, command: list[str]) -> list[str]:
        """The files that a command names and this build makes, as targets."""
        path = re.escape(str(self.path)) + r"/([^|;]+)"
        named = {name for argument in command for name in re.findall(path, argument)}
        return sorted(name for name in named if name in self._outputs)

    def users(self) -> dict[str, dict[str, str]]:
        """For each source file the objects that are compiled from it or include it, and what each is compiled from.

        Files are relative to the sources, objects are targets.
        """
        listed = subprocess.run(
            ["ninja", "-C", str(self.path), "-t", "deps"], check=True, stdout=subprocess.PIPE, text=True
        ).stdout
        top = f"{self.tree}/"
        users: dict[str, dict[str, str]] = defaultdict(dict)
        for block in listed.split("\n\n"):
            target, *names = block.strip().splitlines()  or [""]
            paths = [os.path.normpath(self.path / name.strip()) for name in names]
            sources = [path.removeprefix(top) for path in paths if path.startswith(top)]
            for source in sources:
                users[source][target.partition(": #deps")[0]] = sources[0]
        return users
