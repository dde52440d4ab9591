"""A desktop of its own: screen, session bus, system bus, home folder."""

import os
import pwd
import shutil
import signal
import socket
import subprocess
import tempfile
from collections.abc import Iterator, Mapping, Sequence
from contextlib import contextmanager
from pathlib import Path

from driver.bus import Bus
from driver.processes import Process, kill_processes_of
from driver.screen import Screen
from driver.waiting import wait_until

SCREEN_SIZE = (1280, 800)

# What the person who runs the scenarios has set, and what a desktop needs of it.
PASSED_ON = ("PATH", "LANG", "TZ")

# A bus of another user lets nobody in but that user.
BUS_CONFIGURATION = """<busconfig>
  <include>/usr/share/dbus-1/session.conf</include>
  <policy context="default"><allow user="root"/></policy>
</busconfig>
"""

# To the environment of a desktop. None takes a variable out of it.
Additions = Mapping[str, str | None]


class Desktop:
    """What a host and the program share. `stop` ends every process of it and removes its home folder.

    Compositors that refuse root need `is_unprivileged`: processes then belong to the user `nobody` if root runs the
    scenarios.
    """

    def __init__(
        self, scenario: str, artefacts: Path, size: tuple[int, int] = SCREEN_SIZE, is_unprivileged: bool = False
    ) -> None:
        self.scenario = scenario
        self._artefacts = artefacts
        self._user = _as_nobody() if is_unprivileged and os.geteuid() == 0 else ()
        self.home = Path(tempfile.mkdtemp(prefix="kelvinbar-"))
        self.logs = self.home / "logs"
        self.environment = self._own_environment()
        self._make_folders()
        self.screen = Screen(size, self.environment, self._log("screen"))
        self.environment["DISPLAY"] = self.screen.display
        self._processes: list[Process] = []
        self._buses: dict[str, Process] = {}
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self._start_bus("system-bus")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus("session-bus")
        self.bus = Bus(self.environment["DBUS_SESSION_BUS_ADDRESS"])

    def stop(self) -> None:
        self.bus.close()
        for process in reversed(self._processes):
            process.stop()
        self.screen.stop()
        kill_processes_of(self.home)
        shutil.rmtree(self.home, ignore_errors=True)

    def restart_session_bus(self) -> None:
        """Ends the bus as a crash does, and starts another at the same address."""
        self.bus.close()
        self._buses["session-bus"].kill()
        (self.runtime / "session-bus").unlink()
        self.bus = Bus(self._start_bus("session-bus"))

    @contextmanager
    def silent_session_bus(self) -> Iterator[None]:
        """Meanwhile the bus accepts connections and calls, and answers none."""
        self._buses["session-bus"].send(signal.SIGSTOP)
        try:
            yield
        finally:
            self._buses["session-bus"].send(signal.SIGCONT)

    def start(self, name: str, command: Sequence[str], environment: Additions | None = None) -> Process:
        """Starts a program. Its output goes to the log of this name."""
        process = Process(command, self._with(environment), self._log(name), user=self._user)
        self._processes.append(process)
        return process

    def run(
        self, command: Sequence[str], environment: Additions | None = None, limit: float = 20
    ) -> subprocess.CompletedProcess:
        """Runs a program to its end, with its output as text."""
        return subprocess.run(
            [*self._user, *command],
            env=self._with(environment),
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=limit,
            check=False,
        )

    def write(self, file: Path, text: str) -> None:
        """Writes a file of the home folder."""
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
        within_home = file.relative_to(self.home).parents
        self._give_away(file, *(self.home / folder for folder in within_home))

    @property
    def configuration(self) -> Path:
        return Path(self.environment["XDG_CONFIG_HOME"])

    @property
    def runtime(self) -> Path:
        return Path(self.environment["XDG_RUNTIME_DIR"])

    def artefact(self, name: str) -> Path:
        return self._artefacts / f"{self.scenario}-{name}"

    def keep_picture(self, name: str) -> None:
        self.screen.keep(self.artefact(f"{name}.png"))

    def keep_evidence(self, test: str) -> None:
        """Keeps what a failure is explained by: the screen and all logs."""
        try:
            self.screen.keep(self._artefacts / f"failed-{self.scenario}-{test}.png")
        except subprocess.SubprocessError as error:
            print(f"no picture of the screen: {error}")
        for log in self.logs.glob("*.log"):
            shutil.copyfile(log, self._artefacts / f"failed-{self.scenario}-{test}-{log.name}")

    def _with(self, additions: Additions | None) -> dict[str, str]:
        return {name: value for name, value in {**self.environment, **(additions or {})}.items() if value is not None}

    def _own_environment(self) -> dict[str, str]:
        return {
            **{name: os.environ[name] for name in PASSED_ON if name in os.environ},
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_CACHE_HOME": str(self.home / "cache"),
            "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_STATE_HOME": str(self.home / "state"),
            "XDG_RUNTIME_DIR": str(self.home / "run"),
            "XDG_CURRENT_DESKTOP": "Test",
            "XDG_SESSION_TYPE": "x11",
            "GSETTINGS_BACKEND": "keyfile",  # a file that hosts can write
            "LC_ALL": "C.UTF-8",  # prints degree signs
            "LIBGL_ALWAYS_SOFTWARE": "1",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }

    def _make_folders(self) -> None:
        self._artefacts.mkdir(parents=True, exist_ok=True)
        for name in ("logs", "config/kelvinbar", "cache", "data", "state", "run"):
            (self.home / name).mkdir(parents=True)
        self.runtime.chmod(0o700)
        self._give_away(self.home, *self.home.rglob("*"))

    def _give_away(self, *paths: Path) -> None:
        if self._user:
            nobody = pwd.getpwnam("nobody")
            for path in paths:
                os.chown(path, nobody.pw_uid, nobody.pw_gid)

    def _start_bus(self, name: str) -> str:
        address = f"unix:path={self.runtime / name}"
        configuration = self.home / "bus.conf"
        self.write(configuration, BUS_CONFIGURATION)
        self._buses[name] = self.start(
            name, ["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile", f"--address={address}"]
        )
        wait_until(5, f"the {name}", lambda: _accepts_connections(self.runtime / name))
        return address

    def _log(self, name: str) -> Path:
        return self.logs / f"{name}.log"


def _accepts_connections(path: Path) -> bool:
    """A socket is there a moment before it does."""
    with socket.socket(socket.AF_UNIX) as connection:
        return connection.connect_ex(str(path)) == 0


def _as_nobody() -> tuple[str, ...]:
    nobody = pwd.getpwnam("nobody")
    return ("setpriv", f"--reuid={nobody.pw_uid}", f"--regid={nobody.pw_gid}", "--clear-groups")
