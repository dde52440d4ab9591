"""Windows, as an X server or a Wayland compositor knows them."""

import json
import re
import subprocess
from pathlib import Path
from typing import Protocol

from driver.desktop import Additions, Desktop
from driver.geometry import Rect
from driver.screen import Screen


class Windows(Protocol):
    def frame(self, title: str) -> Rect | None:
        """In pixels of the screen. None if no visible window has this title."""

    def has_focus(self, title: str) -> bool:
        ...


class XWindows:
    """The windows of an X server, without shadows that their programs draw."""

    def __init__(self, desktop: Desktop, environment: Additions) -> None:
        self._desktop = desktop
        self._environment = environment

    def frame(self, title: str) -> Rect | None:
        window = self._window(title)
        return self._frame_of(window) if window else None

    def has_focus(self, title: str) -> bool:
        window = self._window(title)
        return window is not None and self._ask("xdotool", "getwindowfocus").strip() == window

    def _window(self, title: str) -> str | None:
        found = self._ask("xdotool", "search", "--onlyvisible", "--name", f"^{title}$").split()
        return found[-1] if found else None

    def _frame_of(self, window: str) -> Rect | None:
        geometry = self._ask("xdotool", "getwindowgeometry", "--shell", window)
        values = dict(re.findall(r"^(\w+)=(-?\d+)$", geometry, re.MULTILINE))
        if "HEIGHT" not in values:  # closed in the meantime
            return None
        left, right, top, bottom = self._shadow_of(window)
        x, y, width, height = (int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))
        return Rect(x + left, y + top, width - left - right, height - top - bottom)

    def _shadow_of(self, window: str) -> tuple[int, int, int, int]:
        extents = re.findall(
            r"\d+", self._ask("xprop", "-id", window, "-notype", "_GTK_FRAME_EXTENTS").partition("=")[2]
        )
        return tuple(map(int, extents)) if len(extents) == 4 else (0, 0, 0, 0)

    def _ask(self, *command: str) -> str:
        return self._desktop.run(command, self._environment).stdout


class SwayWindows:
    """The windows of a sway session."""

    def __init__(self, socket: Path, scale: int) -> None:
        self._socket = socket
        self._scale = scale

    def frame(self, title: str) -> Rect | None:
        window = self._window(title)
        return Rect(**{name: value * self._scale for name, value in window["rect"].items()}) if window else None

    def has_focus(self, title: str) -> bool:
        window = self._window(title)
        return window is not None and window["focused"]

    def is_floating(self, title: str) -> bool:
        window = self._window(title)
        return window is not None and window["type"] == "floating_con"

    def _window(self, title: str) -> dict | None:
        command = ["swaymsg", "--socket", str(self._socket), "--raw", "-t", "get_tree"]
        answer = subprocess.run(command, capture_output=True, text=True, timeout=10, check=True).stdout
        return _find_window(json.loads(answer), title)


class LayerSurfaces:
    """Layer surfaces, which sway does not list: what is drawn beside the bar and was not there before.

    Limits: it must be the only thing that is drawn there, and the pointer on it or on the bar.
    """

    POINTER_SIDE = 48

    def __init__(self, screen: Screen, area: Rect) -> None:
        self._screen = screen
        self._area = area
        self._bare = screen.settled_picture(area)

    def frame(self, title: str) -> Rect | None:
        box = self._screen.picture(self._area).box_of_difference(self._bare)
        return box if box and max(box.size) > self.POINTER_SIDE else None

    def has_focus(self, title: str) -> bool:
        raise NotImplementedError("sway does not tell which layer surface has the focus")


def _find_window(node: dict, title: str) -> dict | None:
    if node.get("pid") and node["name"] == title and node.get("visible", True):
        return node
    for child in (*node["nodes"], *node["floating_nodes"]):
        if found := _find_window(child, title):
            return found
    return None
