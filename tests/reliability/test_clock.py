"""Time that passes at once, or goes backwards: one refresh, and the right time afterwards."""

import re
import signal
import time
from collections.abc import Callable
from datetime import datetime, timedelta, timezone
from pathlib import Path

import pytest
from gi.repository import GLib

from driver.bus import Bus
from driver.desktop import Desktop
from driver.hosts.host import NoBar
from driver.program import Panel
from driver.waiting import wait_until
from read_counter import ReadCounter
from sensor_tree import SensorProgram, SensorTree
from shifted_clock import ShiftedClock

CHIP = "steady"
INTERVAL_SECONDS = 1  # of the fast rate
STOP_SECONDS = {"quick": 4, "night": 60}
WATCH_SECONDS = 3.5
YEAR = 31_557_600
SLEEP_SECONDS = 8 * 3600
JUMPS = {"quick": (5 * YEAR, -20 * YEAR), "night": (5 * YEAR, -20 * YEAR, 1, -1, 3600, -3600, YEAR, 0)}
CLOCK_SECONDS = 3  # between a reading and its snapshot

pytestmark = pytest.mark.program("kelvinbar")


@pytest.fixture
def tree(tmp_path: Path) -> SensorTree:
    tree = SensorTree(tmp_path)
    tree.plug(CHIP, [41])
    return tree


def start(sensors: SensorProgram) -> None:
    sensors.prefer(KelvinbarMenuBarKeys=f"{CHIP}-virtual-0/temp1", KelvinbarSamplingRate="fast")
    sensors.start()
    wait_until(10, "the pinned sensor", lambda: any("41" in entry for entry in sensors.item().menu().values()))


def reads_while_watched(tree: SensorTree) -> int:
    counter = ReadCounter(tree.file(CHIP))
    time.sleep(WATCH_SECONDS)
    return counter.reads


def is_regular(reads: int) -> bool:
    """Neither a refresh for each interval that was missed, nor a last one only."""
    return 2 <= reads <= WATCH_SECONDS / INTERVAL_SECONDS + 1


def test_a_stop_is_followed_by_one_refresh(
    desktop: Desktop, program: Path, tree: SensorTree, scale: str, record
) -> None:
    sensors = SensorProgram(program, desktop, tree)
    start(sensors)
    sensors.send(signal.SIGSTOP)
    time.sleep(STOP_SECONDS[scale])
    sensors.send(signal.SIGCONT)
    reads = reads_while_watched(tree)
    sensors.finish()
    record(f"clock: stopped for {STOP_SECONDS[scale]} s", f"{reads} refreshes in {WATCH_SECONDS} s", is_regular(reads))


def snapshot_time(desktop: Desktop, sensors: SensorProgram) -> datetime:
    sensors.item().choose("Copy")
    text = desktop.run(["xclip", "-o", "-selection", "clipboard"]).stdout
    generated = re.search(r"^Generated: (.*)Z$", text, re.MULTILINE)
    assert generated, text
    return datetime.fromisoformat(generated[1]).replace(tzinfo=timezone.utc)


def test_a_jump_of_the_wall_clock_changes_nothing_but_the_time(
    desktop: Desktop,
    program: Path,
    tree: SensorTree,
    attack_file: Callable[[str], Path],
    tmp_path: Path,
    scale: str,
    record,
) -> None:
    clock = ShiftedClock(attack_file("libkelvinbar_shifted_clock.so"), tmp_path)
    sensors = SensorProgram(program, desktop, tree, clock.variables)
    with NoBar(desktop):
        start(sensors)
        regular, right = [], []
        for shift in JUMPS[scale]:
            clock.shift_wall_clock(shift)
            regular.append(is_regular(reads_while_watched(tree)))
            expected = datetime.now(timezone.utc) + timedelta(seconds=shift)
            right.append(abs(snapshot_time(desktop, sensors) - expected) < timedelta(seconds=CLOCK_SECONDS))
        sensors.finish()
    record(
        "clock: jumps of up to 20 years",
        f"{len(regular)} jumps, refreshes regular after {sum(regular)}, time right after {sum(right)}",
        all(regular) and all(right),
    )


def test_a_panel_closes_for_a_sleep_and_the_sensors_go_on(
    desktop: Desktop, program: Path, tree: SensorTree, attack_file: Callable[[str], Path], tmp_path: Path, record
) -> None:
    clock = ShiftedClock(attack_file("libkelvinbar_shifted_clock.so"), tmp_path)
    sensors = SensorProgram(program, desktop, tree, clock.variables)
    with NoBar(desktop) as host:
        panel = Panel(host.windows(), host.scale, host.shadow)
        start(sensors)
        sensors.start_again()
        wait_until(Panel.OPEN_SECONDS, "the panel", panel.is_open)
        login = LoginManager(desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"])
        login.prepare_for_sleep(True)
        panel.wait_closed("the panel before the sleep")
        clock.shift_wall_clock(SLEEP_SECONDS)
        clock.shift_boot_time(SLEEP_SECONDS)
        login.prepare_for_sleep(False)
        reads = reads_while_watched(tree)
        sensors.finish()
    record("clock: sleep of eight hours by the login manager", f"panel closed, {reads} refreshes", is_regular(reads))


class LoginManager:
    """The signals of the login manager, on the desktop's own system bus."""

    NAME = "org.freedesktop.login1"

    def __init__(self, address: str) -> None:
        self._bus = Bus(address)
        self._bus.own(self.NAME)

    def prepare_for_sleep(self, is_beginning: bool) -> None:
        path, interface = "/org/freedesktop/login1", f"{self.NAME}.Manager"
        self._bus.emit(path, interface, "PrepareForSleep", GLib.Variant("(b)", (is_beginning,)))
