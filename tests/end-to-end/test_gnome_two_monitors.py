"""The program in GNOME's shell on Wayland, on two monitors."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.geometry import Rect
from driver.hosts.gnome import GnomeWayland
from driver.surroundings import PlainWindow
from driver.waiting import stays
from tray_contract import LookContract, PanelContract, PlaceContract

SECOND_MONITOR = Rect(1280, 0, 1280, 800)


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    """The shell warns root."""
    return make_desktop(is_unprivileged=True, size=(2560, 800))


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[GnomeWayland]:
    with GnomeWayland(desktop, monitors=2) as host:
        yield host


class TestGnomeTwoMonitors(LookContract, PlaceContract, PanelContract):
    def test_a_press_on_a_window_of_the_second_monitor_closes_the_panel(self) -> None:
        self.screen.point_at(SECOND_MONITOR.center)  # where the shell opens windows
        with PlainWindow(self.host) as window:
            assert SECOND_MONITOR.contains(window.place())
            self.open_panel()
            self.screen.press(window.visible_place())
            self.panel.wait_closed("closing by a press on the second monitor")

    def test_the_shell_tells_nobody_of_a_press_on_the_bare_desktop_and_escape_still_closes_the_panel(self) -> None:
        self.open_panel()
        for place in (self.host.bare_desktop_place, SECOND_MONITOR.center):
            self.screen.press(place)
            assert stays(1, self.panel.is_open), f"a press at {place} closed the panel"
        self.screen.type_key("Escape")
        self.panel.wait_closed("closing by Escape")
