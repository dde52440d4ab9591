"""Sensors that come and go: a folder that programs see as /sys."""

import os
import shlex
import shutil
import subprocess
from collections.abc import Sequence
from functools import cache
from pathlib import Path

import pytest

from driver.desktop import Desktop
from driver.program import Program

ENTER_NAMESPACE = ("unshare", "--mount")
ENTER_NAMESPACE_AS_USER = ("unshare", "--user", "--map-current-user", "--keep-caps", "--mount")

CONTROLLER = "applesmc"


def own_mounts() -> Sequence[str]:
    """Starts a command with mounts of its own. Needs the right to mount, or user namespaces."""
    return ENTER_NAMESPACE if os.geteuid() == 0 else ENTER_NAMESPACE_AS_USER


@cache
def may_mount() -> bool:
    return subprocess.run([*own_mounts(), "mount", "--bind", "/sys", "/sys"], capture_output=True).returncode == 0


def skip_unless_mountable() -> None:
    """Skips the test where nothing can be mounted, as in many containers."""
    if not may_mount():
        pytest.skip("this user may not mount folders here")


class SensorTree:
    """The folder, and a place beside it where chips are built before they appear at once."""

    def __init__(self, folder: Path) -> None:
        """Skips the test where nothing can be mounted."""
        skip_unless_mountable()
        self._root = folder / "sys"
        self._chips = self._root / "class/hwmon"
        self._workshop = folder / "workshop"
        self._chips.mkdir(parents=True)
        self._workshop.mkdir()

    def under(self, command: Sequence[str]) -> list[str]:
        """The command over this tree, as the same process."""
        mounts = [f"mount --bind {shlex.quote(str(folder))} {place} && " for folder, place in self._mounts()]
        return [*own_mounts(), "sh", "-c", "".join(mounts) + 'exec "$@"', "sh", *command]

    def plug(self, chip: str, temperatures: Sequence[float]) -> None:
        """Adds a chip with these temperatures, in °C."""
        entry = self._workshop / chip
        entry.mkdir()
        (entry / "name").write_text(f"{chip}\n")
        for number, temperature in enumerate(temperatures, 1):
            (entry / f"temp{number}_input").write_text(f"{round(1000 * temperature)}\n")
        entry.rename(self._chips / chip)

    def write(self, path: str, text: str) -> None:
        """Writes a file below /sys."""
        file = self._root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(f"{text}\n")

    def link(self, path: str, target: str) -> None:
        """Makes a link below /sys."""
        link = self._root / path
        link.parent.mkdir(parents=True, exist_ok=True)
        link.symlink_to(target)

    def plug_controller(self, key: str, temperature: float) -> None:
        """Adds an Apple computer's controller with one key. Its data stays that of the key, whichever is selected."""
        entry = self._workshop / CONTROLLER
        entry.mkdir()
        files = {"name": CONTROLLER, "key_count": "1", "key_at_index": "0", "key_at_index_name": key}
        files |= {"key_at_index_type": "sp78", "key_at_index_data_length": "2"}
        for name, text in files.items():
            (entry / name).write_text(f"{text}\n")
        entry.rename(self._chips / CONTROLLER)
        self.set_controller(temperature)

    def set_controller(self, temperature: float) -> None:
        """As a number with eight binary places."""
        data = round(256 * temperature).to_bytes(2, "big", signed=True)
        (self._chips / CONTROLLER / "key_at_index_data").write_bytes(data)

    def unplug(self, chip: str) -> None:
        """Files that are still open become empty, as those of the kernel fail."""
        entry = (self._chips / chip).rename(self._workshop / f"{chip}.gone")
        for file in entry.iterdir():
            file.write_text("")
        shutil.rmtree(entry)

    def set(self, chip: str, temperature: float) -> None:
        self.file(chip).write_text(f"{round(1000 * temperature)}\n")

    def file(self, chip: str) -> Path:
        """What a program reads for the first temperature."""
        return self._chips / chip / "temp1_input"

    def chips(self) -> frozenset[str]:
        return frozenset(entry.name for entry in self._chips.iterdir())

    def has(self, chip: str) -> bool:
        return (self._chips / chip).exists()

    def _mounts(self) -> list[tuple[Path, str]]:
        return [(self._root, "/sys")]


class ConfiguredTree(SensorTree):
    """Chips of which programs read one through libsensors, since there is something to compute.

    The library wants the kernel's own /sys, so only the classes are replaced. What it adds is too little to be shown.
    """

    def __init__(self, folder: Path) -> None:
        super().__init__(folder)
        self._configuration = folder / "configuration"
        self._configuration.mkdir()
        (self._configuration / "all").write_text('chip "slow-*"\n    compute temp1 @+0.001, @-0.001\n')

    def _mounts(self) -> list[tuple[Path, str]]:
        return [(self._root / "class", "/sys/class"), (self._configuration, "/etc/sensors.d")]


class SensorProgram(Program):
    """kelvinbar over a tree."""

    def __init__(self, file: Path, desktop: Desktop, tree: SensorTree, variables: Sequence[str] = ()) -> None:
        """`variables`, as NAME=value, are for the program alone."""
        super().__init__(file, desktop)
        self.command = tree.under(["env", *variables, str(file)])

    def prefer(self, **preferences: str) -> None:
        lines = [f"{name}={value}\n" for name, value in preferences.items()]
        self._desktop.write(self._desktop.configuration / "kelvinbar/kelvinbar.conf", "[General]\n" + "".join(lines))
