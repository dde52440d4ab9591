"""The panel as a layer surface in sway, in the corner that the user has chosen. Only where LayerShellQt is there."""

import time
from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.geometry import Rect
from driver.hosts.waybar import WaybarBesideLayerSurfaces
from driver.surroundings import PlainWindow
from driver.waiting import stays
from tray_contract import LookContract

FOCUS_SECONDS = 1  # more than the program waits for the focus before it takes the keyboard


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    return make_desktop(is_unprivileged=True)


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[WaybarBesideLayerSurfaces]:
    with WaybarBesideLayerSurfaces(desktop) as host:
        yield host


class TestSwayLayerShell(LookContract):
    def activate_item(self) -> Rect:
        """Also ends the tooltip of the item, which would be taken for the panel."""
        box = super().activate_item()
        self.screen.point_at(self.host.empty_bar_place)
        return box

    def open_panel(self) -> Rect:
        super().open_panel()
        time.sleep(FOCUS_SECONDS)
        return self.panel.frame()

    def test_an_activation_opens_the_panel_beside_the_bar_at_the_right(self) -> None:
        frame = self.open_panel()
        self.desktop.keep_picture("panel")
        assert (frame.right, frame.y) == (self.screen.area.right, self.host.bar.bottom)

    def test_the_menu_chooses_the_corner(self) -> None:
        self.program.item().choose("Panel at Bottom Left")
        frame = self.open_panel()
        self.desktop.keep_picture("corner")
        assert (frame.x, frame.bottom) == (0, self.screen.area.bottom)

    def test_escape_closes_the_panel(self) -> None:
        self.open_panel()
        self.screen.type_key("Escape")
        self.panel.wait_closed("closing by Escape")

    def test_a_second_activation_closes_the_panel(self) -> None:
        self.open_panel()
        self.activate_item()
        self.panel.wait_closed("closing by a second activation")
        assert stays(0.5, lambda: not self.panel.is_open()), "the second activation opened the panel again"

    def test_a_press_on_the_bare_desktop_closes_the_panel(self) -> None:
        self.open_panel()
        self.screen.press(self.host.bare_desktop_place)
        self.panel.wait_closed("closing by a press on the bare desktop")

    def test_a_press_on_another_window_closes_the_panel(self) -> None:
        with PlainWindow(self.host) as window:
            before = self.screen.settled_picture(self.beside_the_bar())
            self.activate_item()
            time.sleep(FOCUS_SECONDS)
            assert self.screen.picture(before.area).box_of_difference(before), "the panel is not open"
            self.screen.press(window.visible_place())
            self.screen.point_at(self.host.empty_bar_place)
            self.screen.settled_picture(before.area)
            assert not self.screen.picture(before.area).box_of_difference(before), "the panel is open"

    def test_a_second_start_opens_the_panel(self) -> None:
        self.screen.point_at(self.host.empty_bar_place)
        self.program.start_again()
        self.panel.wait_open("the panel by a second start")
