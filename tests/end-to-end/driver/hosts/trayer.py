"""An XEmbed tray in the top left corner."""

from driver.geometry import Rect
from driver.hosts.host import Host
from driver.waiting import wait_until

WINDOW_CLASS = "kelvinbar-demo"


class Trayer(Host):
    bar = Rect(0, 0, 30, 26)

    def start(self) -> None:
        self._launch_window_manager()
        place = ["--edge", "top", "--align", "left", "--SetDockType", "true"]
        size = ["--widthtype", "pixel", "--width", "30", "--heighttype", "pixel", "--height", "26"]
        self._launch("trayer", ["trayer", *place, *size])
        wait_until(5, "the tray", self._owns_the_tray)

    def has_the_icon(self) -> bool:
        search = ["xdotool", "search", "--onlyvisible", "--class", WINDOW_CLASS]
        return self.desktop.run(search).stdout != ""

    def _owns_the_tray(self) -> bool:
        return "trayer" in self.desktop.run(["xwininfo", "-root", "-tree"]).stdout
