"""The virtual screen with its pointer and keyboard, as a person has them."""

import os
import subprocess
import time
from collections.abc import Mapping
from pathlib import Path

from driver.geometry import Point, Rect
from driver.picture import Picture, keep_picture, picture_of
from driver.processes import Process
from driver.waiting import wait_until

PRESS_SECONDS = 0.1  # about as long as a person presses a button
OUTPUT = "screen"
SETTLE_SECONDS = 0.15  # until hosts have seen that the pointer came


class Screen:
    """An X server without hardware. Nested compositors are windows on it, so it drives these too."""

    def __init__(self, size: tuple[int, int], environment: Mapping[str, str], log: Path) -> None:
        self.size = size
        read, write = os.pipe()
        geometry = f"{size[0]}x{size[1]}x24"
        command = [
            "Xvfb",
            "-displayfd",
            str(write),
            "-screen",
            "0",
            geometry,
            "-dpi",
            "96",
            "-nolisten",
            "tcp",
            "-noreset",
        ]
        self._server = Process(command, environment, log, inherited=(write,))
        os.close(write)
        with os.fdopen(read) as pipe:
            self.display = ":" + pipe.readline().strip()
        assert self.display != ":", f"no X server: {self._server.text()}"

    @property
    def area(self) -> Rect:
        return Rect(0, 0, *self.size)

    def stop(self) -> None:
        self._server.stop()

    def point_at(self, place: Point) -> None:
        self._xdotool("mousemove", *map(str, place))
        time.sleep(SETTLE_SECONDS)

    def press(self, place: Point, button: int = 1) -> None:
        self.point_at(place)
        self._xdotool("mousedown", str(button))
        time.sleep(PRESS_SECONDS)
        self._xdotool("mouseup", str(button))

    def double_click(self, place: Point) -> None:
        self.point_at(place)
        self._xdotool("click", "--repeat", "2", "--delay", "80", "1")
        time.sleep(0.6)  # a following press must not count as the third

    def type_key(self, *keys: str) -> None:
        self._xdotool("key", *keys)

    def picture(self, area: Rect | None = None) -> Picture:
        return picture_of(self.display, area or self.area)

    def settled_picture(self, area: Rect | None = None, limit: float = 10) -> Picture:
        """A picture of a place that nothing is drawn to any more."""
        pictures = [self.picture(area)]

        def is_settled() -> bool:
            time.sleep(0.4)
            pictures.append(self.picture(area))
            return pictures[-1].box_of_difference(pictures[-2]) is None

        wait_until(limit, "a still picture", is_settled)
        return pictures[-1]

    def change_mode(self, size: tuple[int, int]) -> None:
        """To one that is not larger than the screen was made."""
        width, height = map(str, size)
        mode = f"{width}x{height}"
        if mode not in self._xrandr().split():
            self._xrandr("--newmode", mode, "60", width, width, width, width, height, height, height, height)
            self._xrandr("--addmode", OUTPUT, mode)
        self._xrandr("--output", OUTPUT, "--mode", mode)

    def keep(self, file: Path) -> None:
        keep_picture(self.display, file)

    def _xdotool(self, *arguments: str) -> None:
        self._run("xdotool", *arguments)

    def _xrandr(self, *arguments: str) -> str:
        return self._run("xrandr", *arguments)

    def _run(self, *command: str) -> str:
        environment = {**os.environ, "DISPLAY": self.display}
        return subprocess.run(
            command, check=True, timeout=10, env=environment, stdout=subprocess.PIPE, text=True
        ).stdout
