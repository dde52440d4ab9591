"""What a process occupies."""

from pathlib import Path
from typing import NamedTuple


class Footprint(NamedTuple):
    kibibytes: int  # resident memory
    most_kibibytes: int  # since the start, or since `forget_most`
    descriptors: int
    threads: int


def footprint_of(pid: int) -> Footprint:
    process = Path(f"/proc/{pid}")
    fields = dict(line.split(":", 1) for line in (process / "status").read_text().splitlines())
    descriptors = sum(1 for _ in (process / "fd").iterdir())
    kibibytes, most = (int(fields[name].split()[0]) for name in ("VmRSS", "VmHWM"))
    return Footprint(kibibytes, most, descriptors, int(fields["Threads"]))


def forget_most(pid: int) -> None:
    Path(f"/proc/{pid}/clear_refs").write_text("5")
