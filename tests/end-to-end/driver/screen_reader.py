"""Orca, which writes what it would say to a log: there is no voice."""

import re

from driver.desktop import Additions, Desktop
from driver.waiting import wait_until

START_SECONDS = 20
# What is said, then the voice; before the voice of a key's echo is a space.
SPOKEN = re.compile(r"SPEECH OUTPUT: '(.*?)'(?: voice=\w+)?( ?)\{", re.DOTALL)


class ScreenReader:
    """As a context it is started, and stopped in the end."""

    def __init__(self, desktop: Desktop, environment: Additions) -> None:
        self._desktop = desktop
        self._environment = environment
        self._log = desktop.logs / "speech.log"
        self._heard = 0

    def __enter__(self) -> "ScreenReader":
        self._log.unlink(missing_ok=True)
        command = ["orca", "--replace", "--debug-file", str(self._log)]
        self._process = self._desktop.start("orca", command, self._environment)
        wait_until(START_SECONDS, "the screen reader", lambda: "Screen reader on." in self.transcript())
        self.said()
        return self

    def __exit__(self, *_: object) -> None:
        self._process.stop()

    def said(self) -> list[str]:
        """What it has said since the last call."""
        spoken = self.transcript()
        new = spoken[self._heard :]
        self._heard = len(spoken)
        return new

    def transcript(self) -> list[str]:
        """What it has said since it was started."""
        if not self._log.exists():
            return []
        return [text for text, echo in SPOKEN.findall(self._log.read_text(errors="replace")) if not echo]
