"""Options and fixtures of the attacks.

Each module of tests is a part of `scripts/check-reliability.sh`, and states with `record` what it tried and whether the
promise held. Attacks on the whole program drive it with the desktops and waits of `tests/end-to-end/driver`.
"""

import sys
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import NamedTuple

import pytest
from _pytest.terminal import TerminalReporter

ROOT = Path(__file__).parents[2]
sys.path.insert(0, str(ROOT / "tests/end-to-end"))
pytest.register_assert_rewrite("driver")

from driver.desktop import Desktop


class Row(NamedTuple):
    """An attack in the table. `figures`: how often or how long it was tried, and what came of it; or why it was not."""

    attack: str
    figures: str
    held: bool | None  # None: not tried


HELD = {True: "yes", False: "NO", None: "–"}
Record = Callable[[str, str, bool], None]
ROWS = pytest.StashKey[list[Row]]()  # all rows of a run; in the stash of a test, its own


def pytest_addoption(parser: pytest.Parser) -> None:
    parser.addoption("--scale", choices=("quick", "night"), default="quick", help="how much is tried")
    parser.addoption("--build", type=Path, default=ROOT / "build/desktop", help="the build of what users run")
    parser.addoption("--sanitized-build", type=Path, default=ROOT / "build/asan", help="the build under sanitizers")
    parser.addoption("--fuzz-build", type=Path, default=ROOT / "build/fuzz", help="the build of the fuzz targets")
    parser.addoption("--soak-minutes", type=float, default=60, help="how long the program soaks at night")


def pytest_configure(config: pytest.Config) -> None:
    config.stash[ROWS] = []
    config.addinivalue_line("markers", "night: takes too long for the quick scale")
    config.addinivalue_line("markers", "program(name): the program under attack, if it is not kelvinbar-demo")


def pytest_collection_modifyitems(config: pytest.Config, items: list[pytest.Item]) -> None:
    if config.getoption("scale") == "night":
        return
    config.hook.pytest_deselected(items=[item for item in items if item.get_closest_marker("night")])
    items[:] = [item for item in items if not item.get_closest_marker("night")]


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item: pytest.Item, call: pytest.CallInfo[None]) -> Iterator[None]:
    """An attack that fails or is skipped without a row that says so gets one. Logs are shown before the desktop is
    removed."""
    report = (yield).get_result()
    if report.skipped:
        item.config.stash[ROWS].append(Row(item.name, f"not tried: {call.excinfo.value}", None))
    if not report.failed:
        return
    if False not in (row.held for row in item.stash.get(ROWS, [])):
        item.config.stash[ROWS].append(Row(item.name, f"failed in its {report.when}", False))
    if desktop := item.funcargs.get("desktop"):
        for log in sorted(desktop.logs.glob("*.log")):
            if text := log.read_text(errors="replace"):
                report.sections.append((log.name, text[-3000:]))


def pytest_terminal_summary(terminalreporter: TerminalReporter, config: pytest.Config) -> None:
    """Prints the table of docs/reliability.md."""
    cells = [(row.attack, row.figures, HELD[row.held]) for row in config.stash[ROWS]]
    if not cells:
        return
    header = ("Attack", f"Figures ({config.getoption('scale')})", "Held")
    widths = [max(map(len, column)) for column in zip(header, *cells)]
    terminalreporter.write_line("")
    for row in (header, tuple("-" * width for width in widths), *cells):
        terminalreporter.write_line("| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |")


@pytest.fixture
def record(request: pytest.FixtureRequest) -> Record:
    """Adds a row to the table. The test fails if the promise was not held."""

    def add(attack: str, figures: str, held: bool) -> None:
        row = Row(attack, figures, held)
        request.node.stash.setdefault(ROWS, []).append(row)
        request.config.stash[ROWS].append(row)
        assert held, f"{attack}: {figures}"

    return add


@pytest.fixture(scope="session")
def scale(request: pytest.FixtureRequest) -> str:
    """How much is tried: "quick" or "night"."""
    return request.config.getoption("scale")


@pytest.fixture(scope="session")
def soak_minutes(request: pytest.FixtureRequest) -> float:
    return request.config.getoption("soak_minutes")


@pytest.fixture(scope="session")
def fuzz_build(request: pytest.FixtureRequest) -> Path:
    return request.config.getoption("fuzz_build").absolute()


@pytest.fixture
def program(request: pytest.FixtureRequest) -> Path:
    """kelvinbar-demo, or what the test is marked with: `pytest.mark.program("kelvinbar")`."""
    marker = request.node.get_closest_marker("program")
    return _built(request, f"app/{marker.args[0] if marker else 'kelvinbar-demo'}")


@pytest.fixture
def snapshot(request: pytest.FixtureRequest) -> Path:
    """kelvinbar-snapshot."""
    return _built(request, "tools/kelvinbar-snapshot")


@pytest.fixture
def attack_file(request: pytest.FixtureRequest) -> Callable[[str], Path]:
    """What CMakeLists.txt builds here, by name, without sanitizers: programs, and libraries to be preloaded."""
    return lambda name: _built(request, f"tests/reliability/{name}")


@pytest.fixture(params=["plain", pytest.param("sanitized", marks=pytest.mark.night)])
def kind(request: pytest.FixtureRequest) -> str:
    """Runs the test with what users run, and at night also under the address and undefined-behaviour sanitizers."""
    return request.param


@pytest.fixture
def attack_program(request: pytest.FixtureRequest, kind: str) -> Callable[[str], Path]:
    """The programs of `attack_file` of that kind."""
    build = "build" if kind == "plain" else "sanitized_build"
    return lambda name: _built(request, f"tests/reliability/{name}", build)


@pytest.fixture
def desktop(request: pytest.FixtureRequest) -> Iterator[Desktop]:
    """A desktop for this test alone: screen, buses, home folder."""
    desktop = Desktop(request.node.name, request.config.getoption("build") / "artefacts")
    yield desktop
    desktop.stop()


def _built(request: pytest.FixtureRequest, name: str, build: str = "build") -> Path:
    file = request.config.getoption(build).absolute() / name
    assert file.exists(), f"{file} is not built"
    return file
