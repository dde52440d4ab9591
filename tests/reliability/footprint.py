"""What a process occupies."""

from pathlib import Path
from typing import NamedTuple


class Footprint(NamedTuple):
    kibibytes: int  # resident memory
    descriptors: int
    threads: int


def footprint_of(pid: int) -> Footprint:
    process = Path(f"/proc/{pid}")
    fields = dict(line.split(":", 1) for line in (process / "status").read_text().splitlines())
    descriptors = sum(1 for _ in (process / "fd").iterdir())
    return Footprint(int(fields["VmRSS"].split()[0]), descriptors, int(fields["Threads"]))
