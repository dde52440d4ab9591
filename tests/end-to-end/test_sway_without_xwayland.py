"""The program in Waybar's tray in sway, in a session without an X server.

A press on the bar does not move the focus there, and no program is told of it.
"""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.waybar import Waybar
from tray_contract import BareDesktopContract, FloatingContract, ItemContract, LookContract, PanelContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    return make_desktop(is_unprivileged=True)


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Waybar]:
    with Waybar(desktop, has_xwayland=False) as host:
        yield host


class TestSwayWithoutXwayland(LookContract, FloatingContract, PanelContract, BareDesktopContract, ItemContract):
    def test_opening_closing_and_opening_again_prints_nothing(self) -> None:
        before = self.program.printed()
        self.open_panel()
        self.panel.wait_focus()
        self.screen.type_key("Escape")
        self.panel.wait_closed("closing by Escape")
        self.open_panel()
        self.panel.wait_focus()
        assert self.program.printed() == before
