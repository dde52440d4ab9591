"""Every control of the panel, with pointer and keyboard, in the tray of Xfce's panel."""

import re
from collections.abc import Iterator

import pytest

from driver.assistive import Assistive
from driver.desktop import Desktop
from driver.geometry import Point
from driver.hosts.xfce import XfcePanel
from driver.program import Panel, Program
from driver.tray_view import TrayView
from driver.waiting import stays, wait_until

ONE_READING = r"[0-9.]+°"
TWO_READINGS = ONE_READING + "  " + ONE_READING

WIDTH, HEIGHT = Panel.SIZE
ABOUT = "Tray sensor reader for Linux PCs and for Macs that run Linux."
BARE_DESKTOP = Point(200, 600)
HIDE_BUTTON_FROM_RIGHT = 39
SPACE_ABOVE_AND_BELOW = 80  # of the highest panel
BAR_LINE = 2  # that the bar may draw below itself
AUTOSTART_ENTRY = "autostart/org.kelvinbar.Demo.desktop"


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[XfcePanel]:
    with XfcePanel(desktop) as host:
        yield host


class TestPanel:
    @pytest.fixture(autouse=True)
    def _open(
        self,
        desktop: Desktop,
        host: XfcePanel,
        tray_view: TrayView,
        program: Program,
        panel: Panel,
        assistive: Assistive,
    ) -> None:
        self.desktop, self.screen, self.bar, self.tray = desktop, desktop.screen, host.bar, tray_view
        self.program, self.panel, self.assistive = program, panel, assistive
        program.prefer(KelvinbarMenuBarKeys="TC0P")
        program.start()
        program.wait_for_tray()
        self.open_panel()

    def open_panel(self) -> None:
        self.screen.press(self.tray.wait_item().center)
        self.panel.wait_open()
        self.assistive.wait_shown("Core 1", "the rows", limit=10)

    def press(self, name: str) -> None:
        self.screen.press(self.assistive.place(name))

    def wait_label(self, pattern: str, what: str) -> None:
        wait_until(3, what, lambda: re.fullmatch(pattern, self.program.label()))

    def wait_preference(self, name: str, value: str) -> None:
        wait_until(3, f"{name}={value} in the preferences", lambda: self.program.preferences().get(name) == value)

    def is_highest(self) -> bool:
        """As high as the screen, less the bar, the line that it may draw below itself, and some space."""
        width, height = self.panel.frame().size
        most = self.screen.area.height - self.bar.height - SPACE_ABOVE_AND_BELOW
        return width == WIDTH and most - BAR_LINE <= height <= most

    def test_a_double_click_pins_a_reading_and_another_one_unpins_it(self) -> None:
        self.wait_label(ONE_READING, "one reading in the tray")
        self.screen.double_click(self.assistive.place("Core 2"))
        self.wait_label(TWO_READINGS, "two readings in the tray")
        self.assistive.wait_state("Core 2", "selected", "the mark of the row")
        self.desktop.keep_picture("pinned")
        self.screen.double_click(self.assistive.place("Core 2"))
        self.wait_label(ONE_READING, "one reading in the tray again")

    def test_two_slow_clicks_do_not_pin(self) -> None:
        self.wait_label(ONE_READING, "one reading in the tray")
        for _ in range(2):
            self.press("Core 3")
            assert stays(0.8, lambda: re.fullmatch(ONE_READING, self.program.label()))

    def test_the_button_hides_a_row_and_show_all_shows_it_again(self) -> None:
        row = self.assistive.place("Core 3")
        self.screen.press(Point(self.panel.frame().right - HIDE_BUTTON_FROM_RIGHT, row.y))
        self.assistive.wait_hidden("Core 3", "the row's end")
        self.wait_preference("KelvinbarHiddenKeys", "TC3C")
        self.desktop.keep_picture("hidden")
        self.press("ShowAll")
        self.assistive.wait_shown("Core 3", "the row again")
        self.desktop.keep_picture("shown-again")

    def test_the_height_changes_in_steps_between_its_limits(self) -> None:
        self.press("Decrease height")
        self.panel.wait_size(WIDTH, 610, "a lower panel")
        self.press("Decrease height")
        self.panel.wait_size(WIDTH, 560, "the lowest panel")
        self.press("Decrease height")
        assert stays(0.5, lambda: self.panel.has_size(WIDTH, 560))
        self.desktop.keep_picture("lowest")
        for _ in range(9):
            self.press("Increase height")
        wait_until(3, "the highest panel", self.is_highest)
        self.assistive.wait_shown("Height 1400", "the number")
        self.wait_preference("KelvinbarManualPopoverHeight", "1400")
        self.desktop.keep_picture("highest")
        self.press("Reset height")
        self.panel.wait_size(WIDTH, HEIGHT, "the standard height")

    def test_fast_samples_every_second_until_it_is_pressed_again(self) -> None:
        self.press("Fast")
        self.assistive.wait_state("Fast", "checked", "the mark")
        self.wait_preference("KelvinbarSamplingRate", "fast")
        self.desktop.keep_picture("fast")
        self.press("Fast")
        self.assistive.wait_no_state("Fast", "checked", "no mark")
        self.wait_preference("KelvinbarSamplingRate", "medium")

    def test_dynamic_is_as_high_as_the_readings_need(self) -> None:
        self.press("Dynamic")
        self.assistive.wait_state("Dynamic", "checked", "the mark")
        wait_until(3, "the dynamic height", self.is_highest)
        self.desktop.keep_picture("dynamic")
        self.press("Dynamic")
        self.assistive.wait_no_state("Dynamic", "checked", "no mark")
        self.panel.wait_size(WIDTH, HEIGHT, "the standard height")

    def test_login_starts_the_program_with_the_session(self) -> None:
        self.press("Login")
        self.assistive.wait_state("Login", "checked", "the mark")
        entry = (self.desktop.configuration / AUTOSTART_ENTRY).read_text()
        assert re.search("^Exec=.*kelvinbar-demo.*intel-notebook", entry, re.MULTILINE)
        self.desktop.keep_picture("login")
        self.press("Login")
        self.assistive.wait_no_state("Login", "checked", "no mark")

    def test_another_program_can_paste_the_copied_snapshot(self) -> None:
        self.press("Copy")
        wait_until(3, "a snapshot", lambda: "CPU Proximity" in self.pasted())
        snapshot = self.pasted()
        self.desktop.artefact("pasted.txt").write_text(snapshot)
        self.desktop.keep_picture("copied")
        assert snapshot.startswith("Kelvinbar")
        assert sum("\t" in line for line in snapshot.splitlines()) >= 50

    def pasted(self) -> str:
        return self.desktop.run(["xclip", "-o", "-selection", "clipboard"]).stdout

    def test_escape_closes_about_and_then_the_panel(self) -> None:
        self.open_about()
        self.desktop.keep_picture("about")
        self.screen.type_key("Escape")
        self.assistive.wait_hidden(ABOUT, "About's end")
        assert self.panel.is_open(), "Escape closed the panel under About"
        self.screen.type_key("Escape")
        self.panel.wait_closed("the panel's end")
        self.open_panel()

    def test_about_closes_with_the_panel(self) -> None:
        self.open_about()
        self.close_panel()
        self.open_panel()
        assert not self.assistive.shows(ABOUT), "About is still open"

    def open_about(self) -> None:
        self.press("About")
        self.assistive.wait_shown(ABOUT, "About")

    def test_copy_in_the_menu_does_not_need_the_panel(self) -> None:
        self.close_panel()
        self.program.item().choose("Copy")
        wait_until(3, "a snapshot by the menu", lambda: "CPU Proximity" in self.pasted())
        assert not self.panel.is_open()

    def test_open_in_the_menu_and_its_readings_never_close_the_panel(self) -> None:
        self.close_panel()
        self.program.item().choose("Open Kelvinbar")
        self.panel.wait_open("the panel by the menu")
        self.program.item().choose("Open Kelvinbar")
        self.program.item().choose("CPU Proximity")
        assert stays(0.5, self.panel.is_open), "the menu closed the panel"

    def test_about_in_the_menu_opens_the_panel_with_about(self) -> None:
        self.close_panel()
        self.program.item().choose("About")
        self.panel.wait_open("the panel by the menu")
        self.assistive.wait_shown(ABOUT, "About by the menu")
        self.desktop.keep_picture("about-by-menu")
        self.panel.wait_focus()
        self.screen.type_key("Escape")
        self.assistive.wait_hidden(ABOUT, "About's end")
        assert self.panel.is_open(), "Escape closed the panel under About"

    def close_panel(self) -> None:
        self.screen.press(BARE_DESKTOP)
        self.panel.wait_closed("the panel's end")

    def test_the_keyboard_alone_pins_hides_and_closes(self) -> None:
        self.panel.wait_focus()
        self.screen.type_key("Tab", "Tab", "Home", "Down", "Down")
        self.assistive.wait_state("Core 0", "focused", "the third row")
        self.screen.type_key("space")
        self.wait_label(TWO_READINGS, "two readings in the tray")
        self.screen.type_key("Delete")
        self.wait_label(ONE_READING, "one reading in the tray")
        self.assistive.wait_state("Core 1", "focused", "the next row")
        self.desktop.keep_picture("keyboard")
        self.screen.type_key(*["Tab"] * 6)
        self.assistive.wait_state("Login", "focused", "the sixth control below the list")
        self.screen.type_key("Escape")
        self.panel.wait_closed("closing by Escape")
        self.open_panel()
        assert not self.assistive.shows("Core 0"), "the hidden row is back"

    def test_quit_ends_the_program(self) -> None:
        self.press("Quit")
        self.program.wait()
        wait_until(3, "the item's end", lambda: not self.program.is_registered())
        self.desktop.keep_picture("quit")
