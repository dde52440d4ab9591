"""MATE: its window manager, settings and panel, with only a notification area, at the right end of the top bar."""

import os
import re
import signal
from pathlib import Path

from gi.repository import GLib

from driver.desktop import Desktop
from driver.geometry import Rect
from driver.hosts.host import BAR_HEIGHT, Host, has_window_manager
from driver.surroundings import Neighbour
from driver.waiting import wait_until

SETTINGS = f"""[org/mate/panel/general]
toplevel-id-list=['top']
object-id-list=['notification-area']
[org/mate/panel/toplevels/top]
expand=true
orientation='top'
size={BAR_HEIGHT}
[org/mate/panel/objects/notification-area]
object-type='applet'
applet-iid='NotificationAreaAppletFactory::NotificationArea'
toplevel-id='top'
relative-to-edge='end'
position=0
locked=true
[org/mate/marco/general]
compositing-manager=false
[org/mate/desktop/session]
auto-save-session=true
required-components-list=['windowmanager', 'panel']
default-session=['mate-settings-daemon']
[org/mate/desktop/session/required-components]
windowmanager='marco'
panel='mate-panel'
[org/mate/desktop/font-rendering]
antialiasing='grayscale'
[org/mate/desktop/interface]
window-scaling-factor=%d
"""

SETTINGS_DAEMON = "org.mate.SettingsDaemon"
SESSION = "org.gnome.SessionManager"
BAR = "org.mate.Panel"
AUTOSTART = Path("/etc/xdg/autostart")
DAEMON = "mate-settings-daemon"
HIDDEN_ENTRY = "[Desktop Entry]\nType=Application\nName=Hidden\nExec=true\nHidden=true\n"
LOG_OUT_SECONDS = 30
MAGENTA = (255, 0, 255)


class MatePanel(Host):
    """The parts of the desktop, without session management."""

    shows_labels = True

    def __init__(self, desktop: Desktop, scale: int = 1) -> None:
        super().__init__(desktop)
        self.scale = scale

    @property
    def bar(self) -> Rect:
        return Rect(0, 0, self.desktop.screen.size[0], BAR_HEIGHT * self.scale)

    def start(self) -> None:
        # The scale is what the settings daemon has the session manager tell programs.
        scaling = {"QT_SCALE_FACTOR": str(self.scale), "QT_FONT_DPI": "96"}
        self.environment = {"XDG_CURRENT_DESKTOP": "MATE", **scaling}
        self._write_settings(SETTINGS % self.scale)
        self._start_session()
        super().start()
        self._show_handle()

    def start_bar(self) -> None:
        self._launch("mate-panel", ["mate-panel"])

    def _show_handle(self) -> None:
        """The notification area's comes in some starts with the bar, in others with the first item, and stays."""
        with Neighbour(self, "first-item", MAGENTA):
            pass

    def _start_session(self) -> None:
        self._launch("mate-settings-daemon", ["mate-settings-daemon"])
        wait_until(10, "the settings daemon", lambda: self.desktop.bus.has(SETTINGS_DAEMON))
        self._launch("marco", ["marco", "--no-composite"])
        wait_until(5, "the window manager", lambda: has_window_manager(self.desktop))


class MateSession(MatePanel):
    """With session management, which starts the parts."""

    tray_seconds = 20
    _has_ended_bar = False

    def _start_session(self) -> None:
        self._keep_others_out()
        self._launch("mate-session", ["mate-session"])
        wait_until(10, "the window manager", lambda: has_window_manager(self.desktop))

    def _keep_others_out(self) -> None:
        """Programs of other packages that start at login, some with an item in the tray."""
        for entry in AUTOSTART.glob("*.desktop"):
            if not entry.name.startswith(DAEMON):
                self.desktop.write(self.desktop.configuration / "autostart" / entry.name, HIDDEN_ENTRY)

    def start_bar(self) -> None:
        """The session has started it; it does not start another, because the bar never registers with it here."""
        if self._has_ended_bar:
            super().start_bar()

    def stop_bar(self) -> None:
        self._end_bar(signal.SIGTERM)

    def kill_bar(self) -> None:
        self._end_bar(signal.SIGKILL)

    def log_out(self) -> None:
        """Saves the session and ends it. `start` logs in again."""
        without_question = GLib.Variant("(u)", (1,))
        self.desktop.bus.call(SESSION, "/" + SESSION.replace(".", "/"), SESSION, "Logout", without_question)
        self._processes.pop().status(LOG_OUT_SECONDS)

    def saved_programs(self) -> list[str]:
        """The commands that the session starts when it is restored."""
        entries = self.desktop.configuration.glob("mate-session/saved-session/*.desktop")
        return [command for entry in entries for command in re.findall("^Exec=(.*)$", entry.read_text(), re.MULTILINE)]

    def _end_bar(self, number: signal.Signals) -> None:
        self._has_ended_bar = True
        os.kill(self.desktop.bus.process_of(BAR), number)
        wait_until(10, "the tray's end", lambda: not self.has_tray())
