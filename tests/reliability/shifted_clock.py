"""Clocks that jump, for a program that is started with a preloaded library (ShiftedClock.cpp)."""

from pathlib import Path


class ShiftedClock:
    """Clocks that are right until they are shifted."""

    def __init__(self, library: Path, folder: Path) -> None:
        self._wall = folder / "wall-clock-shift"
        self._boot = folder / "boot-time-shift"
        # Of the program.
        self.variables = (
            f"LD_PRELOAD={library}",
            f"WALL_CLOCK_SHIFT_FILE={self._wall}",
            f"BOOT_TIME_SHIFT_FILE={self._boot}",
        )

    def shift_wall_clock(self, seconds: int) -> None:
        """Puts the wall clock that much ahead of the right time."""
        self._wall.write_text(str(seconds))

    def shift_boot_time(self, seconds: int) -> None:
        """Makes it that much later since the start of the machine, as after a sleep, in which timers stand still."""
        self._boot.write_text(str(seconds))
