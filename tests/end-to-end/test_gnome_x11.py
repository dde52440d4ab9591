"""The program in the tray of GNOME's shell on X11."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.gnome import GnomeX11
from tray_contract import LabelContract, TrayContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    """The shell warns root."""
    return make_desktop(is_unprivileged=True)


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[GnomeX11]:
    with GnomeX11(desktop) as host:
        yield host


class TestGnomeX11(TrayContract, LabelContract):
    pass
