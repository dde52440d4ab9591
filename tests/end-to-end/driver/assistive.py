"""The program as assistive tools see it. Runs `assistive_reader.py` in the desktop's session."""

import sys
from pathlib import Path
from subprocess import CompletedProcess
from typing import NamedTuple

from driver.desktop import Additions, Desktop
from driver.geometry import Point
from driver.waiting import wait_until

READER = Path(__file__).with_name("assistive_reader.py")


class Seen(NamedTuple):
    """A visible object."""

    depth: int
    role: str
    name: str
    description: str
    states: frozenset[str]


class Assistive:
    """Finds objects by their names, also by names that are followed by ", " and a value."""

    def __init__(self, desktop: Desktop, environment: Additions | None = None) -> None:
        self._desktop = desktop
        self._environment = environment or {}

    def tree(self) -> list[Seen]:
        """All visible objects in reading order."""
        rows = (line.split("\t") for line in self._read("list").splitlines())
        return [
            Seen(int(depth), role, name, text, frozenset(states.split())) for depth, role, name, text, states in rows
        ]

    def shows(self, name: str) -> bool:
        return self._find("place", name) is not None

    def place(self, name: str) -> Point:
        """The centre of the object on the screen."""
        return Point(*map(int, self._read("place", name).split()))

    def has_state(self, name: str, state: str) -> bool:
        return state in (self._find("states", name) or "").split()

    def lacks_state(self, name: str, state: str) -> bool:
        states = self._find("states", name)
        return states is not None and state not in states.split()

    def press(self, name: str) -> None:
        self._read("press", name)

    def wait_shown(self, name: str, what: str, limit: float = 3) -> None:
        wait_until(limit, what, lambda: self.shows(name))

    def wait_hidden(self, name: str, what: str) -> None:
        wait_until(3, what, lambda: not self.shows(name))

    def wait_state(self, name: str, state: str, what: str) -> None:
        wait_until(3, what, lambda: self.has_state(name, state))

    def wait_no_state(self, name: str, state: str, what: str) -> None:
        wait_until(3, what, lambda: self.lacks_state(name, state))

    def _find(self, *arguments: str) -> str | None:
        """None if there is no such object."""
        reading = self._run_reader(*arguments)
        return reading.stdout if reading.returncode == 0 else None

    def _read(self, *arguments: str) -> str:
        reading = self._run_reader(*arguments)
        assert reading.returncode == 0, reading.stderr
        return reading.stdout

    def _run_reader(self, *arguments: str) -> CompletedProcess:
        return self._desktop.run([sys.executable, str(READER), *arguments], self._environment)
