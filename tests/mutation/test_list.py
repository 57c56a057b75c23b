"""The tests of a build, as CTest knows them."""

import json
import subprocess
from dataclasses import dataclass
from pathlib import Path

from build import Build

# What looks at sources, documents and installed packages runs no code that could be broken here.
_OTHER_KINDS = {"compile_fail", "consumer", "docs", "mutation", "style"}
_FILTER = "--gtest_filter="


@dataclass(frozen=True)
class Test:
    """A test. `filter` is its name within a GoogleTest program, or nothing for a command of another kind."""

    name: str
    command: tuple[str, ...]
    cwd: str
    environment: tuple[str, ...]
    seconds: float
    targets: tuple[str, ...]
    filter: str

    def program(self) -> tuple[str, ...]:
        """What tests of one program have in common; other tests stand alone."""
        return (self.command[0], self.cwd, *self.environment) if self.filter else (self.name,)


class NoTests(Exception):
    """CTest lists no test that could be run."""


def tests_of(build: Build) -> list[Test]:
    """The tests that run the code. Raises NoTests."""
    listed = subprocess.run(
        ["ctest", "--test-dir", str(build.path), "--show-only=json-v1"], check=True, stdout=subprocess.PIPE
    ).stdout
    tests = [_test(build, described) for described in json.loads(listed)["tests"] if "command" in described]
    tests = [test for test in tests if test is not None]
    if not tests:
        raise NoTests(f"CTest lists no test in {build.path}")
    return tests


def _test(build: Build, described: dict) -> Test | None:
    properties = {each["name"]: each["value"] for each in described.get("properties", [])}
    if _OTHER_KINDS.intersection(properties.get("LABELS", [])) or properties.get("DISABLED"):
        return None
    command = described["command"]
    filters = [argument.removeprefix(_FILTER) for argument in command if argument.startswith(_FILTER)]
    return Test(
        described["name"],
        tuple(command),
        str(Path(properties.get("WORKING_DIRECTORY", build.path))),
        tuple(properties.get("ENVIRONMENT", [])),
        float(properties.get("TIMEOUT", 120)),
        tuple(build.outputs_in(command)),
        filters[0] if filters else "",
    )
