"""Allocations that fail: in a pass of the program, and in the console program."""

import subprocess
from collections.abc import Callable, Sequence
from pathlib import Path

from attack import ALL_MACHINES, names_of, run_attack
from conftest import Record
from sensor_tree import SensorTree

# Under sanitizers a pass takes eight times as long. These machines together have every kind of source.
SEVERAL = ("every_source", "laptop_cannonlake", "macbook1_1", "nvme_alone", "server_power_meter_odd", "system_facts")
MACHINES = {
    ("plain", "quick"): ("nvme_alone",),
    ("plain", "night"): ALL_MACHINES,
    ("sanitized", "night"): SEVERAL,
}

# Folders with longer names than a string stores without an allocation, and a zone that is not shown.
SUPPLY = "devices/platform/USBC000:00/power_supply/ucsi-source-psy-USBC000:002"
FILES = {
    f"{SUPPLY}/type": "USB",
    f"{SUPPLY}/voltage_now": "5000000",
    f"{SUPPLY}/hwmon5/name": "ucsi_source_psy_USBC000:002",
    f"{SUPPLY}/hwmon5/in0_input": "5000",
    "class/powercap/intel-rapl-mmio:0/name": "package-0",
    "class/powercap/intel-rapl-mmio:0/energy_uj": "18446298312",
}
LINKS = {
    f"{SUPPLY}/hwmon5/device": "../../ucsi-source-psy-USBC000:002",
    "class/hwmon/hwmon5": f"../../{SUPPLY}/hwmon5",
    "class/power_supply/ucsi-source-psy-USBC000:002": f"../../{SUPPLY}",
}


def test_pass(kind: str, scale: str, tmp_path: Path, attack_program: Callable[[str], Path], record: Record) -> None:
    """A pass has its whole result or none; readings, pins and hidden keys stay."""
    machines = MACHINES[kind, scale]
    tests = ":".join(["ControllerWithoutMemory.*", *(f"*/{machine}" for machine in machines)])
    outcome = run_attack(attack_program("kelvinbar_memory_attack"), tests, "failures_tried", tmp_path)
    record(
        f"allocation failure at every N of a pass ({kind})",
        f"{outcome.tried} failures, {names_of(machines)} and a controller",
        outcome.held,
    )


def attack_console(
    command: Sequence[str | Path], mount: Callable[[list[str]], list[str]], attack_file: Callable[[str], Path]
) -> tuple[str, bool]:
    """Runs it once for each of its allocations. Returns how often, and whether what it printed was whole, or nothing
    with a message and exit status 1."""
    preloaded = attack_file("libkelvinbar_every_allocation_fails.so")
    run = subprocess.run(
        mount(["env", f"LD_PRELOAD={preloaded}", *map(str, command)]), capture_output=True, text=True, errors="replace"
    )
    print(run.stderr[-3000:])
    return run.stdout.strip(), run.returncode == 0


def test_console(scale: str, snapshot: Path, attack_file: Callable[[str], Path], record: Record) -> None:
    samples = ["linux-pc"] if scale == "quick" else ["amd-pc", "apple-silicon-desktop", "intel-notebook", "linux-pc"]
    runs = [attack_console([snapshot, "--demo", sample], list, attack_file) for sample in samples]
    record(
        "allocation failure at every N of the console program, made-up machine",
        "; ".join(tried for tried, _ in runs),
        all(held for _, held in runs),
    )


def test_console_over_files(snapshot: Path, tmp_path: Path, attack_file: Callable[[str], Path], record: Record) -> None:
    tree = SensorTree(tmp_path)
    for file, text in FILES.items():
        tree.write(file, text)
    for path, target in LINKS.items():
        tree.link(path, target)
    tried, held = attack_console([snapshot], tree.under, attack_file)
    record("allocation failure at every N of the console program, kernel's files", tried, held)
