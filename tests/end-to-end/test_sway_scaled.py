"""The program in Waybar's tray in sway, at twice the scale."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.waybar import Waybar
from tray_contract import FloatingContract, LookContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    return make_desktop(is_unprivileged=True, size=(2560, 1600))


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Waybar]:
    with Waybar(desktop, has_xwayland=True, scale=2) as host:
        yield host


class TestSwayScaled(LookContract, FloatingContract):
    pass
