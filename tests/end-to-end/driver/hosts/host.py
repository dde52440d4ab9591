"""What a scenario knows of a host."""

import time
from collections.abc import Sequence

from driver.bus import WATCHER
from driver.desktop import Additions, Desktop
from driver.geometry import Point, Rect
from driver.processes import Process
from driver.waiting import wait_until
from driver.windows import Windows, XWindows

BAR_HEIGHT = 28
PANEL_SHADOW = 24


class Host:
    """A desktop with a tray in a bar. As a context it is started, and stopped in the end.

    `bar` is the place of the bar on the screen. `tray` is the part of it where items appear and nothing else changes.
    `environment` is what the session adds for its programs. `places_its_programs` tells that windows are where the
    session wants them, and do not know where that is.
    """

    tray_seconds: float = 10
    settle_seconds: float = 0  # from then until the bar is drawn as it stays
    scale = 1
    shadow = 0  # how far the panel's may reach; none without a compositor
    places_its_programs = False
    shows_labels = False  # beside the icon; elsewhere a reading is drawn into the icon
    menu_button = 3
    menu_entry_offset = 14  # from the top of the menu to its first entry

    def __init__(self, desktop: Desktop) -> None:
        self.desktop = desktop
        self.environment: dict[str, str | None] = {}
        self._processes: list[Process] = []

    def __enter__(self) -> "Host":
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_: object) -> None:
        self.stop()

    @property
    def bar(self) -> Rect:
        raise NotImplementedError

    @property
    def tray(self) -> Rect:
        return self.bar

    @property
    def empty_bar_place(self) -> Point:
        """A place of the bar where no button is."""
        return Point(self.bar.x + self.bar.width // 3, self.bar.center.y)

    @property
    def bare_desktop_place(self) -> Point:
        """A place that neither a window nor the panel covers."""
        return Point(200 * self.scale, 600 * self.scale)

    def start(self) -> None:
        """Starts the session and its bar. Returns when the tray accepts items, and looks as it will."""
        self.start_bar()
        self.wait_for_tray()
        time.sleep(self.settle_seconds)

    def start_bar(self) -> None:
        raise NotImplementedError

    def stop(self) -> None:
        """Ends what has been started, the last first."""
        while self._processes:
            self._processes.pop().stop()

    def kill_bar(self) -> None:
        """Ends the bar as a crash does. Returns when the tray is gone."""
        self._processes[-1].kill()
        self.stop_bar()

    def stop_bar(self) -> None:
        """Ends the bar with its tray. Returns when the tray is gone."""
        self._processes.pop().stop()
        wait_until(10, "the tray's end", lambda: not self.has_tray())

    def wait_for_tray(self) -> None:
        wait_until(self.tray_seconds, "the tray", self.has_tray)

    def has_tray(self) -> bool:
        return self.desktop.bus.has(WATCHER)

    def windows(self) -> Windows:
        return XWindows(self.desktop, self.environment)

    def activate(self, place: Point) -> None:
        """Does with the pointer what activates an item in this tray."""
        self.desktop.screen.press(place)

    def _launch(self, name: str, command: Sequence[str], environment: Additions | None = None) -> Process:
        self._processes.append(self.desktop.start(name, command, {**self.environment, **(environment or {})}))
        return self._processes[-1]

    def _write_settings(self, text: str) -> None:
        """Writes what programs read through GSettings."""
        self.desktop.write(self.desktop.configuration / "glib-2.0/settings/keyfile", text)

    def _set_font_resolution(self) -> None:
        """Tells programs the scale, as settings daemons do."""
        file = self.desktop.home / "resources"
        self.desktop.write(file, f"Xft.dpi: {96 * self.scale}\n")
        self.desktop.run(["xrdb", "-nocpp", "-merge", str(file)])

    def _launch_window_manager(self) -> None:
        """Xfce's, for desktops that are only a bar, or not even that."""
        self._launch("window-manager", ["xfwm4", "--compositor=off"])
        wait_until(5, "the window manager", lambda: has_window_manager(self.desktop))


def has_window_manager(desktop: Desktop) -> bool:
    return "window id" in desktop.run(["xprop", "-root", "-notype", "_NET_SUPPORTING_WM_CHECK"]).stdout


class NoBar(Host):
    """A window manager and nothing else."""

    def start(self) -> None:
        self._launch_window_manager()
