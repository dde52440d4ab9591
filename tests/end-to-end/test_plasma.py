"""The program in the tray of Plasma."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.plasma import Plasma
from tray_contract import TrayContract


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Plasma]:
    with Plasma(desktop) as host:
        yield host


class TestPlasma(TrayContract):
    pass
