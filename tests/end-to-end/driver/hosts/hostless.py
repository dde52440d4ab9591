"""A watcher of status items that no host has registered with."""

import sys
from pathlib import Path

from driver.hosts.host import Host

SCRIPT = Path(__file__).parents[1] / "hostless_watcher.py"


class HostlessWatcher(Host):
    def start_bar(self) -> None:
        self._launch("hostless-watcher", [sys.executable, str(SCRIPT)])
