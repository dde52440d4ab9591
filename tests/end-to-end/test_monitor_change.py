"""A monitor that changes its mode while the panel is open, with Xfce's panel."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.geometry import Rect
from driver.hosts.xfce import XfcePanel
from driver.waiting import wait_until
from tray_contract import LARGEST_GAP, TrayTests, gap

SMALLER = Rect(0, 0, 1000, 760)


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[XfcePanel]:
    with XfcePanel(desktop) as host:
        yield host


class TestMonitorChange(TrayTests):
    def test_the_open_panel_stays_on_the_monitor_and_beside_the_bar(self) -> None:
        before = self.open_panel()
        assert not SMALLER.contains(before)
        self.screen.change_mode(SMALLER.size)
        wait_until(5, "the panel on the smaller monitor", self.is_in_place, seen=self.panel.frame)
        self.desktop.keep_picture("smaller")
        self.screen.change_mode(self.screen.size)
        wait_until(5, "the panel beside the bar of the larger monitor", self.is_beside_the_bar, seen=self.panel.frame)
        self.desktop.keep_picture("larger")
        self.screen.type_key("Escape")
        self.panel.wait_closed("closing by Escape")

    def is_in_place(self) -> bool:
        return SMALLER.contains(self.panel.frame()) and self.is_beside_the_bar()

    def is_beside_the_bar(self) -> bool:
        return 0 <= gap(self.panel.frame(), self.host.bar) <= LARGEST_GAP
