"""Waybar in sway: a Wayland compositor that runs as a window of the virtual screen, with or without an X server."""

import json

from driver.desktop import Desktop
from driver.geometry import Rect
from driver.hosts.host import BAR_HEIGHT, PANEL_SHADOW, Host
from driver.waiting import wait_until
from driver.windows import LayerSurfaces, SwayWindows, Windows

DISPLAY_FILE = "display"

BAR = {
    "position": "top",
    "height": BAR_HEIGHT,
    "modules-right": ["tray"],
    "tray": {"icon-size": 21, "spacing": 4},
}


class Waybar(Host):
    """sway refuses root: the desktop must be unprivileged."""

    shadow = PANEL_SHADOW

    def __init__(self, desktop: Desktop, has_xwayland: bool, scale: int = 1) -> None:
        super().__init__(desktop)
        self.scale = scale
        self._has_xwayland = has_xwayland
        self._socket = desktop.runtime / "sway"
        self.places_its_programs = not has_xwayland

    @property
    def bar(self) -> Rect:
        return Rect(0, 0, self.desktop.screen.size[0], BAR_HEIGHT * self.scale)

    def start(self) -> None:
        self._start_sway()
        self.environment = self._session_environment()
        super().start()

    def start_bar(self) -> None:
        self.desktop.write(self.desktop.configuration / "waybar/config", json.dumps(BAR))
        self._launch("waybar", ["waybar"])

    def windows(self) -> Windows:
        return SwayWindows(self._socket, self.scale)

    def _start_sway(self) -> None:
        width, height = self.desktop.screen.size
        file = self.desktop.configuration / "sway/config"
        self.desktop.write(
            file,
            f"xwayland {'enable' if self._has_xwayland else 'disable'}\n"
            f"output X11-1 resolution {width}x{height} scale {self.scale}\n"
            f"output * background #204060 solid_color\n"
            f"exec echo $DISPLAY >{self.desktop.runtime / DISPLAY_FILE}\n",
        )
        backend = {"WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman", "SWAYSOCK": str(self._socket)}
        self._launch("sway", ["sway", "-c", str(file)], backend)
        wait_until(10, "sway", (self.desktop.runtime / DISPLAY_FILE).exists)

    def _session_environment(self) -> dict[str, str | None]:
        display = (self.desktop.runtime / DISPLAY_FILE).read_text().strip()
        return {
            "WAYLAND_DISPLAY": next(self.desktop.runtime.glob("wayland-?")).name,
            "DISPLAY": display if self._has_xwayland else None,
            "XDG_SESSION_TYPE": "wayland",
            "XDG_CURRENT_DESKTOP": "sway",
        }


class WaybarBesideLayerSurfaces(Waybar):
    """Without an X server, for a program that makes its panel a layer surface."""

    def __init__(self, desktop: Desktop) -> None:
        super().__init__(desktop, has_xwayland=False)

    def windows(self) -> LayerSurfaces:
        screen = self.desktop.screen
        screen.point_at(self.empty_bar_place)
        width, height = screen.size
        return LayerSurfaces(screen, Rect(0, self.bar.bottom, width, height - self.bar.bottom))
