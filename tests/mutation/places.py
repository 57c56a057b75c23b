"""From places in machine code to source lines, as the debug information has it."""

import os
import re
import struct
import subprocess
from bisect import bisect_left, bisect_right
from collections import defaultdict
from pathlib import Path

_CALL = re.compile(r"^ *([0-9a-f]+):\tcall\w* .*<__sanitizer_cov_trace_pc")
_FUNCTION = re.compile(r"^([0-9a-f]+) <(.*)>:$")
_INSTRUCTION = re.compile(r"^ *([0-9a-f]+):\t")
_ROW = re.compile(r"^(\S+) +(\d+) +0x([0-9a-f]+)")
_HEADER_SIZE = 4096


def read_reached(file: Path) -> tuple[str, tuple[int, ...]]:
    """What one process reached of one program or library: its path, and the places. See CoverageRuntime.cpp."""
    content = file.read_bytes()
    path = os.fsdecode(content[:_HEADER_SIZE].split(b"\0", 1)[0])
    (count,) = struct.unpack_from("=I", content, _HEADER_SIZE)
    count = min(count, (len(content) - _HEADER_SIZE) // 4 - 1)
    return path, struct.unpack_from(f"={count}I", content, _HEADER_SIZE + 4)


def lines_of(program: Path, folders: tuple[str, ...], tree: Path) -> dict[tuple[str, int], set[int]]:
    """For each source line in the folders the places of the basic blocks with code of it.

    A place is the address behind the call with which a block begins, as the program itself notes it.
    """
    if not _names_a_folder(program, folders, tree):
        return {}
    rows = _rows(program, folders, tree)
    if not rows:
        return {}
    begins, places, functions = _blocks(program)
    lines: dict[tuple[str, int], set[int]] = defaultdict(set)
    for address, line in rows:
        block = _block_of(address, begins, functions)
        if block is not None:
            lines[line].add(places[block])
    return lines


def _names_a_folder(program: Path, folders: tuple[str, ...], tree: Path) -> bool:
    """Quick: whether the debug information can name a file of the folders at all."""
    content = program.read_bytes()
    return any(f"{tree.name}/{folder}".encode() in content for folder in folders)


def _rows(program: Path, folders: tuple[str, ...], tree: Path) -> list[tuple[int, tuple[str, int]]]:
    """The rows of the line table that are about files of the folders: address, file and line."""
    names = {file.name for folder in folders for file in (tree / folder).rglob("*") if file.suffix in (".cpp", ".h")}
    table = _output(["objdump", "--wide", "--dwarf=decodedline", str(program)])
    addresses = []
    for text in table:
        row = _ROW.match(text)
        if row and row.group(1) in names:
            addresses.append(row.group(3))
    # The table has names without folders, so the addresses are asked for once more.
    answers = _output(["addr2line", "-e", str(program)], "\n".join(addresses))
    found = []
    for address, answer in zip(addresses, answers):
        path, _, line = answer.partition(" (")[0].rpartition(":")
        path = os.path.normpath(path)
        name = path.removeprefix(f"{tree}/") if path.startswith(f"{tree}/") else ""
        if line.isdigit() and any(name.startswith(folder + "/") for folder in folders):
            found.append((int(address, 16), (name, int(line))))
    return found


def _blocks(program: Path) -> tuple[list[int], list[int], list[int]]:
    """The addresses at which basic blocks begin, the places that they note, and the beginnings of functions."""
    begins, places, functions = [], [], []
    called = False
    for text in _output(["objdump", "--disassemble", "--no-show-raw-insn", "--wide", str(program)]):
        function = _FUNCTION.match(text)
        if function:
            functions.append(int(function.group(1), 16))
            continue
        instruction = _INSTRUCTION.match(text)
        if instruction is None:
            continue
        if called:
            places.append(int(instruction.group(1), 16))
        called = bool(_CALL.match(text))
        if called:
            begins.append(int(instruction.group(1), 16))
    if called:
        begins.pop()
    return begins, places, functions


def _block_of(address: int, begins: list[int], functions: list[int]) -> int | None:
    """The number of the block with an address; what stands before a function's first block belongs to that one."""
    function = functions[max(bisect_right(functions, address) - 1, 0)]
    block = bisect_right(begins, address) - 1
    if block < 0 or begins[block] < function:
        block = bisect_left(begins, function)
    return block if block < len(begins) else None


def _output(command: list[str], text: str = "") -> list[str]:
    done = subprocess.run(command, check=True, input=text, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    return done.stdout.splitlines()
