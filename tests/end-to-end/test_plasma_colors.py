"""The number in Plasma's tray while the colours of programs or of the panel change."""

from collections.abc import Iterator

import pytest

from driver.desktop import Desktop
from driver.geometry import Rect
from driver.hosts.plasma import Plasma
from driver.picture import background_of, contrast
from driver.waiting import wait_until
from tray_contract import LEGIBLE_CONTRAST, TrayTests

WHITE = (255, 255, 255)
BLACK = (0, 0, 0)


@pytest.fixture(scope="module")
def host(desktop: Desktop) -> Iterator[Plasma]:
    with Plasma(desktop) as host:
        yield host


class TestPlasmaColors(TrayTests):
    def test_the_number_is_legible_whatever_colours_are_chosen(self) -> None:
        """The theme called breeze-dark has a dark panel, and leaves programs light."""
        box = self.tray.wait_item()
        self.expect_legible(box, "dark-programs", ["plasma-apply-colorscheme", "BreezeDark"], is_dark=True)
        self.expect_legible(box, "light-programs", ["plasma-apply-colorscheme", "BreezeLight"], is_dark=False)
        self.expect_legible(box, "dark-panel", ["plasma-apply-desktoptheme", "breeze-dark"], is_dark=True)
        self.expect_legible(box, "light-panel", ["plasma-apply-desktoptheme", "default"], is_dark=False)

    def expect_legible(self, box: Rect, name: str, command: list[str], is_dark: bool) -> None:
        choice = self.desktop.run(command, self.host.environment)
        assert choice.returncode == 0, choice.stderr
        wait_until(10, f"a bar with {name}", lambda: self.has_dark_bar(box) == is_dark)
        wait_until(10, f"a legible number with {name}", lambda: self.legibility(box) >= LEGIBLE_CONTRAST)
        self.desktop.keep_picture(name)

    def has_dark_bar(self, box: Rect) -> bool:
        bar = background_of(self.tray.colors(box))
        return contrast(bar, WHITE) > contrast(bar, BLACK)
