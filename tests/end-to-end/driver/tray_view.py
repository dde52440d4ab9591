"""The tray as it is seen on the screen."""

from collections import Counter

from driver.geometry import Rect
from driver.hosts.host import Host
from driver.picture import Pixel, wait_steady
from driver.waiting import wait_until

EMPTY_SECONDS = 10


class TrayView:
    """Finds the item in a host's bar: it is what was not there before the program's start."""

    def __init__(self, host: Host) -> None:
        self._host = host
        self._screen = host.desktop.screen
        self._screen.point_at(host.bare_desktop_place)
        self._empty = self._screen.settled_picture(host.tray)

    def item_box(self) -> Rect | None:
        return self._screen.picture(self._host.tray).box_of_difference(self._empty)

    def wait_item(self) -> Rect:
        return wait_steady("the item", self.item_box)

    def wait_empty(self) -> None:
        wait_until(EMPTY_SECONDS, "a tray without the item", lambda: self.item_box() is None)

    def colors(self, box: Rect) -> Counter[Pixel]:
        """Of the item, of a label's right half, where no icon is, and of the bar above and below it."""
        bar = self._host.bar
        icon_width = box.width // 2 if self._host.shows_labels else 0
        return self._screen.picture(bar).colors(Rect(box.x + icon_width, bar.y, box.width - icon_width, bar.height))
