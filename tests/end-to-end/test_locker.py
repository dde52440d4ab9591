"""A screen locker takes pointer and keyboard for itself. An open panel must not keep it from that."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.processes import Process
from driver.program import Panel, Program
from driver.waiting import stays

LOCKER = ["i3lock", "--nofork"]
GIVES_UP_SECONDS = 8


@pytest.fixture(autouse=True)
def _opened(program: Program, panel: Panel) -> None:
    program.prefer(KelvinbarMenuBarKeys="TC0P")
    program.start()
    program.start_again()
    panel.wait_open()
    panel.wait_focus()


@pytest.fixture
def locker(desktop: Desktop) -> Iterator[Process]:
    """Started while the panel is open. It exits if it gets neither pointer nor keyboard."""
    locker = desktop.start("locker", LOCKER)
    yield locker
    locker.stop()


def test_a_locker_locks_while_the_panel_is_open(desktop: Desktop, locker: Process) -> None:
    assert stays(GIVES_UP_SECONDS, lambda: locker.runs), locker.text()
    desktop.keep_picture("locked")
    second = desktop.start("second-locker", LOCKER)
    assert second.status(10) != 0, "pointer and keyboard are not locked"


def test_keys_go_to_the_locker_and_not_to_the_panel(desktop: Desktop, panel: Panel, locker: Process) -> None:
    assert stays(GIVES_UP_SECONDS, lambda: locker.runs), locker.text()
    was_open = panel.is_open()
    desktop.screen.type_key("Escape")
    assert stays(0.5, lambda: panel.is_open() == was_open)
