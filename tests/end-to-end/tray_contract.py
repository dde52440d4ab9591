"""What must hold in every tray. A module of tests derives a class from these and provides the host."""

import re
import time

import pytest

from driver.assistive import Assistive
from driver.desktop import Desktop
from driver.geometry import Point, Rect
from driver.hosts.host import Host
from driver.picture import background_of, contrast, ink_of, is_about, text_color_of, wait_steady
from driver.program import Panel, Program
from driver.surroundings import Neighbour, PlainWindow
from driver.tray_view import TrayView
from driver.waiting import stays, wait_until

READINGS = r"[0-9.]+°  [0-9]+rpm"

LEGIBLE_CONTRAST = 3  # of large text and graphics, by the guidelines for accessible content
SMALLEST_ITEM = 8
NARROWEST_READING = 20
LARGEST_GAP = 2  # a line that the bar draws below itself
COMMANDS = ["Open Kelvinbar", "Refresh", "Copy", "About", "Quit"]  # among the menu's entries, in this order
MAGENTA = (255, 0, 255)
CYAN = (0, 255, 255)


class TrayTests:
    """Runs a program whose item is in the tray."""

    @pytest.fixture(autouse=True)
    def _start(
        self,
        desktop: Desktop,
        host: Host,
        tray_view: TrayView,
        program: Program,
        panel: Panel,
        assistive: Assistive,
    ) -> None:
        self.desktop, self.screen, self.host, self.tray = desktop, desktop.screen, host, tray_view
        self.program, self.panel, self.assistive = program, panel, assistive
        self.screen.point_at(self.host.bare_desktop_place)  # nested compositors draw the pointer
        self.tray.wait_empty()
        self.prefer()
        self.start_program()

    def prefer(self) -> None:
        self.program.prefer(KelvinbarMenuBarKeys="TC0P, F0Ac", KelvinbarSamplingRate="fast")

    def start_program(self) -> None:
        self.program.start()
        self.program.wait_for_tray()

    def activate_item(self) -> Rect:
        """Activates the item with the pointer, and returns its place."""
        box = self.tray.wait_item()
        self.host.activate(box.center)
        return box

    def open_panel(self) -> Rect:
        self.activate_item()
        return self.panel.wait_open()

    def beside_the_bar(self) -> Rect:
        """The screen without the bar, which is at the top or at the bottom."""
        screen, bar = self.screen.area, self.host.bar
        top = bar.bottom if bar.y == 0 else 0
        return Rect(0, top, screen.width, screen.height - bar.height)

    def wait_readings(self, pattern: str = READINGS) -> None:
        wait_until(5, f"{pattern} in the tray", lambda: re.fullmatch(pattern, self.program.label()), self.program.label)

    def place_of(self, name: str) -> Point:
        """Of a row or control, on the screen. The program tells places at scale 1."""
        place = Point(*(self.host.scale * part for part in self.assistive.place(name)))
        if not self.host.places_its_programs:
            return place
        frame = self.panel.frame()
        return Point(frame.x + place.x, frame.y + place.y)

    def legibility(self, box: Rect) -> float:
        """The contrast of the reading with the bar; 1 if the reading is not on the screen."""
        colors = self.tray.colors(box)
        ink = text_color_of(colors) if self.host.shows_labels else ink_of(self.program.item().icon())
        is_seen = any(is_about(color, ink) for color in colors)
        return contrast(ink, background_of(colors)) if is_seen else 1

    def pin_another_reading(self) -> None:
        self.open_panel()
        self.assistive.wait_shown("Core 2", "the row", limit=10)
        self.screen.double_click(self.place_of("Core 2"))
        self.wait_readings(READINGS + r"  [0-9.]+°")


class LookContract(TrayTests):
    """The item is seen. This much also holds at other scales."""

    def test_the_item_is_in_the_tray_and_legible(self) -> None:
        box = self.tray.wait_item()
        self.desktop.keep_picture("tray")
        assert self.host.bar.contains(box)
        assert min(box.size) >= SMALLEST_ITEM * self.host.scale
        assert self.legibility(box) >= LEGIBLE_CONTRAST


class PlaceContract(TrayTests):
    """The panel opens at the item. This much also holds at other scales."""

    def test_an_activation_opens_the_panel_at_the_item(self) -> None:
        box = self.activate_item()
        frame = self.panel.wait_open()
        time.sleep(1)  # it is drawn
        self.desktop.keep_picture("panel")
        assert self.screen.area.contains(frame)
        assert frame.x <= box.center.x <= frame.right, f"item at {box}, panel at {frame}"
        assert 0 <= gap(frame, self.host.bar) <= LARGEST_GAP * self.host.scale, f"panel at {frame}"


class FloatingContract(TrayTests):
    """For sessions that do not let windows choose their place."""

    def test_an_activation_opens_the_panel_floating_beside_the_bar(self) -> None:
        frame = self.open_panel()
        time.sleep(1)  # it is drawn
        self.desktop.keep_picture("panel")
        assert self.panel.windows.is_floating(self.panel.TITLE)
        assert self.beside_the_bar().contains(frame), f"panel at {frame}"


class PanelContract(TrayTests):
    """What opens and closes the panel."""

    def test_the_open_panel_has_the_focus_and_escape_closes_it(self) -> None:
        self.open_panel()
        self.panel.wait_focus()
        self.screen.type_key("Escape")
        self.panel.wait_closed("closing by Escape")
        self.open_panel()

    def test_a_second_activation_closes_the_panel(self) -> None:
        self.open_panel()
        self.activate_item()
        self.panel.wait_closed("closing by a second activation")
        assert stays(0.5, lambda: not self.panel.is_open()), "the second activation opened the panel again"

    def test_a_press_on_another_window_closes_the_panel_and_reaches_the_window(self) -> None:
        with PlainWindow(self.host) as window:
            self.open_panel()
            self.screen.press(window.visible_place())
            self.panel.wait_closed("closing by a press on another window")
            wait_until(2, "the press in the other window", window.was_pressed)

    def test_a_second_start_opens_the_panel(self) -> None:
        self.program.start_again()
        self.panel.wait_open("the panel by a second start")
        self.panel.wait_focus()
        self.screen.type_key("Escape")
        self.panel.wait_closed("closing it")

    def test_a_double_click_pins_a_reading(self) -> None:
        self.pin_another_reading()
        self.desktop.keep_picture("pinned")


class BareDesktopContract(TrayTests):
    """For sessions where a press on the bare desktop moves the focus, or is told to programs in spite of that."""

    def test_a_press_on_the_bare_desktop_closes_the_panel(self) -> None:
        self.open_panel()
        self.screen.press(self.host.bare_desktop_place)
        self.panel.wait_closed("closing by a press on the bare desktop")


class BarContract(TrayTests):
    """For sessions that tell programs of presses that do not move the focus."""

    def test_a_press_on_the_bar_closes_the_panel(self) -> None:
        self.open_panel()
        self.screen.press(self.host.empty_bar_place)
        self.panel.wait_closed("closing by a press on the bar")


class MenuContract(TrayTests):
    """The menu, with the pointer. This much also holds at other scales."""

    def test_the_menu_opens_and_its_first_entry_opens_the_panel(self) -> None:
        box = self.tray.wait_item()
        self.screen.point_at(box.center)  # a pointer that has not moved may be hidden
        self.screen.point_at(self.host.bare_desktop_place)
        before = self.screen.settled_picture(self.beside_the_bar())
        self.screen.press(box.center, self.host.menu_button)
        self.screen.point_at(self.host.bare_desktop_place)  # ends the tooltip
        menu = wait_steady("the menu", lambda: self.screen.picture(before.area).box_of_difference(before))
        self.desktop.keep_picture("menu")
        self.screen.press(Point(menu.center.x, menu.y + self.host.menu_entry_offset * self.host.scale))
        self.panel.wait_open("the panel by the menu")


class LabelContract(TrayTests):
    """For trays that show text beside the icon."""

    def test_another_pin_makes_the_item_wider(self) -> None:
        before = self.tray.wait_item()
        self.pin_another_reading()
        wait_until(5, "a wider item", lambda: self.tray.item_box().width >= before.width + NARROWEST_READING)
        self.desktop.keep_picture("two-pins")


class ItemContract(MenuContract):
    """The item as long as it lives."""

    def test_the_label_follows_the_readings_and_the_icon_where_no_label_is_shown(self) -> None:
        self.wait_readings()
        label, icon = self.program.label(), self.program.item().icon()
        wait_until(5, "another label", lambda: self.program.label() != label)
        if not self.host.shows_labels:
            wait_until(10, "another number in the icon", lambda: self.program.item().icon() != icon)

    def test_a_changed_reading_does_not_move_its_neighbours(self) -> None:
        """One neighbour is older than the item and sorted before it, the other one is younger and sorted after it."""
        self.program.finish()
        with Neighbour(self.host, "a-neighbour", MAGENTA) as older:
            self.start_program()
            self.wait_readings()
            with Neighbour(self.host, "z-neighbour", CYAN) as younger:
                self.expect_still_neighbours(older, younger)

    def expect_still_neighbours(self, *neighbours: Neighbour) -> None:
        time.sleep(2)  # a host may sort once more
        places = [neighbour.place() for neighbour in neighbours]
        labels = {self.program.label()}

        def has_changed_often() -> bool:
            labels.add(self.program.label())
            assert [neighbour.place() for neighbour in neighbours] == places
            return len(labels) > 3

        wait_until(20, "four different labels", has_changed_often)

    def test_the_menu_has_its_entries_under_stable_ids(self) -> None:
        self.wait_readings()
        before = self.program.item().menu()
        assert [text for text in before.values() if text in COMMANDS] == COMMANDS
        self.pin_another_reading()
        wait_until(3, "another entry", lambda: len(self.program.item().menu()) > len(before))
        assert commands_of(self.program.item().menu()) == commands_of(before)

    def test_an_item_older_than_the_tray_is_in_it(self) -> None:
        self.program.finish()
        self.host.stop_bar()
        self.program.start()
        self.host.start_bar()
        self.host.wait_for_tray()
        self.program.wait_for_tray()
        self.tray.wait_item()

    def test_the_item_is_there_after_five_restarts_of_the_host(self) -> None:
        """Which ends normally and by a crash in turn."""
        for restart in range(5):
            end_bar = self.host.kill_bar if restart % 2 else self.host.stop_bar
            end_bar()
            self.host.start_bar()
            self.host.wait_for_tray()
            self.program.wait_for_tray()
            self.tray.wait_item()
        self.wait_readings()
        self.open_panel()

    def test_the_doctor_finds_the_item_in_the_tray(self, own_program: Program) -> None:
        own_program.start()
        own_program.wait_for_tray()
        diagnosis = own_program.diagnosis("Tray")
        assert [finding for finding in diagnosis.values() if finding["state"] == "problem"] == []
        assert diagnosis["tray"]["found"].startswith("StatusNotifierItem; ")
        assert diagnosis["status item"]["found"].startswith("in the tray")

    def test_the_item_leaves_the_tray_with_the_program(self) -> None:
        self.tray.wait_item()
        self.program.finish()
        wait_until(3, "the item's end", lambda: not self.program.is_registered())
        self.screen.point_at(self.host.bare_desktop_place)  # nested compositors draw the pointer
        self.tray.wait_empty()


class TrayContract(LookContract, PlaceContract, PanelContract, BareDesktopContract, BarContract, ItemContract):
    """All of it."""


def commands_of(menu: dict[int, str]) -> dict[int, str]:
    return {entry_id: text for entry_id, text in menu.items() if text in COMMANDS}


def gap(frame: Rect, bar: Rect) -> int:
    """Between the panel and a bar at the top or at the bottom of the screen; negative if one covers the other."""
    return frame.y - bar.bottom if bar.y == 0 else bar.y - frame.bottom
