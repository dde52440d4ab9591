"""Pictures of the screen: keeping them, and finding what is in them."""

import re
import subprocess
from collections import Counter
from collections.abc import Callable, Sequence
from pathlib import Path

from driver.geometry import Rect
from driver.waiting import wait_until

Pixel = tuple[int, int, int]
Pixmap = tuple[int, int, Sequence[int]]  # width, height and bytes of the pixels: opacity, red, green, blue
Columns = tuple[int, int] | None  # the first and the last of a row

SIMILAR = 30  # shells dim icons

STEADY_LOOKS = 8
STEADY_PIXELS = 6  # digits differ in width by less
STEADY_SECONDS = 10


class Picture:
    """A part of the screen. Coordinates are those of the whole screen."""

    def __init__(self, area: Rect, pixels: bytes) -> None:
        self.area = area
        self._pixels = pixels

    def colors(self, area: Rect) -> Counter[Pixel]:
        """How many pixels have each colour."""
        rows = (self._row(y) for y in range(area.y, area.bottom))
        columns = range(3 * (area.x - self.area.x), 3 * (area.right - self.area.x), 3)
        return Counter(tuple(row[at : at + 3]) for row in rows for at in columns)

    def box_of(self, color: Pixel) -> Rect | None:
        """The smallest rectangle around all pixels of about this colour. None if there is no such pixel."""
        return self._box(lambda y: _columns_of(color, self._row(y)))

    def box_of_difference(self, other: "Picture") -> Rect | None:
        """The smallest rectangle around all pixels that are not as in the other picture of the same place."""
        return self._box(lambda y: _columns_that_differ(self._row(y), other._row(y)))

    def _row(self, y: int) -> bytes:
        start = 3 * self.area.width * (y - self.area.y)
        return self._pixels[start : start + 3 * self.area.width]

    def _box(self, columns_of_row: Callable[[int], Columns]) -> Rect | None:
        rows = {y: columns for y in range(self.area.y, self.area.bottom) if (columns := columns_of_row(y))}
        if not rows:
            return None
        left = min(first for first, _ in rows.values())
        right = max(last for _, last in rows.values())
        return Rect(self.area.x + left, min(rows), right - left + 1, max(rows) - min(rows) + 1)


def _columns_of(color: Pixel, row: bytes) -> Columns:
    ranges = [(max(part - SIMILAR, 0), min(part + SIMILAR, 255)) for part in color]
    pattern = b"".join(b"[\\x%02x-\\x%02x]" % bounds for bounds in ranges)
    overlapping = re.finditer(b"(?=%s)" % pattern, row, re.DOTALL)
    found = [match.start() // 3 for match in overlapping if match.start() % 3 == 0]
    return (found[0], found[-1]) if found else None


def _columns_that_differ(row: bytes, other: bytes) -> Columns:
    if row == other:
        return None
    found = [at // 3 for at in range(len(row)) if row[at] != other[at]]
    return found[0], found[-1]


def wait_steady(what: str, find_box: Callable[[], Rect | None]) -> Rect:
    """The place of something on the screen, once it is there and has stopped to move."""
    boxes: list[Rect | None] = []

    def is_steady() -> bool:
        boxes.append(find_box())
        latest = boxes[-STEADY_LOOKS:]
        return len(latest) == STEADY_LOOKS and None not in latest and _are_close(latest)

    wait_until(STEADY_SECONDS, f"{what} on the screen, at one place", is_steady)
    return boxes[-1]


def _are_close(boxes: list[Rect]) -> bool:
    edges = zip(*((box.x, box.right, box.y, box.bottom) for box in boxes))
    return all(max(edge) - min(edge) <= STEADY_PIXELS for edge in edges)


def background_of(colors: Counter[Pixel]) -> Pixel:
    """It has the most pixels."""
    return colors.most_common(1)[0][0]


def text_color_of(colors: Counter[Pixel]) -> Pixel:
    """Of text without an outline: it has the most pixels after the background."""
    background = background_of(colors)
    return next(color for color, _ in colors.most_common() if not is_about(color, background))


def ink_of(icon: list[Pixmap]) -> Pixel:
    """Of a number that is drawn into an icon: the colour of its opaque pixels. The outline lets the bar through.

    The outline must not count when the number is compared with the bar: it makes ink of any colour look legible.
    """
    _, _, pixels = icon[-1]
    opaque = Counter(tuple(pixels[at + 1 : at + 4]) for at in range(0, len(pixels), 4) if pixels[at] == 255)
    return opaque.most_common(1)[0][0]


def is_about(color: Pixel, other: Pixel) -> bool:
    return all(abs(part - of_other) <= SIMILAR for part, of_other in zip(color, other))


def contrast(color: Pixel, other: Pixel) -> float:
    """From 1 to 21, as accessibility guidelines count it."""
    darker, lighter = sorted((_luminance(color), _luminance(other)))
    return (lighter + 0.05) / (darker + 0.05)


def _luminance(color: Pixel) -> float:
    linear = [((c / 255 + 0.055) / 1.055) ** 2.4 if c > 10 else c / 255 / 12.92 for c in color]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def picture_of(display: str, area: Rect) -> Picture:
    crop = f"{area.width}x{area.height}+{area.x}+{area.y}"
    command = ["import", "-display", display, "-window", "root", "-crop", crop, "-depth", "8", "rgb:-"]
    pixels = subprocess.run(command, check=True, capture_output=True, timeout=20).stdout
    assert len(pixels) == 3 * area.width * area.height, f"{crop} is not on the screen"
    return Picture(area, pixels)


def keep_picture(display: str, file: Path) -> None:
    subprocess.run(["import", "-display", display, "-window", "root", file], check=True, timeout=20)
