"""The program in the tray of MATE with its session manager, which starts the bar."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.mate import MateSession
from tray_contract import LabelContract, TrayContract


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[MateSession]:
    with MateSession(desktop) as host:
        yield host


class TestMateSession(TrayContract, LabelContract):
    pass
