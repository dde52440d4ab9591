"""The program in the tray of MATE's notification area."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.mate import MatePanel
from tray_contract import LabelContract, TrayContract


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[MatePanel]:
    with MatePanel(desktop) as host:
        yield host


class TestMate(TrayContract, LabelContract):
    pass
