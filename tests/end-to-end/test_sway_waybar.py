"""The program in Waybar's tray in sway, through the session's X server.

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
    with Waybar(desktop, has_xwayland=True) as host:
        yield host


class TestSwayWaybar(LookContract, FloatingContract, PanelContract, BareDesktopContract, ItemContract):
    pass
