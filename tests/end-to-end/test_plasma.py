"""The program in the tray of Plasma."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.hosts.plasma import Plasma
from driver.waiting import wait_until
from tray_contract import TrayContract


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Plasma]:
    with Plasma(desktop) as host:
        yield host


class TestPlasma(TrayContract):
    def test_an_entry_of_the_menu_lets_the_icon_show_the_readings_by_turns(self) -> None:
        """A fan's four digits are drawn less high than a temperature."""
        temperature = self.tray.wait_item()
        self.program.item().choose("Alternate Readings in Icon")
        wait_until(10, "the fan in the icon", lambda: self.tray.item_box().height <= temperature.height * 3 / 4)
        self.desktop.keep_picture("other-turn")
        wait_until(10, "the temperature again", lambda: self.tray.item_box().height >= temperature.height - 1)
