"""The program in an XEmbed tray."""

import time
from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
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


def test_the_icon_moves_to_a_newer_kind_of_tray_that_appears(desktop: Desktop, host: Trayer, program: Program) -> None:
    with XfcePanel(desktop, has_window_manager=True):
        program.wait_for_tray()
        wait_until(3, "the icon's end in the old tray", lambda: not host.has_the_icon())
