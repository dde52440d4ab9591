"""Allocations that fail: in a pass of the program, and in the console program."""

import os
import subprocess
from collections.abc import Callable
from pathlib import Path

import pytest
from attack import run_attack
from conftest import Record

QUICK = "ControllerWithoutMemory.*:*/nvme_alone"


@pytest.mark.parametrize("kind", ["plain", "sanitized"])
def test_pass(
    kind: str,
    scale: str,
    tmp_path: Path,
    attack_file: Callable[[str], Path],
    sanitized_attack_file: Callable[[str], Path],
    record: Record,
) -> None:
    """A pass has its whole result or none; readings, pins and hidden keys stay."""
    attack = (attack_file if kind == "plain" else sanitized_attack_file)("kelvinbar_memory_attack")
    outcome = run_attack(attack, QUICK if scale == "quick" else "*", "failures_tried", tmp_path)
    machines = "a recorded machine and a controller" if scale == "quick" else "all recorded machines"
    record(f"allocation failure at every N of a pass ({kind})", f"{outcome.tried} failures, {machines}", outcome.held)


def test_console(scale: str, snapshot: Path, attack_file: Callable[[str], Path], record: Record) -> None:
    """The snapshot is whole, or there is none, a message and exit status 1."""
    samples = ["linux-pc"] if scale == "quick" else ["amd-pc", "apple-silicon-desktop", "intel-notebook", "linux-pc"]
    preloaded = attack_file("libkelvinbar_every_allocation_fails.so")
    tried = []
    held = True
    for sample in samples:
        run = subprocess.run(
            [snapshot, "--demo", sample],
            env=os.environ | {"LD_PRELOAD": str(preloaded), "KELVINBAR_ATTACK_STEP": "1"},
            capture_output=True,
            text=True,
        )
        print(run.stderr[-3000:])
        tried.append(run.stdout.strip())
        held = held and run.returncode == 0
    record("allocation failure at every N of the console program", "; ".join(tried), held)
