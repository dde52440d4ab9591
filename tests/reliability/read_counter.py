"""Counts how often a file is read, as the kernel reports it (inotify)."""

import ctypes
import os
import struct
import threading
from pathlib import Path

IN_ACCESS = 0x1
IN_CLOEXEC = 0o2000000
EVENT = struct.Struct("iIII")  # watch, mask, cookie, length of the name
READ_BYTES = 65536


class ReadCounter:
    """Counts from its creation on, until the process ends. Reads that follow one another at once may count as one."""

    def __init__(self, file: Path) -> None:
        library = ctypes.CDLL(None, use_errno=True)
        self._descriptor = library.inotify_init1(IN_CLOEXEC)
        watch = library.inotify_add_watch(self._descriptor, os.fsencode(file), IN_ACCESS)
        assert watch >= 0, os.strerror(ctypes.get_errno())
        self.reads = 0
        threading.Thread(target=self._count, daemon=True).start()

    def _count(self) -> None:
        while True:
            self.reads += len(os.read(self._descriptor, READ_BYTES)) // EVENT.size
