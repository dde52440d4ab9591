"""Options and fixtures of the scenarios.

Each module of tests has a desktop and a host of its own, each test a fresh program. A module provides the fixture `host`
if it needs a bar, and its own `desktop` if it needs another screen or user.
"""

from collections.abc import Iterator
from pathlib import Path

import pytest

pytest.register_assert_rewrite("driver", "tray_contract")

from driver.assistive import Assistive
from driver.desktop import Desktop
from driver.hosts.host import Host, NoBar
from driver.program import Panel, Program
from driver.tray_view import TrayView

SHOWN_LOG_CHARACTERS = 3000


def pytest_addoption(parser: pytest.Parser) -> None:
    parser.addoption("--program", type=Path, required=True, help="the demo program")
    parser.addoption("--artefacts", type=Path, required=True, help="a folder for pictures and logs")


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item: pytest.Item) -> Iterator[None]:
    """Keeps the screen and the logs as they are when a test fails, before anything is stopped."""
    report = (yield).get_result()
    desktop = item.funcargs.get("desktop")
    if not report.failed or desktop is None:
        return
    desktop.keep_evidence(item.name)
    for log in sorted(desktop.logs.glob("*.log")):
        if text := log.read_text(errors="replace"):
            report.sections.append((log.name, text[-SHOWN_LOG_CHARACTERS:]))


def scenario_of(request: pytest.FixtureRequest) -> str:
    return request.module.__name__.removeprefix("test_").replace("_", "-")


@pytest.fixture(scope="module")
def make_desktop(request: pytest.FixtureRequest):
    """Makes desktops that end with the module."""

    def make(**options) -> Desktop:
        desktop = Desktop(scenario_of(request), request.config.getoption("artefacts"), **options)
        request.addfinalizer(desktop.stop)
        return desktop

    return make


@pytest.fixture(scope="module")
def desktop(make_desktop) -> Desktop:
    """A module that needs another screen overrides this."""
    return make_desktop()


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Host]:
    """A desktop without a bar."""
    with NoBar(desktop) as host:
        yield host


@pytest.fixture(scope="module")
def tray_view(host: Host) -> TrayView:
    """Looks at the tray before any item is in it."""
    return TrayView(host)


@pytest.fixture
def program(request: pytest.FixtureRequest, desktop: Desktop, host: Host) -> Iterator[Program]:
    """Not started yet. If it still runs in the end, it must finish without an error."""
    program = Program(request.config.getoption("program"), desktop, host.environment)
    yield program
    if program.runs:
        program.finish()


@pytest.fixture
def own_program(request: pytest.FixtureRequest, desktop: Desktop, host: Host) -> Iterator[Program]:
    """kelvinbar, which reads this machine. Not started yet."""
    file = request.config.getoption("program").with_name("kelvinbar")
    program = Program(file, desktop, host.environment, arguments=())
    yield program
    if program.runs:
        program.finish()


@pytest.fixture
def panel(host: Host) -> Panel:
    return Panel(host.windows(), host.scale, host.shadow)


@pytest.fixture
def assistive(desktop: Desktop, host: Host) -> Assistive:
    return Assistive(desktop, host.environment)
