"""The program in GNOME's shell on Wayland, through the session's X server."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.gnome import GnomeWayland
from tray_contract import TrayContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    """The shell warns root."""
    return make_desktop(is_unprivileged=True)


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[GnomeWayland]:
    with GnomeWayland(desktop) as host:
        yield host


class TestGnomeWayland(TrayContract):
    pass
