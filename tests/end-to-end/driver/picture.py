"""Pictures of the screen: keeping them, and finding what is in them."""

import re
import subprocess
from collections.abc import Callable
from pathlib import Path

from driver.geometry import Rect
from driver.waiting import wait_until

Pixel = tuple[int, int, int]
Columns = tuple[int, int] | None  # the first and the last of a row

STEADY_LOOKS = 8
STEADY_PIXELS = 6  # digits differ in width by less
STEADY_SECONDS = 10


class Picture:
    """A part of the screen. Coordinates are those of the whole screen."""

    def __init__(self, area: Rect, pixels: bytes) -> None:
        self.area = area
        self._pixels = pixels

    def colors(self, area: Rect) -> set[Pixel]:
        rows = (self._row(y) for y in range(area.y, area.bottom))
        columns = range(3 * (area.x - self.area.x), 3 * (area.right - self.area.x), 3)
        return {tuple(row[at : at + 3]) for row in rows for at in columns}

    def box_of(self, color: Pixel) -> Rect | None:
        """The smallest rectangle around all pixels of this colour. None if there is no such pixel."""
        return self._box(lambda y: _columns_of(bytes(color), self._row(y)))

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


def _columns_of(color: bytes, row: bytes) -> Columns:
    found = [match.start() // 3 for match in re.finditer(re.escape(color), row) if match.start() % 3 == 0]
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


def contrast(colors: set[Pixel]) -> float:
    """Between the lightest and the darkest of these colours, from 1 to 21, as accessibility guidelines count it."""
    luminances = [_luminance(color) for color in colors]
    return (max(luminances) + 0.05) / (min(luminances) + 0.05)


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
