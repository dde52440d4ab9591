"""MATE: its window manager, settings and panel, with a tray at the right end of the top bar.

The tray is the notification area. The indicator applet is not tried.
"""

from driver.geometry import Rect
from driver.hosts.host import BAR_HEIGHT, Host, has_window_manager
from driver.waiting import wait_until

LAYOUT = f"""[Toplevel top]
expand=true
orientation=top
size={BAR_HEIGHT}

[Object notification-area]
object-type=applet
applet-iid=NotificationAreaAppletFactory::NotificationArea
toplevel-id=top
position=0
panel-right-stick=true
locked=true
"""


class Mate(Host):
    @property
    def bar(self) -> Rect:
        return Rect(0, 0, self.desktop.screen.size[0], BAR_HEIGHT)

    def start(self) -> None:
        self.environment = {"XDG_CURRENT_DESKTOP": "MATE"}
        self._launch("marco", ["marco", "--no-composite"])
        wait_until(5, "the window manager", lambda: has_window_manager(self.desktop))
        self._launch("mate-settings-daemon", ["mate-settings-daemon"])
        super().start()

    def start_bar(self) -> None:
        self._launch("mate-panel", ["mate-panel"])
