"""The program in the tray of Xfce's panel, at the top of the screen."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.xfce import XfcePanel
from tray_contract import TrayContract


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[XfcePanel]:
    with XfcePanel(desktop) as host:
        yield host


class TestXfce(TrayContract):
    pass
