"""What stands beside the program on a desktop: other items in the tray, and another window."""

import sys
from pathlib import Path
from typing import Self

from driver.geometry import Point, Rect
from driver.hosts.host import Host
from driver.picture import Pixel
from driver.processes import Process
from driver.waiting import wait_until


class Surrounding:
    """Another program. As a context it is seen on the screen, and ends with the context."""

    def __init__(self, host: Host, name: str, script: str, *arguments: str) -> None:
        self._host = host
        self._name = name
        command = [sys.executable, str(Path(__file__).with_name(script)), *arguments]
        self._process: Process = host.desktop.start(name, command, host.environment)

    def __enter__(self) -> Self:
        wait_until(10, f"the {self._name} on the screen", self.place)
        return self

    def __exit__(self, *_: object) -> None:
        self._process.stop()

    def place(self) -> Rect | None:
        raise NotImplementedError


class Neighbour(Surrounding):
    """A status item of one colour."""

    def __init__(self, host: Host, item_id: str, color: Pixel) -> None:
        self._color = color
        super().__init__(host, item_id, "neighbour_item.py", item_id, _hexadecimal(color))

    def place(self) -> Rect | None:
        return self._host.desktop.screen.picture(self._host.tray).box_of(self._color)


class PlainWindow(Surrounding):
    """A window of one colour."""

    COLOR = (0, 120, 60)

    def __init__(self, host: Host) -> None:
        super().__init__(host, "plain-window", "plain_window.py", _hexadecimal(self.COLOR))

    def __enter__(self) -> Self:
        super().__enter__()
        wait_until(5, "the focus of another window", lambda: "focused" in self._process.text())
        return self

    def place(self) -> Rect | None:
        return self._host.desktop.screen.picture().box_of(self.COLOR)

    def visible_place(self) -> Point:
        """The panel is to the right of it or in its middle."""
        place = self.place()
        return Point(place.x + 20, place.center.y)

    def was_pressed(self) -> bool:
        return "pressed" in self._process.text()


def _hexadecimal(color: Pixel) -> str:
    return bytes(color).hex()
