"""Calls that go wrong during a pass: on the kernel's files, of the controller's driver, and of the registry."""

from collections.abc import Callable
from pathlib import Path

import pytest
from attack import run_attack
from conftest import Record

QUICK = "FaultyDriver.*:FaultyRegistry.*:*Chips/nvme_alone:*Chips/ryzen_nvme"
NIGHT = "FaultyDriver.*:FaultyRegistry.*:*Chips/*:*InPairs/nvme_alone"


@pytest.mark.parametrize("kind", ["plain", "sanitized"])
def test_faults(
    kind: str,
    scale: str,
    tmp_path: Path,
    attack_file: Callable[[str], Path],
    sanitized_attack_file: Callable[[str], Path],
    record: Record,
) -> None:
    """What does not depend on the call is read as ever, and nothing stays open."""
    attack = (attack_file if kind == "plain" else sanitized_attack_file)("kelvinbar_faults_attack")
    outcome = run_attack(
        attack,
        QUICK if scale == "quick" else NIGHT,
        "faults_tried",
        tmp_path,
        {"KELVINBAR_ATTACK_PAIRS": "1"} if scale == "night" else {},
    )
    record(f"fault at every call number of a pass ({kind})", f"{outcome.tried} faults", outcome.held)
