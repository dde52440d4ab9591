"""Calls that go wrong during a pass: on the kernel's files, of the controller's driver, and of the registry."""

from collections.abc import Callable
from pathlib import Path

import pytest
from attack import ALL_MACHINES, names_of, run_attack
from conftest import Record

DRIVER_AND_REGISTRY = "FaultyDriver.*:FaultyRegistry.*"
# Under sanitizers a pass takes six times as long.
MACHINES = {
    ("plain", "quick"): ("every_source", "system_facts", "nvme_alone"),
    ("plain", "night"): ALL_MACHINES,
    ("sanitized", "night"): ALL_MACHINES,
}
# Every pair of faults would take days. A step of 5: every fifth call after the first.
PAIRS = {"nvme_alone": "1", "every_source": "5"}


def test_faults(kind: str, scale: str, tmp_path: Path, attack_program: Callable[[str], Path], record: Record) -> None:
    """What does not depend on the call is read as ever, and nothing stays open."""
    machines = MACHINES[kind, scale]
    tests = ":".join([DRIVER_AND_REGISTRY, *(f"*Chips/{machine}" for machine in machines)])
    outcome = run_attack(attack_program("kelvinbar_faults_attack"), tests, "faults_tried", tmp_path)
    record(
        f"fault at every call number of a pass ({kind})",
        f"{outcome.tried} faults, {names_of(machines)}, a driver and a registry",
        outcome.held,
    )


@pytest.mark.night
def test_pairs_of_faults(tmp_path: Path, attack_file: Callable[[str], Path], record: Record) -> None:
    """The second is of another kind in turn."""
    outcomes = [
        run_attack(
            attack_file("kelvinbar_faults_attack"),
            f"{DRIVER_AND_REGISTRY}:*InPairs/{machine}",
            "faults_tried",
            tmp_path,
            {"KELVINBAR_ATTACK_PAIRS": step},
        )
        for machine, step in PAIRS.items()
    ]
    figures = ", ".join(f"{outcome.tried} with {machine}" for machine, outcome in zip(PAIRS, outcomes))
    record("pairs of faults", figures, all(outcome.held for outcome in outcomes))
