"""MATE's session manager restores a saved session, and the program is also in the autostart folder."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.mate import MateSession
from driver.program import Panel, Program
from driver.waiting import stays, wait_until

SERVICE = "org.kelvinbar.Demo"
ENTRY = "autostart/org.kelvinbar.Demo.desktop"
LOGIN_SECONDS = 60  # the manager waits for parts of a desktop that are not there
SECOND_START_SECONDS = 5


@pytest.fixture
def host(desktop: Desktop) -> Iterator[MateSession]:
    """Not logged in yet."""
    host = MateSession(desktop)
    yield host
    host.stop()


def test_a_restored_session_starts_the_program_once_and_opens_nothing(
    desktop: Desktop, host: MateSession, program: Program, panel: Panel
) -> None:
    command = " ".join([*program.command, "--autostart"])
    desktop.write(desktop.configuration / ENTRY, f"[Desktop Entry]\nType=Application\nName=Kelvinbar\nExec={command}\n")
    program.prefer(KelvinbarMenuBarKeys="TC0P")
    host.start()
    first = wait_for_program(desktop)
    host.log_out()
    assert host.saved_programs(), "the session was not saved"
    assert not [saved for saved in host.saved_programs() if "kelvinbar" in saved]
    wait_until(10, "the program's end", lambda: not desktop.bus.has(SERVICE))
    host.start()
    second = wait_for_program(desktop)
    assert second != first
    assert stays(SECOND_START_SECONDS, lambda: desktop.bus.process_of(SERVICE) == second and not panel.is_open())
    desktop.keep_picture("restored")


def wait_for_program(desktop: Desktop) -> int:
    """Its process, once its item is in the tray."""
    pid = wait_until(LOGIN_SECONDS, "the program", lambda: desktop.bus.process_of(SERVICE))
    wait_until(20, "the item in the tray", lambda: desktop.bus.registered_item_of(pid))
    return pid
