"""The program in the tray of LXQt's panel, at the bottom of the screen."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.lxqt import LxqtPanel
from tray_contract import TrayContract


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[LxqtPanel]:
    with LxqtPanel(desktop) as host:
        yield host


class TestLxqt(TrayContract):
    pass
