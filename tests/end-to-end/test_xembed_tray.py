"""The program in an XEmbed tray."""

import time
from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.geometry import Point, Rect
from driver.hosts.trayer import Trayer
from driver.hosts.xfce import XfcePanel
from driver.picture import wait_steady
from driver.program import Panel, Program
from driver.waiting import wait_until

BARE_DESKTOP = Point(600, 600)
BELOW_THE_TRAY = Rect(0, 26, 1280, 774)


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
    desktop.screen.point_at(BARE_DESKTOP)
    before = desktop.screen.picture(BELOW_THE_TRAY)
    for x in range(25, 11, -3):
        desktop.screen.point_at(Point(x, host.bar.center.y))
    wait_steady("the tooltip", lambda: desktop.screen.picture(BELOW_THE_TRAY).box_of_difference(before))
    desktop.keep_picture("tooltip")


def test_a_right_press_opens_the_menu_and_its_first_entry_the_panel(
    desktop: Desktop, host: Trayer, panel: Panel
) -> None:
    desktop.screen.point_at(BARE_DESKTOP)
    before = desktop.screen.picture(BELOW_THE_TRAY)
    desktop.screen.press(host.bar.center, button=3)
    menu = wait_steady("the menu", lambda: desktop.screen.picture(BELOW_THE_TRAY).box_of_difference(before))
    desktop.keep_picture("menu")
    desktop.screen.press(Point(menu.center.x, menu.y + host.menu_entry_offset))
    panel.wait_open("the panel by the menu")


def test_the_doctor_finds_the_tray(own_program: Program) -> None:
    own_program.start()
    diagnosis = own_program.diagnosis("Tray")
    assert diagnosis["tray"]["found"].startswith("XEmbed; ")
    assert diagnosis["status item"]["state"] == "note"


def test_the_icon_moves_to_a_newer_kind_of_tray_that_appears(desktop: Desktop, host: Trayer, program: Program) -> None:
    with XfcePanel(desktop, has_window_manager=True):
        program.wait_for_tray()
        wait_until(3, "the icon's end in the old tray", lambda: not host.has_the_icon())
