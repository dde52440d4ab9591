"""The programs with a file system that they cannot write, without a network and without capabilities.

snapshot-system-calls.txt is the list for a seccomp filter of the console program, such as systemd's SystemCallFilter=.
"""

import re
import signal
import subprocess
from collections.abc import Iterator
from pathlib import Path

import pytest

from driver.desktop import Desktop
from driver.hosts.host import NoBar
from driver.processes import Process
from driver.program import MACHINE, PREFERENCES, Panel
from driver.waiting import wait_until
from sensor_tree import SensorTree
from system_calls import filter_for, names_in, traced

SYSTEM_CALLS = Path(__file__).with_name("snapshot-system-calls.txt")
CHANGING = re.compile(
    rb"^Generated: .*$"  # in a snapshot
    rb"|^.*kelvinbar/.*$"  # what the program itself costs
    rb"|[\d.]+ (?:ms|accesses)|\"time\":.*$",
    re.MULTILINE,
)
SOCKET = re.compile(r"\bsocket(?:pair)?\((\w+)")

CONFINED = ["bwrap", "--die-with-parent", "--unshare-net", "--cap-drop", "ALL", "--ro-bind", "/", "/"]
CONFINED += ["--dev", "/dev", "--proc", "/proc"]


@pytest.fixture
def tree(tmp_path: Path) -> SensorTree:
    tree = SensorTree(tmp_path)
    tree.plug("steady", [41, 42])
    return tree


def run(*command: str | Path) -> subprocess.CompletedProcess:
    return subprocess.run(command, capture_output=True, timeout=60)


def outcome(command: list[str]) -> tuple[int, bytes]:
    """The exit status, and what is printed except for times and costs."""
    result = run(*command)
    return result.returncode, CHANGING.sub(b"", result.stdout)


def ways_to_run(snapshot: Path, folder: Path) -> list[list[str]]:
    """Arguments that together use all that the program does."""
    replay = folder / "replay.txt"
    replay.write_bytes(run(snapshot, "--demo").stdout)
    machines = [[], ["--demo"], ["--demo", "linux-pc"], ["--replay", str(replay)]]
    outputs = [["--format", name] for name in ("openmetrics", "json", "jsonl", "csv", "table", "waybar")]
    outputs += [["--summary"], ["--title"], ["--pinned"], ["--self", "--format", "csv"], ["--diff", str(replay)]]
    others = [["--doctor"], ["--doctor", "--format", "json"]]
    return [*machines, *outputs, *others, ["--completion", "bash"], ["--help"], ["--version"], ["--wrong"]]


def allowed_calls() -> set[str]:
    lines = SYSTEM_CALLS.read_text().splitlines()
    return {line for line in lines if line and not line.startswith("#")}


def test_the_console_program_works_confined(snapshot: Path, tree: SensorTree, tmp_path: Path, record) -> None:
    ways = ways_to_run(snapshot, tmp_path)
    different = [
        way
        for way in ways
        if outcome(tree.under([*CONFINED, str(snapshot), *way])) != outcome(tree.under([str(snapshot), *way]))
    ]
    assert run(*tree.under([*CONFINED, "touch", str(tmp_path / "file")])).returncode != 0, "the root is writable"
    record(
        "confinement of kelvinbar-snapshot: read-only root, no network, no capabilities",
        f"{len(ways)} ways to run it, {len(different)} with another result",
        not different,
    )


def test_the_console_program_needs_no_other_system_calls_than_listed(
    snapshot: Path, tree: SensorTree, tmp_path: Path, desktop: Desktop, record, monkeypatch: pytest.MonkeyPatch
) -> None:
    """With a session bus, which one way uses."""
    monkeypatch.setenv("DBUS_SESSION_BUS_ADDRESS", desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
    ways = ways_to_run(snapshot, tmp_path)
    made: set[str] = set()
    sockets: set[str] = set()
    for way in ways:
        _, trace = traced(tree.under([str(snapshot), *way]), tmp_path / "trace")
        own = trace[trace.rindex(f'execve("{snapshot}"') :]
        made |= names_in(own)
        sockets |= set(SOCKET.findall(own))
    record(
        "system calls of kelvinbar-snapshot",
        f"{len(made)} in {len(ways)} ways to run it, of {len(allowed_calls())} in the list; not in it:"
        f" {', '.join(sorted(made - allowed_calls())) or 'none'}; sockets: {', '.join(sorted(sockets)) or 'none'}",
        made <= allowed_calls() and sockets == {"AF_UNIX"},
    )


def test_the_console_program_works_under_the_filter(snapshot: Path, tree: SensorTree, tmp_path: Path, record) -> None:
    ways = ways_to_run(snapshot, tmp_path)
    rules = tmp_path / "filter"
    rules.write_bytes(filter_for(allowed_calls()))
    under_filter = ["sh", "-c", 'exec "$@" 3<"$0"', str(rules), *CONFINED, "--seccomp", "3"]
    different = [
        way
        for way in ways
        if outcome(tree.under([*under_filter, str(snapshot), *way])) != outcome(tree.under([str(snapshot), *way]))
    ]
    status = run(*under_filter, "mkdir", str(tmp_path / "folder")).returncode
    assert status == 128 + signal.SIGSYS, "the filter lets other calls pass"
    record(
        "seccomp filter of kelvinbar-snapshot",
        f"{len(ways)} ways to run it, {len(different)} with another result",
        not different,
    )


class ConfinedProgram:
    """The desktop program. It may write its home folder and nothing else."""

    def __init__(self, file: Path, desktop: Desktop, trace: Path) -> None:
        self._desktop = desktop
        desktop.write(desktop.configuration / PREFERENCES, "[General]\nKelvinbarMenuBarKeys=TC0P\n")
        confined = [*CONFINED, "--bind", str(desktop.home), str(desktop.home)]
        # strace is inside: it is a process of the namespace, and so is what it looks at.
        traced = ["strace", "-f", "-e", "trace=socket,socketpair", "-o", str(trace)]
        self.command = [*confined, *traced, str(file), MACHINE]
        self._process: Process = desktop.start("confined", self.command)

    def item(self):
        pids = [self._process.pid, *descendants(self._process.pid)]
        return next((item for pid in pids if (item := self._desktop.bus.exported_item_of(pid))), None)

    def stop(self) -> None:
        self._process.stop()


def descendants(pid: int) -> Iterator[int]:
    for child in map(int, Path(f"/proc/{pid}/task/{pid}/children").read_text().split()):
        yield child
        yield from descendants(child)


def test_the_desktop_program_works_confined(desktop: Desktop, program: Path, record) -> None:
    with NoBar(desktop) as host:
        trace = desktop.home / "sockets"
        confined = ConfinedProgram(program, desktop, trace)
        item = wait_until(20, "the item of the confined program", confined.item)
        wait_until(10, "the pinned reading", lambda: len(item.menu()) > 6)
        item.choose("Open Kelvinbar")
        Panel(host.windows(), host.scale, host.shadow).wait_open()
        confined.stop()
        sockets = set(SOCKET.findall(trace.read_text()))
    record(
        "confinement of kelvinbar-demo: read-only root, no network, no capabilities",
        f"item, readings and panel are there; sockets: {', '.join(sorted(sockets))}",
        sockets == {"AF_UNIX"},
    )
