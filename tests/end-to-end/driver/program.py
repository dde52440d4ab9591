"""The program under test, and its panel."""

import json
import signal
from collections.abc import Sequence
from pathlib import Path

from driver.bus import Item
from driver.desktop import Additions, Desktop
from driver.geometry import Rect
from driver.processes import Process
from driver.waiting import wait_until
from driver.windows import Windows

MACHINE = "intel-notebook"  # the scenarios look for readings of this machine
PREFERENCES = Path("kelvinbar/kelvinbar-demo.conf")

START_SECONDS = 10
REGISTRATION_SECONDS = 10
HAND_OVER_SECONDS = 10
QUIT_SECONDS = 10
DOCTOR_SECONDS = 20


class Program:
    """kelvinbar-demo on a desktop, or kelvinbar. `environment` is what a session adds for its programs."""

    def __init__(
        self,
        file: Path,
        desktop: Desktop,
        environment: Additions | None = None,
        arguments: Sequence[str] = (MACHINE,),
    ) -> None:
        self.command = [str(file), *arguments]
        self._desktop = desktop
        self._environment = environment or {}
        self._process: Process | None = None

    @property
    def pid(self) -> int:
        assert self._process, "the program was not started"
        return self._process.pid

    @property
    def runs(self) -> bool:
        return self._process is not None and self._process.runs

    def prefer(self, **preferences: str) -> None:
        """Writes the preferences, before a start."""
        lines = [f"{name}={value}\n" for name, value in preferences.items()]
        self._desktop.write(self._desktop.configuration / PREFERENCES, "[General]\n" + "".join(lines))

    def preferences(self) -> dict[str, str]:
        lines = (self._desktop.configuration / PREFERENCES).read_text().splitlines()
        return dict(line.split("=", 1) for line in lines if "=" in line)

    def start(self) -> None:
        self._process = self._desktop.start("program", self.command, self._environment)
        wait_until(START_SECONDS, "the item on the bus", lambda: self._desktop.bus.exported_item_of(self.pid))

    def printed(self) -> str:
        """What it has printed, and programs before it on this desktop."""
        return self._process.text()

    def start_again(self) -> None:
        """A second start, which the first instance takes over."""
        second = self._desktop.run(self.command, self._environment, HAND_OVER_SECONDS)
        assert second.returncode == 0, f"the second start failed: {second.stderr}"

    def start_again_at_once(self, times: int) -> None:
        starts = [self._desktop.start("second-start", self.command, self._environment) for _ in range(times)]
        assert [start.status(HAND_OVER_SECONDS) for start in starts] == [0] * times

    def diagnosis(self, section: str) -> dict[str, dict[str, str]]:
        """What the doctor finds, by subject. Only kelvinbar has a doctor."""
        command = [*self.command, "--doctor", "--format", "json"]
        doctor = self._desktop.run(command, self._environment, DOCTOR_SECONDS)
        sections = {each["title"]: each["findings"] for each in json.loads(doctor.stdout)["sections"]}
        return {finding["subject"]: finding for finding in sections[section]}

    def item(self) -> Item:
        item = self._desktop.bus.exported_item_of(self.pid)
        assert item, "the item is not on the bus"
        return item

    def label(self) -> str:
        return self.item().label()

    def is_registered(self) -> bool:
        return self._desktop.bus.registered_item_of(self.pid) is not None

    def wait_for_tray(self) -> None:
        wait_until(REGISTRATION_SECONDS, "the item in the tray", self.is_registered)

    def send(self, number: signal.Signals) -> None:
        self._process.send(number)

    def kill(self) -> None:
        self.send(signal.SIGKILL)
        self._process.status(QUIT_SECONDS)

    def wait(self) -> None:
        """Until the program has ended by itself, without an error."""
        status = self._process.status(QUIT_SECONDS)
        assert status == 0, f"the program ended with status {status}"

    def finish(self) -> None:
        self.send(signal.SIGTERM)
        self.wait()


class Panel:
    """The program's window."""

    TITLE = "Kelvinbar"
    SIZE = (462, 690)  # at scale 1

    OPEN_SECONDS = 10  # the first time, on a busy machine
    CLOSE_SECONDS = 3

    def __init__(self, windows: Windows, scale: int, shadow: int) -> None:
        """`shadow`: how far it may reach at each side, which is a part of the window."""
        self.windows = windows
        self._scale = scale
        self._shadow = shadow

    def frame(self) -> Rect:
        frame = self.windows.frame(self.TITLE)
        assert frame, "the panel is not open"
        return frame

    def is_open(self) -> bool:
        return self.windows.frame(self.TITLE) is not None

    def has_size(self, width: int, height: int) -> bool:
        """At scale 1."""
        frame = self.windows.frame(self.TITLE)
        if frame is None:
            return False
        surplus = (frame.width - width * self._scale, frame.height - height * self._scale)
        return all(0 <= pixels <= 2 * self._shadow * self._scale for pixels in surplus)

    def has_focus(self) -> bool:
        return self.windows.has_focus(self.TITLE)

    def wait_open(self, what: str = "the panel", limit: float = OPEN_SECONDS) -> Rect:
        wait_until(limit, what, self.is_open)
        self.wait_size(*self.SIZE, f"{what} at its size")
        return self.frame()

    def wait_size(self, width: int, height: int, what: str) -> None:
        wait_until(3, what, lambda: self.has_size(width, height), seen=lambda: self.windows.frame(self.TITLE))

    def wait_focus(self) -> None:
        """A key goes to the window with the focus, which the window manager gives after it shows the window."""
        wait_until(3, "the focus", self.has_focus)

    def wait_closed(self, what: str) -> None:
        wait_until(self.CLOSE_SECONDS, what, lambda: not self.is_open())
