"""A watcher of status items without a host, as some sessions run one: nothing shows items, so the XEmbed icon stays."""

import ctypes
from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.hostless import HostlessWatcher
from driver.hosts.trayer import Trayer
from driver.program import Program
from driver.waiting import stays, wait_until


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Trayer]:
    with Trayer(desktop) as host:
        yield host


@pytest.fixture
def watcher(desktop: Desktop) -> Iterator[HostlessWatcher]:
    with HostlessWatcher(desktop) as watcher:
        yield watcher


@pytest.fixture(autouse=True)
def _prepared(program: Program) -> None:
    program.prefer(KelvinbarMenuBarKeys="TC0P", KelvinbarSamplingRate="fast")


def qt_version() -> tuple[int, ...]:
    version = ctypes.CDLL("libQt6Core.so.6").qVersion
    version.restype = ctypes.c_char_p
    return tuple(int(part) for part in version().decode().split("."))


@pytest.mark.skipif(qt_version() >= (6, 8), reason="Qt takes any watcher for a tray, see README.md")
def test_a_watcher_that_is_there_first_does_not_keep_the_icon_away(
    desktop: Desktop, host: Trayer, watcher: HostlessWatcher, program: Program
) -> None:
    program.start()
    wait_until(5, "the icon in the tray", host.has_the_icon)
    assert stays(2, host.has_the_icon)
    desktop.keep_picture("tray")


def test_a_watcher_that_comes_later_does_not_take_the_icon_away(
    desktop: Desktop, host: Trayer, program: Program
) -> None:
    program.start()
    wait_until(5, "the icon in the tray", host.has_the_icon)
    with HostlessWatcher(desktop):
        assert stays(2, host.has_the_icon)
