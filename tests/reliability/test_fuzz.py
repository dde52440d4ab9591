"""Every fuzz target: its seeds reach their parser, and new inputs find nothing."""

import os
import re
import subprocess
from pathlib import Path

SECONDS = {"quick": 10, "night": 600}
FIGURES = re.compile(r"^\d+: (\w+): (\d+ s, .*, \d+ findings)$", re.MULTILINE)
FAILED = re.compile(r"fuzz\.(\w+) .*\*\*\*")


def test_no_input_breaks_a_parser(fuzz_build: Path, scale: str, record) -> None:
    processes = (2 if scale == "quick" else 1) * (os.cpu_count() or 1)
    command = ["ctest", "--test-dir", fuzz_build, "--verbose", "--parallel", str(processes), "-R", "^fuzz[.]"]
    environment = {**os.environ, "KELVINBAR_FUZZ_SECONDS": str(SECONDS[scale])}
    run = subprocess.run(command, env=environment, capture_output=True, text=True, errors="replace")
    targets, failed = FIGURES.findall(run.stdout), set(FAILED.findall(run.stdout))
    for name, figures in sorted(targets, key=lambda target: (target[0] in failed, target)):
        record(f"fuzz: {name}", figures, name not in failed)
    assert run.returncode == 0 and targets, run.stdout[-20000:]
