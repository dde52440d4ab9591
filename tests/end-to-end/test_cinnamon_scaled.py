"""The program in the tray of Cinnamon, at twice the scale."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.cinnamon import Cinnamon
from tray_contract import LookContract, MenuContract, PanelContract, PlaceContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    return make_desktop(size=(2560, 1600))


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Cinnamon]:
    with Cinnamon(desktop, scale=2) as host:
        yield host


class TestCinnamonScaled(LookContract, PlaceContract, PanelContract, MenuContract):
    pass
