"""Plasma on X11, with only a tray, at the right end of the bottom bar."""

import time

from gi.repository import GLib

from driver.desktop import Desktop
from driver.geometry import Rect
from driver.hosts.host import PANEL_SHADOW, Host, has_window_manager
from driver.waiting import wait_until

SHELL = "org.kde.plasmashell"
BAR_HEIGHT = 36

# Of the tray itself, which adds those that it does not know yet.
TRAY_APPLETS = ",".join(
    f"org.kde.plasma.{name}"
    for name in (
        "battery keyboardlayout manage-inputmethod mediacontroller devicenotifier clipboard notifications volume"
        " networkmanagement bluetooth printmanager vault nightcolorcontrol kscreen keyboardindicator"
    ).split()
)

# Run by the shell.
LAYOUT = """
for (const panel of panels()) panel.remove();
const bar = new Panel;
bar.location = "bottom";
bar.height = %d;
bar.addWidget("org.kde.plasma.panelspacer");
const tray = bar.addWidget("org.kde.plasma.systemtray");
const content = desktopById(tray.readConfig("SystrayContainmentId"));
content.currentConfigGroup = ["General"];
content.writeConfig("extraItems", "");
content.writeConfig("knownItems", "%s");
"""


class Plasma(Host):
    shadow = PANEL_SHADOW
    tray_seconds = 30
    settle_seconds = 8
    menu_entry_offset = 40  # the menu has a shadow

    def __init__(self, desktop: Desktop, scale: int = 1) -> None:
        super().__init__(desktop)
        self.scale = scale

    @property
    def bar(self) -> Rect:
        width, height = self.desktop.screen.size
        return Rect(0, height - BAR_HEIGHT * self.scale, width, BAR_HEIGHT * self.scale)

    def start(self) -> None:
        self.environment = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}
        self._set_font_resolution()
        self._launch("kwin", ["kwin_x11", "--replace"])
        wait_until(10, "the window manager", lambda: has_window_manager(self.desktop))
        self._launch("kded", ["kded5"])
        super().start()
        self._lay_out()

    def start_bar(self) -> None:
        self._launch("plasmashell", ["plasmashell"])

    def has_tray(self) -> bool:
        """The watcher outlives the shell."""
        return super().has_tray() and self.desktop.bus.has(SHELL)

    def _lay_out(self) -> None:
        script = GLib.Variant("(s)", (LAYOUT % (self.bar.height, TRAY_APPLETS),))
        self.desktop.bus.call(SHELL, "/PlasmaShell", "org.kde.PlasmaShell", "evaluateScript", script)
        file = self.desktop.configuration / "plasma-org.kde.plasma.desktop-appletsrc"
        wait_until(30, "the layout on the disk", lambda: "panelspacer" in file.read_text())
        time.sleep(2)
