"""Runs attacks that are written as GoogleTest programs."""

import json
import os
import subprocess
from collections.abc import Mapping, Sequence
from pathlib import Path
from typing import NamedTuple

SHOWN_CHARACTERS = 3000

ALL_MACHINES = ("*",)


class Outcome(NamedTuple):
    tried: int
    held: bool


def run_attack(program: Path, tests: str, counted: str, folder: Path, environment: Mapping[str, str] = {}) -> Outcome:
    """Shares the tests that fit the filter `tests` among the processors. `counted`: the property of a test that says how
    often something was tried."""
    shards = os.cpu_count() or 1
    reports = [folder / f"report-{program.parents[2].name}-{shard}.json" for shard in range(shards)]
    runs = []
    for shard, report in enumerate(reports):
        sharding = {"GTEST_TOTAL_SHARDS": str(shards), "GTEST_SHARD_INDEX": str(shard)}
        with report.with_suffix(".log").open("w") as log:
            runs.append(
                subprocess.Popen(
                    [program, f"--gtest_filter={tests}", f"--gtest_output=json:{report}"],
                    env={**os.environ, **environment, **sharding},
                    stdout=log,
                    stderr=subprocess.STDOUT,
                )
            )
    statuses = [run.wait() for run in runs]
    for report in reports:
        print(report.with_suffix(".log").read_text(errors="replace")[-SHOWN_CHARACTERS:])
    tried = sum(_count(report, counted) for report in reports if report.exists())
    return Outcome(tried, held=tried > 0 and not any(statuses))


def names_of(machines: Sequence[str]) -> str:
    return "all machines" if machines == ALL_MACHINES else ", ".join(machines)


def _count(report: Path, counted: str) -> int:
    suites = json.loads(report.read_text()).get("testsuites", [])
    return sum(int(test.get(counted, 0)) for suite in suites for test in suite["testsuite"])
