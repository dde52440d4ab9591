"""Drivers that do not answer: the other sensors are read on, and quitting waits for nobody."""

import itertools
import signal
import subprocess
import time
from collections.abc import Callable, Sequence
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import NamedTuple

import pytest

from driver.desktop import Desktop
from driver.hosts.host import NoBar
from driver.program import Panel, Program
from driver.waiting import wait_until
from sensor_tree import CONTROLLER, ConfiguredTree, SensorProgram, SensorTree, skip_unless_mountable

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

    call: str  # "open", "read", "stream": to open it as a stream, or "list": to open it as a folder
    file: str = f"class/hwmon/{SLOW}/temp1_input"  # below /sys
    key: str = f"{SLOW}-virtual-0/temp1"
    make_tree: Callable[[Path], SensorTree] = SensorTree
    plug: Callable[[SensorTree, float], None] = lambda tree, value: tree.plug(SLOW, [value])
    set: Callable[[SensorTree, float], None] = lambda tree, value: tree.set(SLOW, value)
    shown: str = "61"  # for the value 61
    whens: Sequence[str] = WHENS
    has_others: bool = True  # there is another sensor


DEVICE = f"class/hwmon/{SLOW}/device"
SUPPLY = "class/power_supply/BAT0"
ZONE = "class/powercap/intel-rapl:0"
ONLY_BEFORE = ("before",)  # what is read at a search, of which there is one at the start


def plug_device(tree: SensorTree, celsius: float) -> None:
    tree.plug(SLOW, [celsius])
    tree.write(f"{DEVICE}/uevent", "")


def plug_supply(tree: SensorTree, volts: float) -> None:
    tree.write(f"{SUPPLY}/type", "Battery")
    set_supply(tree, volts)


def set_supply(tree: SensorTree, volts: float) -> None:
    tree.write(f"{SUPPLY}/voltage_now", str(round(1_000_000 * volts)))


def plug_counter(tree: SensorTree, _: float) -> None:
    """It stands still."""
    tree.write(f"{ZONE}/name", "package-0")
    tree.write(f"{ZONE}/energy_uj", "61000000")


def plug_cores(tree: SensorTree, _: float) -> None:
    for kind, processor in (("cpu_core", 0), ("cpu_atom", 1)):
        tree.write(f"devices/{kind}/cpus", str(processor))


def plug_thermal_zone(tree: SensorTree, celsius: float) -> None:
    """Which is only looked at where there is no sensor."""
    tree.write("class/thermal/thermal_zone0/temp", str(round(1000 * celsius)))


DRIVERS = {
    "read": Driver("read"),
    "open": Driver("open", whens=ONLY_BEFORE),
    "listing": Driver("list", DEVICE, plug=plug_device, whens=ONLY_BEFORE),
    "libsensors": Driver("stream", make_tree=ConfiguredTree),
    "controller": Driver(
        "read",
        file=f"class/hwmon/{CONTROLLER}/key_at_index_data",
        key="TC0P",
        plug=lambda tree, value: tree.plug_controller("TC0P", value),
        set=SensorTree.set_controller,
    ),
    "supply": Driver("read", f"{SUPPLY}/voltage_now", "BAT0/voltage_now", plug=plug_supply, set=set_supply),
    "type of a supply": Driver("read", f"{SUPPLY}/type", plug=plug_supply, whens=ONLY_BEFORE),
    "energy counter": Driver("read", f"{ZONE}/energy_uj", "intel-rapl-0/energy", plug=plug_counter, shown="0 W"),
    "name of an energy counter": Driver("read", f"{ZONE}/name", plug=plug_counter, whens=ONLY_BEFORE),
    "kinds of cores": Driver("read", "devices/cpu_atom/cpus", plug=plug_cores, whens=ONLY_BEFORE),
    "thermal zone": Driver(
        "read",
        "class/thermal/thermal_zone0/temp",
        plug=plug_thermal_zone,
        whens=ONLY_BEFORE,
        has_others=False,
    ),
}
THAT_COME_BACK = ("read", "libsensors", "controller", "supply")


class Stall:
    """A file that does not answer while the stall lasts."""

    def __init__(self, library: Path, folder: Path, driver: Driver) -> None:
        self._switch = folder / "stalls"
        self.variables = (
            f"LD_PRELOAD={library}",
            f"STALL_WHILE={self._switch}",
            f"STALLED_FILE={'/'.join(Path(driver.file).parts[-2:])}",
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
    """That of a chip whose reads stall, unless the test names another."""
    return DRIVERS[getattr(request, "param", "read")]


@pytest.fixture
def tree(driver: Driver, tmp_path: Path) -> SensorTree:
    return tree_of(driver, tmp_path)


def tree_of(driver: Driver, folder: Path) -> SensorTree:
    tree = driver.make_tree(folder)
    if driver.has_others:
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
    if driver.has_others:
        wait_until(SET_ASIDE_SECONDS, "the sensor that answers", lambda: shows(program, "41"))
    if when == "after":
        wait_until(SET_ASIDE_SECONDS, "the sensor that is about to stall", lambda: shows(program, driver.shown))
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
PARALLEL_CASES = 6  # which mostly wait


class Case(NamedTuple):
    name: str  # of the driver
    when: str
    way: str

    def __str__(self) -> str:
        return f"{self.name} {self.when} {self.way}"


def cases() -> list[Case]:
    return [
        Case(name, when, way) for name, driver in DRIVERS.items() for when, way in itertools.product(driver.whens, WAYS)
    ]


class Ending(NamedTuple):
    case: Case
    seconds: float = 0
    is_written: bool = False
    failure: str = ""

    @property
    def held(self) -> bool:
        return not self.failure and self.seconds < QUIT_SECONDS and self.is_written


def ending_of(case: Case, program: Path, library: Path, folder: Path, artefacts: Path) -> Ending:
    """Of the program, on a desktop of its own."""
    driver = DRIVERS[case.name]
    folder.mkdir()
    tree = tree_of(driver, folder)
    stall = Stall(library, folder, driver)
    desktop = Desktop(f"stall {case}".replace(" ", "-"), artefacts)
    try:
        sensors = SensorProgram(program, desktop, tree, stall.variables)
        start_with_stall(sensors, driver, stall, case.when)
        seconds = seconds_to_quit(sensors, case.way)
        return Ending(case, seconds, desktop_preferences(desktop).get(CHANGED) == "1")
    except Exception as error:  # of one case among many
        logs = "".join(log.read_text(errors="replace")[-1000:] for log in sorted(desktop.logs.glob("program*.log")))
        return Ending(case, failure=f"{error!r}\n{logs}")
    finally:
        desktop.stop()


@pytest.mark.program("kelvinbar")
def test_quitting_waits_for_no_driver(
    program: Path, attack_file: Callable[[str], Path], tmp_path: Path, request: pytest.FixtureRequest, record
) -> None:
    skip_unless_mountable()
    library = attack_file("libkelvinbar_stalling_files.so")
    artefacts = request.config.getoption("build") / "artefacts"
    with ThreadPoolExecutor(PARALLEL_CASES) as executor:
        endings = list(
            executor.map(lambda case: ending_of(case, program, library, tmp_path / str(case), artefacts), cases())
        )
    for name in DRIVERS:
        of_driver = [ending for ending in endings if ending.case.name == name]
        failed = [str(ending.case) for ending in of_driver if not ending.held]
        print(*(ending.failure for ending in of_driver), sep="\n")
        seconds = [ending.seconds for ending in of_driver]
        lost = sum(not ending.is_written for ending in of_driver)
        record(
            f"stall in {name}, then the end",
            f"{len(of_driver)} cases: ended in {min(seconds):.2f} to {max(seconds):.2f} s, {lost} with lost preferences"
            + "".join(f"; FAILED: {case}" for case in failed),
            not failed,
        )


def desktop_preferences(desktop: Desktop) -> dict[str, str]:
    lines = (desktop.configuration / "kelvinbar/kelvinbar.conf").read_text().splitlines()
    return dict(line.split("=", 1) for line in lines if "=" in line)


@pytest.mark.program("kelvinbar")
@pytest.mark.parametrize("driver", THAT_COME_BACK, indirect=True)
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


def disk_stall(library: Path, folder: Path, file: Path) -> Stall:
    """Of the file, which is opened on a disk that does not answer."""
    return Stall(library, folder, Driver("open", file=f"{file.parent.name}/{file.name}"))


@pytest.mark.program("kelvinbar")
def test_the_panel_waits_for_no_disk(
    desktop: Desktop, program: Path, tree: SensorTree, attack_file: Callable[[str], Path], tmp_path: Path, record
) -> None:
    """An opening panel reads the autostart entry, as a start does."""
    entry = desktop.configuration / "autostart/org.kelvinbar.Kelvinbar.desktop"
    desktop.write(entry, "[Desktop Entry]\n")
    stall = disk_stall(attack_file("libkelvinbar_stalling_files.so"), tmp_path, entry)
    stall.begin()
    sensors = SensorProgram(program, desktop, tree, stall.variables)
    with NoBar(desktop) as host:
        panel = Panel(host.windows(), host.scale, host.shadow)
        sensors.start()
        sensors.start_again()
        wait_until(Panel.OPEN_SECONDS, "the panel", panel.is_open)
        was_reached = stall.is_reached()
        seconds = seconds_to_quit(sensors, "menu")
    record(
        "stall of the autostart entry's disk",
        f"started, panel opened, ended in {seconds:.2f} s",
        was_reached and seconds < QUIT_SECONDS and desktop_preferences(desktop).get(CHANGED) == "1",
    )


@pytest.mark.program("kelvinbar")
def test_quitting_waits_for_no_disk(
    desktop: Desktop, program: Path, tree: SensorTree, attack_file: Callable[[str], Path], tmp_path: Path, record
) -> None:
    preferences = desktop.configuration / "kelvinbar/kelvinbar.conf"
    stall = disk_stall(attack_file("libkelvinbar_stalling_files.so"), tmp_path, preferences)
    sensors = SensorProgram(program, desktop, tree, stall.variables)
    sensors.prefer(KelvinbarSamplingRate="fast")
    with NoBar(desktop):
        sensors.start()
        stall.begin()
        seconds = seconds_to_quit(sensors, "menu")
    told = "the last changes of the preferences are lost" in sensors.printed()
    record(
        "stall of the preferences' disk, then the end",
        f"ended in {seconds:.2f} s, and said what is lost" if told else f"ended in {seconds:.2f} s without a word",
        stall.is_reached() and seconds < QUIT_SECONDS and told,
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


def failure_of_snapshot(name: str, snapshot: Path, library: Path, folder: Path) -> str:
    """Empty if it prints the rest, and names what does not answer."""
    driver = DRIVERS[name]
    folder.mkdir()
    tree = tree_of(driver, folder)
    stall = Stall(library, folder, driver)
    stall.begin()
    started = time.monotonic()
    command = tree.under(["env", "LC_ALL=C.UTF-8", *stall.variables, str(snapshot)])
    taken = subprocess.run(command, capture_output=True, text=True, timeout=20)
    seconds = time.monotonic() - started
    held = (
        taken.returncode == (0 if driver.has_others else 1)
        and (STEADY_KEY in taken.stdout) == driver.has_others
        and f"no answer from /sys/{Path(driver.file).parent}" in taken.stderr
        and seconds < SNAPSHOT_SECONDS + START_UP_SECONDS
    )
    return "" if held else f"{name}: status {taken.returncode} after {seconds:.1f} s, {taken.stderr}{taken.stdout}"


def test_the_snapshot_prints_the_rest(
    snapshot: Path, attack_file: Callable[[str], Path], tmp_path: Path, record
) -> None:
    """Status 1 if there is no rest."""
    skip_unless_mountable()
    library = attack_file("libkelvinbar_stalling_files.so")
    with ThreadPoolExecutor(PARALLEL_CASES) as executor:
        failures = list(
            executor.map(lambda name: failure_of_snapshot(name, snapshot, library, tmp_path / name), DRIVERS)
        )
    print(*failures, sep="\n")
    failed = sum(map(bool, failures))
    record(
        "stall during a snapshot",
        f"{len(failures)} cases: the rest printed after two seconds, the file named; {failed} failed",
        failed == 0,
    )
