"""What the trays are looked at with. The outline around a drawn number must not make it look legible."""

from collections import Counter

import pytest

from driver.picture import Pixel, Pixmap, background_of, contrast, ink_of, text_color_of
from tray_contract import LEGIBLE_CONTRAST

WHITE = (255, 255, 255)
BLACK = (0, 0, 0)
DARK_INK = (24, 24, 24)
DARK_BARS = [BLACK, (42, 46, 50), (85, 85, 85)]
LIGHT_BARS = [WHITE, (246, 245, 244), (207, 210, 211)]

OPAQUE = 255
OUTLINE_OPACITY = 190


def number(ink: Pixel) -> list[Pixmap]:
    """An icon with more outline than ink, as small numbers have."""
    outline = BLACK if ink == WHITE else WHITE
    pixels = bytes((OPAQUE, *ink)) * 24 + bytes((OUTLINE_OPACITY, *outline)) * 40 + bytes(4) * 36
    return [(10, 10, pixels)]


def legibility(ink: Pixel, bar: Pixel) -> float:
    return contrast(ink_of(number(ink)), bar)


@pytest.mark.parametrize("bar", DARK_BARS)
def test_on_a_dark_bar_only_light_ink_is_legible(bar: Pixel) -> None:
    assert legibility(WHITE, bar) >= LEGIBLE_CONTRAST
    assert legibility(DARK_INK, bar) < LEGIBLE_CONTRAST


@pytest.mark.parametrize("bar", LIGHT_BARS)
def test_on_a_light_bar_only_dark_ink_is_legible(bar: Pixel) -> None:
    assert legibility(DARK_INK, bar) >= LEGIBLE_CONTRAST
    assert legibility(WHITE, bar) < LEGIBLE_CONTRAST


def test_the_background_has_the_most_pixels_and_text_the_most_of_what_is_not_like_it() -> None:
    colors = Counter({(250, 250, 250): 400, (246, 245, 244): 90, DARK_INK: 60, (128, 128, 128): 20})
    assert background_of(colors) == (250, 250, 250)
    assert text_color_of(colors) == DARK_INK


def test_contrast_is_that_of_the_guidelines_in_either_order() -> None:
    assert contrast(BLACK, WHITE) == contrast(WHITE, BLACK) == pytest.approx(21)
    assert contrast((119, 119, 119), WHITE) == pytest.approx(4.48, abs=0.01)
