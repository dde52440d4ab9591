"""The program in an XEmbed tray."""

import time
from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.geometry import Point
from driver.hosts.trayer import Trayer
from driver.hosts.xfce import XfcePanel
from driver.program import Panel, Program
from driver.waiting import wait_until


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Trayer]:
    with Trayer(desktop) as host:
        yield host


@pytest.fixture(autouse=True)
def _started(host: Trayer, program: Program) -> None:
    program.prefer(KelvinbarMenuBarKeys="TC0P", KelvinbarSamplingRate="fast")
    program.start()
    wait_until(5, "the icon in the tray", host.has_the_icon)
    time.sleep(1)  # it is drawn


def test_a_press_opens_the_panel_below_the_tray(desktop: Desktop, host: Trayer, panel: Panel) -> None:
    desktop.keep_picture("tray")
    desktop.screen.press(host.bar.center)
    frame = panel.wait_open()
    desktop.keep_picture("panel")
    assert 20 <= frame.y <= 40
    panel.wait_focus()
    desktop.screen.type_key("Escape")
    panel.wait_closed("closing by Escape")


def test_the_pointer_over_the_icon_shows_the_tooltip(desktop: Desktop, host: Trayer) -> None:
    windows = host.window_count()
    for x in (60, 40, 20, 14, 12):
        desktop.screen.point_at(Point(x, 12))
    wait_until(5, "the tooltip", lambda: host.window_count() > windows)
    desktop.keep_picture("tooltip")


def test_a_right_click_opens_the_menu(desktop: Desktop, host: Trayer, panel: Panel) -> None:
    windows = host.window_count()
    desktop.screen.press(host.bar.center, button=3)
    wait_until(5, "the menu", lambda: host.window_count() > windows)
    time.sleep(0.3)  # it is drawn
    desktop.keep_picture("menu")
    for key in ("Down", "Down", "Return"):  # the reading, then "Open Kelvinbar"
        desktop.screen.type_key(key)
        time.sleep(0.1)
    panel.wait_open("the panel by the menu")
    panel.wait_focus()


def test_the_icon_moves_to_a_newer_kind_of_tray_that_appears(desktop: Desktop, host: Trayer, program: Program) -> None:
    with XfcePanel(desktop, has_window_manager=True):
        program.wait_for_tray()
        wait_until(3, "the icon's end in the old tray", lambda: not host.has_the_icon())
