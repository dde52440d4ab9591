"""Cinnamon, with only its trays, at the right end of the bottom bar. Status items come to it through a watcher."""

from driver.desktop import Desktop
from driver.geometry import Rect
from driver.hosts.host import PANEL_SHADOW, Host, has_window_manager
from driver.waiting import wait_until

WATCHER_PROGRAM = "/usr/libexec/xapps/sn-watcher/xapp-sn-watcher"
BAR_HEIGHT = 40

SETTINGS = f"""[org/cinnamon]
enabled-applets=['panel1:right:0:systray@cinnamon.org:0', 'panel1:right:1:xapp-status@cinnamon.org:1']
next-applet-id=2
panels-enabled=['1:0:bottom']
panels-height=['1:{BAR_HEIGHT}']
desktop-effects=false
[org/cinnamon/desktop/interface]
scaling-factor=uint32 %d
"""


class Cinnamon(Host):
    shadow = PANEL_SHADOW
    tray_seconds = 20
    settle_seconds = 6

    def __init__(self, desktop: Desktop, scale: int = 1) -> None:
        super().__init__(desktop)
        self.scale = scale

    @property
    def bar(self) -> Rect:
        width, height = self.desktop.screen.size
        return Rect(0, height - BAR_HEIGHT * self.scale, width, BAR_HEIGHT * self.scale)

    def start(self) -> None:
        self.environment = {"XDG_CURRENT_DESKTOP": "X-Cinnamon"}
        self._write_settings(SETTINGS % self.scale)
        self._set_font_resolution()
        super().start()

    def start_bar(self) -> None:
        self._launch("cinnamon", ["cinnamon", "--replace"])
        wait_until(20, "the window manager", lambda: has_window_manager(self.desktop))
        self._launch("watcher", [WATCHER_PROGRAM])

    def stop_bar(self) -> None:
        super().stop_bar()
        self._processes.pop().stop()
