"""System calls by name: which ones a program makes, and a filter that allows only some."""

import re
import struct
import subprocess
from collections.abc import Iterable, Sequence
from functools import cache
from pathlib import Path

LINE = re.compile(r"^\d+ +(?:<\.\.\. )?(\w+)[( ]", re.MULTILINE)

# A classic BPF program over struct seccomp_data: the call's number is its first field.
LOAD_NUMBER = (0x20, 0, 0, 0)
JUMP_IF_EQUAL = 0x15
RETURN = 0x06
ALLOW = 0x7FFF0000
KILL = 0x80000000


def traced(command: Sequence[str], log: Path) -> tuple[subprocess.CompletedProcess, str]:
    """Runs the command. The text has a line for each system call of it and its threads, after its start."""
    result = subprocess.run(["strace", "-f", "-o", log, *command], capture_output=True, text=True, timeout=60)
    return result, log.read_text(errors="replace")


def names_in(trace: str) -> set[str]:
    return set(LINE.findall(trace))


@cache
def _numbers() -> dict[str, int]:
    """Of this machine's architecture, which lacks some of the calls of others."""
    source = "#include <sys/syscall.h>\n"
    macros = subprocess.run(
        ["g++", "-E", "-dM", "-x", "c++", "-"], input=source, capture_output=True, text=True, check=True
    ).stdout
    return {name: int(number) for name, number in re.findall(r"^#define __NR_(\w+) (\d+)$", macros, re.MULTILINE)}


def filter_for(names: Iterable[str]) -> bytes:
    """A filter that kills the process at any other call."""
    allowed = sorted(number for name in names if (number := _numbers().get(name)) is not None)
    tests = [(JUMP_IF_EQUAL, len(allowed) - index, 0, number) for index, number in enumerate(allowed)]
    program = [LOAD_NUMBER, *tests, (RETURN, 0, 0, KILL), (RETURN, 0, 0, ALLOW)]
    return b"".join(struct.pack("=HBBI", *instruction) for instruction in program)
