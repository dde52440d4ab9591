"""What Orca says of the panel. Values change all the time and are written as VALUE here."""

import re
import time
from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.host import NoBar
from driver.program import Panel, Program
from driver.screen_reader import ScreenReader
from driver.waiting import wait_until

REFRESH_SECONDS = 3
KEYS = "Enter: Show in tray. Delete: Hide."
PINNED = "Showing this key in the tray. sp78 • °C. Enter: Remove from tray. Delete: Hide."
ABOUT = "Tray sensor reader for Linux PCs and for Macs that run Linux."


class TestScreenReader:
    @pytest.fixture(autouse=True)
    def _open(
        self, request: pytest.FixtureRequest, desktop: Desktop, host: NoBar, program: Program, panel: Panel
    ) -> Iterator[None]:
        self.desktop = desktop
        program.prefer(KelvinbarMenuBarKeys="TC0P")
        with ScreenReader(desktop, host.environment) as self.reader:
            program.start()
            program.start_again()
            panel.wait_open()
            panel.wait_focus()
            yield
            transcript = desktop.artefact(f"{request.node.name}.txt")
            transcript.write_text("\n".join(self.reader.transcript()) + "\n")

    def said(self, last: str) -> list[str]:
        """What is said from the last question to this."""
        said: list[str] = []

        def has_come() -> bool:
            said.extend(re.sub(r"[0-9.]+°", "VALUE", text) for text in self.reader.said())
            return last in said

        wait_until(10, last, has_come, seen=lambda: said)
        return said

    def press(self, *keys: str) -> None:
        self.desktop.screen.type_key(*keys)

    def test_a_row_is_its_sensor_then_its_value_its_place_and_what_the_keys_do(self) -> None:
        self.said("Kelvinbar panel.")
        self.press("Down")
        first = f"VALUE, 1 of 88. {PINNED}"
        assert self.said(first)[-2:] == ["CPU Proximity.", first]
        self.press("Down")
        second = f"VALUE, 2 of 88. sp78 • °C. {KEYS}"
        assert self.said(second) == ["CPU Package.", second]

    def test_a_refresh_says_nothing_of_the_row_with_the_keyboard(self) -> None:
        self.press("Down")
        self.said(f"VALUE, 1 of 88. {PINNED}")
        time.sleep(3 * REFRESH_SECONDS)
        assert self.reader.said() == []

    def test_hiding_a_row_is_told_and_then_the_row_that_follows(self) -> None:
        self.press("Down")
        self.said(f"VALUE, 1 of 88. {PINNED}")
        self.press("Delete")
        following = f"VALUE, 1 of 87. sp78 • °C. {KEYS}"
        assert self.said(following) == ["notification Hidden: CPU Proximity.", "CPU Package.", following]

    def test_about_is_told_when_it_opens(self) -> None:
        self.press("Tab")
        self.said("About push button.")
        self.press("Return")
        assert "About Kelvinbar dialog" in " ".join(self.said(ABOUT))
