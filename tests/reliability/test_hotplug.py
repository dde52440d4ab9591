"""Chips that appear and vanish, ten times a second."""

import random
import subprocess
import time
from collections.abc import Callable
from pathlib import Path
from statistics import median, quantiles

import pytest

from driver.desktop import Desktop
from driver.hosts.host import NoBar
from driver.waiting import wait_until
from footprint import footprint_of
from sensor_tree import SensorProgram, SensorTree
from shifted_clock import ShiftedClock

SECONDS = {"quick": 20, "night": 600}
EVENTS_PER_SECOND = 10
CHIPS = [f"chip{number}" for number in range(12)]
STEADY = "steady"  # stays, and is pinned
SNAPSHOT_EVERY = 20  # events
SEARCH_EVERY = 15
SEARCH_SECONDS = 301  # between searches of the program, which the clock skips

# Busy machines delay every process, the bus among them, so that a few answers and what the bus itself takes do not count.
ANSWER_MILLISECONDS = 50
GROWTH_MILLISECONDS = 5
GROWTH_KIBIBYTES = 4096


class Storm:
    """One event at a time, with times and sizes after it."""

    def __init__(self, desktop: Desktop, tree: SensorTree, program: SensorProgram) -> None:
        self._bus = desktop.bus
        self._tree = tree
        self._pid = program.pid
        self._item = program.item()
        self._random = random.Random(1)
        self.answers: list[float] = []
        self.bus_answers: list[float] = []
        self.sizes: list[int] = []

    def event(self) -> None:
        chip = self._random.choice(CHIPS)
        if self._tree.has(chip):
            self._tree.unplug(chip)
        else:
            self._tree.plug(chip, [self._random.uniform(20, 90) for _ in range(8)])

    def measure(self) -> None:
        self.answers.append(milliseconds(lambda: self._item.property("ToolTip")))
        self.bus_answers.append(milliseconds(lambda: self._bus.has("org.kelvinbar.Nobody")))
        self.sizes.append(footprint_of(self._pid).kibibytes)

    def surplus(self) -> float:
        """How much longer than the bus nine of ten answers take."""
        return quantiles(self.answers, n=10)[-1] - quantiles(self.bus_answers, n=10)[-1]

    def slower(self) -> float:
        """By how many milliseconds answers are slower in the end than at first."""
        third = len(self.answers) // 3
        return median(self.answers[-third:]) - median(self.answers[:third])

    def larger(self) -> float:
        """By how many KiB the program is larger in the end than in the middle, when all has been loaded."""
        third = len(self.sizes) // 3
        return median(self.sizes[-third:]) - median(self.sizes[third : 2 * third])


def milliseconds(work: Callable[[], object]) -> float:
    start = time.monotonic()
    work()
    return 1000 * (time.monotonic() - start)


@pytest.fixture
def tree(tmp_path: Path) -> SensorTree:
    tree = SensorTree(tmp_path)
    tree.plug(STEADY, [41])
    for chip in CHIPS[::2]:
        tree.plug(chip, [50])
    return tree


def shows(program: SensorProgram, value: str) -> bool:
    return any(value in entry for entry in program.item().menu().values())


def chips_with_readings(desktop: Desktop) -> set[str]:
    """As the program tells others."""
    name, path = "org.kelvinbar.Kelvinbar", "/org/kelvinbar/Kelvinbar1"
    readings = desktop.bus.property(name, path, "org.kelvinbar.Kelvinbar1", "Readings")
    return {key.split("-virtual-0/")[0] for key, *_ in readings}


@pytest.mark.program("kelvinbar")
def test_answers_stay_quick_while_sensors_come_and_go(
    desktop: Desktop,
    program: Path,
    snapshot: Path,
    tree: SensorTree,
    attack_file: Callable[[str], Path],
    tmp_path: Path,
    scale: str,
    record,
) -> None:
    clock = ShiftedClock(attack_file("libkelvinbar_shifted_clock.so"), tmp_path)
    sensors = SensorProgram(program, desktop, tree, clock.variables)
    sensors.prefer(KelvinbarMenuBarKeys=f"{STEADY}-virtual-0/temp1", KelvinbarSamplingRate="fast")
    with NoBar(desktop):
        sensors.start()
        wait_until(10, "the pinned sensor", lambda: shows(sensors, "41"))
        sensors.start_again()  # an open panel reads all sensors
        storm = Storm(desktop, tree, sensors)
        searches: list[subprocess.Popen] = []
        own_searches = 0
        started = time.monotonic()
        for number in range(SECONDS[scale] * EVENTS_PER_SECOND):
            storm.event()
            if number % SNAPSHOT_EVERY == 0:
                searches.append(subprocess.Popen(tree.under([str(snapshot)]), stdout=subprocess.DEVNULL))
            if number % SEARCH_EVERY == 0:
                own_searches += 1
                clock.shift_boot_time(own_searches * SEARCH_SECONDS)
            storm.measure()
            time.sleep(max(0, started + (number + 1) / EVENTS_PER_SECOND - time.monotonic()))
        tree.set(STEADY, 43)
        wait_until(10, "the pinned sensor after the storm", lambda: shows(sensors, "43"))
        clock.shift_boot_time((own_searches + 1) * SEARCH_SECONDS)
        wait_until(10, "the chips that are there", lambda: chips_with_readings(desktop) == tree.chips())
        sensors.finish()
    failed = sum(search.wait(30) != 0 for search in searches)
    record(
        "hot plug, 10 events a second",
        f"{SECONDS[scale]} s, answers in {median(storm.answers):.1f} ms, nine of ten in"
        f" {storm.surplus():.1f} ms more than the bus's own, in the end {storm.slower():+.1f} ms and"
        f" {storm.larger():+.0f} KiB, {own_searches} searches and {len(searches)} snapshots"
        f" meanwhile, {failed} failed",
        storm.surplus() < ANSWER_MILLISECONDS
        and storm.slower() < GROWTH_MILLISECONDS
        and storm.larger() < GROWTH_KIBIBYTES
        and failed == 0,
    )
