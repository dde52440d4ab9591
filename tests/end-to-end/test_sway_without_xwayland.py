"""The program in Waybar's tray in sway, in a session without an X server."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.waybar import Waybar
from tray_contract import FloatingContract, ItemContract, LookContract, PanelContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    return make_desktop(is_unprivileged=True)


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Waybar]:
    with Waybar(desktop, has_xwayland=False) as host:
        yield host


class TestSwayWithoutXwayland(LookContract, FloatingContract, PanelContract, ItemContract):
    pass
