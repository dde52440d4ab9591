"""The program in GNOME's shell on Wayland, at twice the scale."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.gnome import GnomeWayland
from tray_contract import LookContract, MenuContract, PanelContract, PlaceContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    """The shell warns root."""
    return make_desktop(is_unprivileged=True, size=(2560, 1600))


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[GnomeWayland]:
    with GnomeWayland(desktop, scale=2) as host:
        yield host


class TestGnomeScaled(LookContract, PlaceContract, PanelContract, MenuContract):
    pass
