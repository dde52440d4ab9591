"""A peer on a bus that keeps to no manners: it sends what it likes, as fast as it can."""

import os
import socket
import threading
import time

from gi.repository import Gio, GLib

SERIAL_PLACE = 8  # of the serial number in a message's header
BATCH_SECONDS = 0.01
READ_BYTES = 1 << 20


class RawPeer:
    """A connection to a bus without a library in between. Reads replies only to throw them away."""

    def __init__(self, address: str) -> None:
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(address.removeprefix("unix:path="))
        self._socket.sendall(b"\0AUTH EXTERNAL " + str(os.geteuid()).encode().hex().encode() + b"\r\n")
        assert self._socket.recv(100).startswith(b"OK"), "the bus refuses the peer"
        self._socket.sendall(b"BEGIN\r\n")
        self._serial = 0
        self.received = 0
        threading.Thread(target=self._discard, daemon=True).start()
        self.send(method_call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "Hello"))

    def close(self) -> None:
        self._socket.close()

    def send(self, message: bytes, times: int = 1) -> None:
        copies = bytearray()
        for _ in range(times):
            self._serial += 1
            copies += message[:SERIAL_PLACE]
            copies += self._serial.to_bytes(4, "little")
            copies += message[SERIAL_PLACE + 4 :]
        self._socket.sendall(copies)

    def flood(self, message: bytes, a_second: int, seconds: float) -> int:
        """Sends at this rate, or as fast as the bus takes it. Returns how many were sent."""
        start = time.monotonic()
        sent = 0
        while (elapsed := time.monotonic() - start) < seconds:
            due = int(elapsed * a_second) - sent
            if due > 0:
                self.send(message, due)
                sent += due
            time.sleep(BATCH_SECONDS)
        return sent

    def _discard(self) -> None:
        try:
            while data := self._socket.recv(READ_BYTES):
                self.received += len(data)
        except OSError:
            pass  # closed


def method_call(service: str, path: str, interface: str, method: str, arguments: GLib.Variant | None = None) -> bytes:
    """The bytes of a call. Its serial number is set when it is sent."""
    message = Gio.DBusMessage.new_method_call(service, path, interface, method)
    if arguments is not None:
        message.set_body(arguments)
    message.set_serial(1)
    return message.to_blob(Gio.DBusCapabilityFlags.NONE)
