"""GNOME Shell with the AppIndicator extension: on X11, and as a Wayland compositor that runs as a window.

A single press opens an item's menu; a double click activates the item.
"""

import re
import time

from gi.repository import GLib

from driver.desktop import Desktop
from driver.geometry import Point, Rect
from driver.hosts.host import PANEL_SHADOW, Host
from driver.waiting import wait_until

OVERVIEW = ("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "OverviewActive")
EXTENSION = "ubuntu-appindicators@ubuntu.com"
SETTINGS_DAEMON = "/usr/libexec/gsd-xsettings"  # tells X programs the scale
BAR_HEIGHT = 32
SETTINGS = f"""[org/gnome/shell]
enabled-extensions=['{EXTENSION}']
welcome-dialog-last-shown-version='999'
[org/gnome/desktop/lockdown]
disable-lock-screen=true
[org/gnome/desktop/interface]
enable-animations=false
"""


class Gnome(Host):
    shadow = PANEL_SHADOW
    shows_labels = True
    tray_seconds = 30
    settle_seconds = 3
    menu_button = 1
    menu_entry_offset = 40  # below the arrow and the margin of the menu

    @property
    def bar(self) -> Rect:
        return Rect(0, 0, self.desktop.screen.size[0], BAR_HEIGHT * self.scale)

    @property
    def tray(self) -> Rect:
        """To the right of the clock."""
        left = self.bar.width * 2 // 3
        return Rect(left, 0, self.bar.width - left, self.bar.height)

    def start(self) -> None:
        self.environment = {"XDG_CURRENT_DESKTOP": "GNOME"}
        self._write_settings(SETTINGS)
        super().start()

    def _leave_overview(self) -> None:
        """The shell starts in its overview."""
        wait_until(20, "the overview", self._is_in_overview)
        wait_until(10, "the overview's end", self._has_left_overview)

    def _is_in_overview(self) -> bool:
        try:
            return self.desktop.bus.property(*OVERVIEW)
        except GLib.Error:
            return False

    def _has_left_overview(self) -> bool:
        """An order that comes while the shell enters its overview is lost, so it is repeated."""
        self.desktop.bus.set_property(*OVERVIEW, GLib.Variant("b", False))
        return not self._is_in_overview()

    def activate(self, place: Point) -> None:
        self.desktop.screen.double_click(place)


class GnomeX11(Gnome):
    def start_bar(self) -> None:
        self._launch("gnome-shell", ["gnome-shell", "--x11"])
        self._leave_overview()


class GnomeWayland(Gnome):
    """With Xwayland. A restart is that of the extension, since programs do not survive their compositor."""

    SOCKET = "wayland-gnome"

    def __init__(self, desktop: Desktop, scale: int = 1, monitors: int = 1) -> None:
        super().__init__(desktop)
        self.scale = scale
        self._monitors = monitors

    @property
    def bar(self) -> Rect:
        """On the first monitor."""
        width = self.desktop.screen.size[0] // self._monitors
        return super().bar._replace(width=width)

    def start(self) -> None:
        self._write_settings(SETTINGS)
        width, height = self.desktop.screen.size
        monitors = {
            "MUTTER_DEBUG_DUMMY_MODE_SPECS": f"{width // self._monitors}x{height}",
            "MUTTER_DEBUG_NUM_DUMMY_MONITORS": str(self._monitors),
            "MUTTER_DEBUG_DUMMY_MONITOR_SCALES": ",".join([str(self.scale)] * self._monitors),
        }
        command = ["gnome-shell", "--nested", f"--wayland-display={self.SOCKET}"]
        self._shell = self._launch("gnome-shell", command, {"XDG_CURRENT_DESKTOP": "GNOME", **monitors})
        display = wait_until(20, "the X server", lambda: re.search(r"X11 display (:\d+)", self._shell.text()))
        self.environment = {
            "XDG_CURRENT_DESKTOP": "GNOME",
            "XDG_SESSION_TYPE": "wayland",
            "WAYLAND_DISPLAY": self.SOCKET,
            "DISPLAY": display[1],
            "XAUTHORITY": str(next(self.desktop.runtime.glob(".mutter-Xwaylandauth.*"))),
        }
        self._launch("gsd-xsettings", [SETTINGS_DAEMON])
        self._leave_overview()
        self.wait_for_tray()
        time.sleep(self.settle_seconds)

    def start_bar(self) -> None:
        self._set_extension("enable")

    def stop_bar(self) -> None:
        self._set_extension("disable")
        wait_until(10, "the tray's end", lambda: not self.has_tray())

    def kill_bar(self) -> None:
        self.stop_bar()

    def _set_extension(self, action: str) -> None:
        done = self.desktop.run(["gnome-extensions", action, EXTENSION])
        assert done.returncode == 0, done.stderr
