"""Sessions without a display: one sentence on standard error and exit status 1. A second start needs no display."""


import os

import pytest

from driver.desktop import Additions, Desktop
from driver.program import Panel, Program

NO_DISPLAY = {"DISPLAY": None, "WAYLAND_DISPLAY": None}
WITHOUT_A_DISPLAY = {
    "none": NO_DISPLAY,
    "a dead one": {"DISPLAY": ":4242", "WAYLAND_DISPLAY": None},
    "a dead compositor": {"DISPLAY": None, "WAYLAND_DISPLAY": "wayland-4242"},
    "an unknown platform": {"QT_QPA_PLATFORM": "unknown"},
}

OF_CRON = {**NO_DISPLAY, "XDG_RUNTIME_DIR": None, "DBUS_SESSION_BUS_ADDRESS": None}


@pytest.mark.parametrize("environment", WITHOUT_A_DISPLAY.values(), ids=WITHOUT_A_DISPLAY)
def test_a_start_without_a_display_says_so_and_exits(
    desktop: Desktop, program: Program, environment: Additions
) -> None:
    start = desktop.run(program.command, environment)
    assert start.returncode == 1, start.stderr
    assert len(start.stderr.strip().splitlines()) == 1, start.stderr


def test_a_second_start_hands_over_without_a_display(desktop: Desktop, program: Program, panel: Panel) -> None:
    program.start()
    second = desktop.run(program.command, NO_DISPLAY)
    assert second.returncode == 0, second.stderr
    panel.wait_open()


def test_a_second_start_by_cron_hands_over(desktop: Desktop, program: Program, panel: Panel) -> None:
    """A login manager keeps the runtime folder and the socket of the bus where programs without a session look."""
    program.start()
    (desktop.runtime / "bus").hardlink_to(desktop.runtime / "session-bus")
    folder = f"/run/user/{os.getuid()}"
    in_its_place = ["bwrap", "--dev-bind", "/", "/", "--tmpfs", "/run", "--bind", str(desktop.runtime), folder]
    second = desktop.run([*in_its_place, *program.command], OF_CRON)
    assert second.returncode == 0, second.stderr
    panel.wait_open()
