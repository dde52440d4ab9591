#!/usr/bin/env python3
"""Runs a fuzz target: first over its seeds alone, which must reach their branches, then with new inputs.

Prints a line of figures, and after it what was found. Fails if the seeds reach fewer branches than FLOOR, or if there is
a finding, which stays in the build folder. KELVINBAR_FUZZ_SECONDS is how long new inputs are tried (default: 60).
usage: run_target.py PROGRAM SEEDS BUILD FLOOR
"""

import os
import re
import subprocess
import sys
from pathlib import Path

LIMITS = ("-timeout=20", "-rss_limit_mb=2048", "-max_len=8192", "-print_funcs=0", "-print_pcs=0")
PROGRESS = re.compile(r"^#(\d+)\s.*\bcov: (\d+)", re.MULTILINE)


class Run:
    """A run of the program. `executions` and `coverage` are those of its last progress line."""

    def __init__(self, program, *arguments):
        result = subprocess.run([program, *LIMITS, *arguments], stderr=subprocess.PIPE, text=True, errors="replace")
        self.has_finding = result.returncode != 0
        self.log = result.stderr
        progress = PROGRESS.findall(self.log)
        self.executions, self.coverage = map(int, progress[-1]) if progress else (0, 0)


def main(program, seeds, build, floor):
    name = Path(program).name.removeprefix("fuzz_")
    seconds = int(os.environ.get("KELVINBAR_FUZZ_SECONDS", "60"))
    corpus = Path(build, "corpus", name)
    corpus.mkdir(parents=True, exist_ok=True)
    findings = f"-artifact_prefix={build}/finding-{name}-"

    known = Run(program, "-runs=0", findings, seeds)
    new = Run(program, f"-max_total_time={seconds}", findings, corpus, seeds)
    count = known.has_finding + new.has_finding
    figures = f"{seconds} s, {new.executions} runs, {known.coverage} branches of at least {floor} by seeds"
    print(f"{name}: {figures}, {new.coverage} in all, {count} findings", flush=True)
    for run in (known, new):
        if run.has_finding:
            sys.stderr.write(run.log[-20000:])
    return 1 if count or known.coverage < int(floor) else 0


sys.exit(main(*sys.argv[1:]))
