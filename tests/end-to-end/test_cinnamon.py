"""The program in the tray of Cinnamon."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.cinnamon import Cinnamon
from tray_contract import TrayContract


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Cinnamon]:
    with Cinnamon(desktop) as host:
        yield host


class TestCinnamon(TrayContract):
    pass
