"""The program in MATE's notification area, at twice the scale."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.mate import MatePanel
from tray_contract import LookContract, MenuContract, PanelContract, PlaceContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    return make_desktop(size=(2560, 1600))


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[MatePanel]:
    with MatePanel(desktop, scale=2) as host:
        yield host


class TestMateScaled(LookContract, PlaceContract, PanelContract, MenuContract):
    pass
