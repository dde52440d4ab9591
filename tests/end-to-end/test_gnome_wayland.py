"""The program in GNOME's shell on Wayland, through the session's X server.

Presses on the bare desktop or on the bar do not move the focus there, and no program is told of them.
"""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.gnome import GnomeWayland
from tray_contract import ItemContract, LookContract, PanelContract, PlaceContract


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    """The shell warns root."""
    return make_desktop(is_unprivileged=True)


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[GnomeWayland]:
    with GnomeWayland(desktop) as host:
        yield host


class TestGnomeWayland(LookContract, PlaceContract, PanelContract, ItemContract):
    pass
