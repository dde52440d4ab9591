"""Drivers that do not answer: the other sensors are read on, and quitting waits for nobody."""

import itertools
import signal
import subprocess
import time
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import NamedTuple

import pytest

from driver.desktop import Desktop
from driver.program import Program
from driver.waiting import wait_until
from sensor_tree import CONTROLLER, ConfiguredTree, SensorProgram, SensorTree

STEADY = "steady"
SLOW = "slow"
STEADY_KEY = f"{STEADY}-virtual-0/temp1"

QUIT_SECONDS = 1
SNAPSHOT_SECONDS = 2  # for what does not answer
START_UP_SECONDS = 1  # of a process on a busy machine
SET_ASIDE_SECONDS = 10

WHENS = ("before", "during", "after")
CHANGED = "KelvinbarAlternatesIcon"


class Driver(NamedTuple):
    """A driver with one sensor, and the call for one of its files that is not going to return."""

    call: str  # "open", "read", or "stream": to open it as a stream
    file: str = f"{SLOW}/temp1_input"
    key: str = f"{SLOW}-virtual-0/temp1"
    make_tree: Callable[[Path], SensorTree] = SensorTree
    plug: Callable[[SensorTree, float], None] = lambda tree, temperature: tree.plug(SLOW, [temperature])
    set: Callable[[SensorTree, float], None] = lambda tree, temperature: tree.set(SLOW, temperature)


DRIVERS = {
    "read": Driver("read"),
    "open": Driver("open"),
    "libsensors": Driver("stream", make_tree=ConfiguredTree),
    "controller": Driver(
        "read",
        file=f"{CONTROLLER}/key_at_index_data",
        key="TC0P",
        plug=lambda tree, temperature: tree.plug_controller("TC0P", temperature),
        set=SensorTree.set_controller,
    ),
}


class Stall:
    """A file that does not answer while the stall lasts."""

    def __init__(self, library: Path, folder: Path, driver: Driver) -> None:
        self._switch = folder / "stalls"
        self.variables = (
            f"LD_PRELOAD={library}",
            f"STALL_WHILE={self._switch}",
            f"STALLED_FILE={driver.file}",
            f"STALLED_CALL={driver.call}",
        )

    def begin(self) -> None:
        self._switch.touch()

    def end(self) -> None:
        self._switch.unlink()

    def is_reached(self) -> bool:
        """Whether a call has been held."""
        return self._switch.with_name(f"{self._switch.name}.reached").is_symlink()


@pytest.fixture
def driver(request: pytest.FixtureRequest) -> Driver:
    """That of the kernel whose reads stall, unless the test names another."""
    return DRIVERS[getattr(request, "param", "read")]


@pytest.fixture
def tree(driver: Driver, tmp_path: Path) -> SensorTree:
    tree = driver.make_tree(tmp_path)
    tree.plug(STEADY, [41])
    driver.plug(tree, 61)
    return tree


@pytest.fixture
def stall(attack_file: Callable[[str], Path], driver: Driver, tmp_path: Path) -> Stall:
    return Stall(attack_file("libkelvinbar_stalling_files.so"), tmp_path, driver)


def name_of(driver: Driver) -> str:
    return next(name for name, known in DRIVERS.items() if known == driver)


def shows(program: Program, text: str) -> bool:
    return any(text in entry for entry in program.item().menu().values())


def start_with_stall(program: SensorProgram, driver: Driver, stall: Stall, when: str) -> None:
    """`when` the stall begins: before the start, during it, or after it.

    Returns when a thread is stuck and the other sensor is shown.
    """
    program.prefer(KelvinbarMenuBarKeys=f"{STEADY_KEY}, {driver.key}", KelvinbarSamplingRate="fast")
    if when == "before":
        stall.begin()
    program.start()
    if when == "during":
        stall.begin()
    wait_until(SET_ASIDE_SECONDS, "the sensor that answers", lambda: shows(program, "41"))
    if when == "after":
        wait_until(SET_ASIDE_SECONDS, "the sensor that is about to stall", lambda: shows(program, "61"))
        stall.begin()
        wait_until(SET_ASIDE_SECONDS, "the sensor set aside", lambda: shows(program, "no answer"))
    wait_until(SET_ASIDE_SECONDS, "a stuck thread", stall.is_reached)


def seconds_to_quit(program: SensorProgram, way: str) -> float:
    """Changes a preference, and quits."""
    program.item().choose("Alternate Readings")
    started = time.monotonic()
    if way == "menu":
        program.item().choose("Quit")
    else:
        program.send(signal.Signals[way])
    program.wait()
    return time.monotonic() - started


# The session's end is that of the terminal or of the session manager, which sends SIGHUP or SIGTERM.
WAYS = ("SIGTERM", "menu", "SIGHUP")
QUICK = {
    ("read", "before", "SIGTERM"),
    ("open", "before", "menu"),
    ("read", "during", "menu"),
    ("read", "after", "SIGHUP"),
    ("libsensors", "before", "SIGTERM"),
    ("controller", "before", "SIGTERM"),
    ("controller", "after", "menu"),
}


def cases() -> Iterator[object]:
    """A file that is kept open is opened only at the start."""
    for name, when, way in itertools.product(DRIVERS, WHENS, WAYS):
        if name != "open" or when == "before":
            marks = () if (name, when, way) in QUICK else pytest.mark.night
            yield pytest.param(name, when, way, id=f"{name}-{when}-{way}", marks=marks)


@pytest.mark.program("kelvinbar")
@pytest.mark.parametrize(("driver", "when", "way"), cases(), indirect=["driver"])
def test_quitting_waits_for_no_driver(
    desktop: Desktop, program: Path, tree: SensorTree, driver: Driver, stall: Stall, when: str, way: str, record
) -> None:
    sensors = SensorProgram(program, desktop, tree, stall.variables)
    start_with_stall(sensors, driver, stall, when)
    seconds = seconds_to_quit(sensors, way)
    is_written = desktop_preferences(desktop).get(CHANGED) == "1"
    record(
        f"stall in {name_of(driver)} {when} the start, then {way}",
        f"ended in {seconds:.2f} s, preferences {'written' if is_written else 'LOST'}",
        seconds < QUIT_SECONDS and is_written,
    )


def desktop_preferences(desktop: Desktop) -> dict[str, str]:
    lines = (desktop.configuration / "kelvinbar/kelvinbar.conf").read_text().splitlines()
    return dict(line.split("=", 1) for line in lines if "=" in line)


@pytest.mark.program("kelvinbar")
@pytest.mark.parametrize("driver", [name for name in DRIVERS if name != "open"], indirect=True)
def test_the_others_are_read_on_and_the_sensor_comes_back(
    desktop: Desktop, program: Path, tree: SensorTree, driver: Driver, stall: Stall, record
) -> None:
    sensors = SensorProgram(program, desktop, tree, stall.variables)
    start_with_stall(sensors, driver, stall, "after")
    tree.set(STEADY, 43)
    wait_until(5, "another value of the sensor that answers", lambda: shows(sensors, "43"))
    sensors.start_again()  # the first instance answers and opens its panel
    driver.set(tree, 66)
    stall.end()
    wait_until(5, "the sensor that answers again", lambda: shows(sensors, "66"))
    sensors.finish()
    record(
        f"stall in {name_of(driver)}, then its end", "the other chip read on, second start answered, both back", True
    )


@pytest.mark.program("kelvinbar")
def test_a_second_start_names_the_process_that_hangs(desktop: Desktop, program: Path, tree: SensorTree, record) -> None:
    sensors = SensorProgram(program, desktop, tree)
    sensors.start()
    sensors.send(signal.SIGSTOP)
    second = desktop.run(sensors.command)
    sensors.send(signal.SIGCONT)
    sensors.finish()
    record(
        "second start while the first hangs",
        f"status {second.returncode}, {second.stderr.strip()[:60]}…",
        second.returncode == 1 and f"process {sensors.pid}" in second.stderr,
    )


def run_snapshot(desktop: Desktop, command: list[str]) -> tuple[subprocess.CompletedProcess, float]:
    started = time.monotonic()
    return desktop.run(command), time.monotonic() - started


@pytest.mark.parametrize("driver", DRIVERS, indirect=True)
def test_the_snapshot_prints_the_rest(
    desktop: Desktop, snapshot: Path, tree: SensorTree, driver: Driver, stall: Stall, record
) -> None:
    stall.begin()
    taken, seconds = run_snapshot(desktop, tree.under(["env", *stall.variables, str(snapshot)]))
    has_rest = STEADY_KEY in taken.stdout
    has_name = f"no answer from /sys/class/hwmon/{Path(driver.file).parent}" in taken.stderr
    record(
        f"stall in {name_of(driver)} during a snapshot",
        f"status {taken.returncode} after {seconds:.1f} s, {'the rest printed' if has_rest else 'NOTHING'},"
        f" {'the file named' if has_name else taken.stderr[:80]}",
        taken.returncode == 0 and has_rest and has_name and seconds < SNAPSHOT_SECONDS + START_UP_SECONDS,
    )
