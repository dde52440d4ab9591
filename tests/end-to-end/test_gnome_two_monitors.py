"""The program in GNOME's shell on Wayland, on two monitors."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.gnome import GnomeWayland
from tray_contract import LookContract, PlaceContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    """The shell warns root."""
    return make_desktop(is_unprivileged=True, size=(2560, 800))


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[GnomeWayland]:
    with GnomeWayland(desktop, monitors=2) as host:
        yield host


class TestGnomeTwoMonitors(LookContract, PlaceContract):
    pass
