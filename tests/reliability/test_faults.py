"""Calls that go wrong during a pass: on the kernel's files, of the controller's driver, and of the registry."""

import json
import os
import subprocess
from collections.abc import Callable
from pathlib import Path

import pytest
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
    report = tmp_path / "report.json"
    chosen = QUICK if scale == "quick" else NIGHT
    run = subprocess.run(
        [attack, f"--gtest_filter={chosen}", f"--gtest_output=json:{report}"],
        env=os.environ | ({"KELVINBAR_ATTACK_PAIRS": "1"} if scale == "night" else {}),
        capture_output=True,
        text=True,
    )
    print(run.stdout[-3000:], run.stderr[-3000:])
    suites = json.loads(report.read_text())["testsuites"] if report.exists() else []
    count = sum(int(test.get("faults_tried", 0)) for suite in suites for test in suite["testsuite"])
    record(f"fault at every call number of a pass ({kind})", f"{count} faults", run.returncode == 0 and count > 0)
