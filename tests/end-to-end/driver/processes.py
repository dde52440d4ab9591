"""Child processes that end with the scenario."""

import os
import signal
import subprocess
import time
from collections.abc import Mapping, Sequence
from pathlib import Path

STOP_SECONDS = 5

# A child must not outlive a test run that was killed.
BOUND_TO_US = ("setpriv", "--pdeathsig", "KILL")


class Process:
    """A program in a process group of its own, with a log of what it prints."""

    def __init__(
        self, command: Sequence[str], environment: Mapping[str, str], log: Path, inherited: Sequence[int] = ()
    ) -> None:
        self.log = log
        with log.open("ab") as output:
            self._child = subprocess.Popen(
                [*BOUND_TO_US, *command],
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=subprocess.STDOUT,
                start_new_session=True,
                pass_fds=inherited,
            )

    @property
    def pid(self) -> int:
        return self._child.pid

    @property
    def runs(self) -> bool:
        return self._child.poll() is None

    def text(self) -> str:
        return self.log.read_text(errors="replace")

    def send(self, number: signal.Signals) -> None:
        self._child.send_signal(number)

    def status(self, limit: float) -> int:
        """The exit status, negative after a signal. Fails if the process runs on."""
        try:
            return self._child.wait(limit)
        except subprocess.TimeoutExpired as expired:
            raise AssertionError(f"{self._child.args} still runs after {limit} s") from expired

    def stop(self) -> None:
        """Ends the process and whatever else is in its group."""
        self._send_to_group(signal.SIGTERM)
        try:
            self._child.wait(STOP_SECONDS)
        except subprocess.TimeoutExpired:
            pass
        self._send_to_group(signal.SIGKILL)
        self._child.wait(STOP_SECONDS)

    def _send_to_group(self, number: signal.Signals) -> None:
        try:
            os.killpg(self.pid, number)
        except ProcessLookupError:
            pass


def kill_processes_of(home: Path) -> None:
    """Kills whatever has this home folder: services that the bus or a session started, each with a group of its own."""
    for _ in range(3):
        pids = [pid for pid in _pids() if _home_of(pid) == os.fsencode(home)]
        if not pids:
            return
        for pid in pids:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        time.sleep(0.1)


def _pids() -> list[int]:
    return [int(name) for name in os.listdir("/proc") if name.isdigit()]


def _home_of(pid: int) -> bytes | None:
    try:
        variables = Path(f"/proc/{pid}/environ").read_bytes().split(b"\0")
    except OSError:
        return None
    return next((variable[5:] for variable in variables if variable.startswith(b"HOME=")), None)
