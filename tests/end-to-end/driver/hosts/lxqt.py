"""LXQt's panel at the bottom of the screen, with only a tray, at its right end."""

from driver.geometry import Rect
from driver.hosts.host import BAR_HEIGHT, Host

LAYOUT = f"""panels=panel1
[panel1]
plugins=spacer, statusnotifier
position=Bottom
panelSize={BAR_HEIGHT}
width=100
width-percent=true
[spacer]
type=spacer
expandable=true
[statusnotifier]
type=statusnotifier
"""


class LxqtPanel(Host):
    @property
    def bar(self) -> Rect:
        width, height = self.desktop.screen.size
        return Rect(0, height - BAR_HEIGHT, width, BAR_HEIGHT)

    def start(self) -> None:
        self._launch_window_manager()
        super().start()

    def start_bar(self) -> None:
        self.desktop.write(self.desktop.configuration / "lxqt/panel.conf", LAYOUT)
        self._launch("lxqt-panel", ["lxqt-panel"])
