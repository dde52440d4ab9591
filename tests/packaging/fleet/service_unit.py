"""The systemd service that writes the readings for prometheus-node-exporter."""

import re
import shlex
import subprocess
from collections.abc import Sequence
from pathlib import Path

PROGRAM = re.compile(r"/\S*/kelvinbar-snapshot(?= )")


class ServiceUnit:
    """A service with a program of this build, reading what the options say."""

    def __init__(self, file: Path, snapshot: Path, *options: str) -> None:
        program = shlex.join([str(snapshot), *options])
        self.text = PROGRAM.sub(program, file.read_text(encoding="utf-8"))

    def values(self, setting: str) -> list[str]:
        return re.findall(rf"^{setting}=(.*)$", self.text, re.MULTILINE)

    def commands(self) -> list[list[str]]:
        return [shlex.split(value) for value in self.values("ExecStart") + self.values("ExecStartPost")]

    def run_in(self, folder: Path, *confinement: str) -> None:
        """Writes the readings as the service does, with the folder in place of the collector's."""
        umask = int(self.values("UMask")[0], 8)
        for command in self.commands():
            subprocess.run([*confinement, *command], cwd=folder, umask=umask, check=True, timeout=60)


def expressions(dashboard: dict) -> Sequence[str]:
    """All queries of a dashboard's panels."""
    return [target["expr"] for panel in dashboard["panels"] for target in panel["targets"]]
