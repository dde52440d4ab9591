"""The session bus, and the status items on it."""

from gi.repository import Gio, GLib

from driver.picture import Pixmap

CALL_MILLISECONDS = 3000

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
ITEM_PATH = "/StatusNotifierItem"
MENU = "com.canonical.dbusmenu"


class Bus:
    """A connection to one session bus."""

    def __init__(self, address: str) -> None:
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self._connection.set_exit_on_close(False)

    def close(self) -> None:
        self._connection.close_sync(None)

    def call(self, service: str, path: str, interface: str, method: str, arguments: GLib.Variant | None = None):
        """The reply as plain values. Raises GLib.Error."""
        no_start = Gio.DBusCallFlags.NO_AUTO_START
        reply = self._connection.call_sync(
            service, path, interface, method, arguments, None, no_start, CALL_MILLISECONDS, None
        )
        return reply.unpack()

    def own(self, name: str) -> None:
        self._ask_bus("RequestName", GLib.Variant("(su)", (name, 0)))

    def emit(self, path: str, interface: str, signal: str, arguments: GLib.Variant) -> None:
        self._connection.emit_signal(None, path, interface, signal, arguments)
        self._connection.flush_sync(None)

    def property(self, service: str, path: str, interface: str, name: str):
        arguments = GLib.Variant("(ss)", (interface, name))
        return self.call(service, path, "org.freedesktop.DBus.Properties", "Get", arguments)[0]

    def set_property(self, service: str, path: str, interface: str, name: str, value: GLib.Variant) -> None:
        arguments = GLib.Variant("(ssv)", (interface, name, value))
        self.call(service, path, "org.freedesktop.DBus.Properties", "Set", arguments)

    def has(self, name: str) -> bool:
        return self._ask_bus("NameHasOwner", GLib.Variant("(s)", (name,)))

    def process_of(self, name: str) -> int | None:
        try:
            return self._ask_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))
        except GLib.Error:
            return None

    def registered_items(self) -> list["Item"]:
        """The items that the watcher knows. None without a watcher."""
        try:
            names = self.property(WATCHER, "/StatusNotifierWatcher", WATCHER, "RegisteredStatusNotifierItems")
        except GLib.Error:
            return []
        return [Item(self, *_service_and_path(name)) for name in names]

    def registered_item_of(self, pid: int) -> "Item | None":
        return next((item for item in self.registered_items() if self.process_of(item.service) == pid), None)

    def exported_item_of(self, pid: int) -> "Item | None":
        """The item of this process, known to a watcher or not."""
        for name in self._ask_bus("ListNames"):
            if name.startswith(":") and self.process_of(name) == pid:
                item = Item(self, name, ITEM_PATH)
                if item.exists():
                    return item
        return None

    def _ask_bus(self, method: str, arguments: GLib.Variant | None = None):
        return self.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", method, arguments)[0]


class Item:
    """A status item: where it is on the bus, and what it tells trays."""

    def __init__(self, bus: Bus, service: str, path: str) -> None:
        self.service = service
        self._bus = bus
        self._path = path

    def exists(self) -> bool:
        try:
            return bool(self.property("Id"))
        except GLib.Error:
            return False

    def property(self, name: str):
        return self._bus.property(self.service, self._path, ITEM, name)

    def label(self) -> str:
        return self.property("XAyatanaLabel")

    def icon(self) -> list[Pixmap]:
        """In each size."""
        return self.property("IconPixmap")

    def menu(self) -> dict[int, str]:
        """The texts of the menu's entries by their ids, in their order; a separator's text is empty."""
        arguments = GLib.Variant("(iias)", (0, -1, []))
        _, (_, _, entries) = self._bus.call(self.service, self.property("Menu"), MENU, "GetLayout", arguments)
        return {entry_id: properties.get("label", "") for entry_id, properties, _ in entries}

    def choose(self, text: str) -> None:
        """Chooses the first entry whose text begins with this, as a host does."""
        entry_id = next((entry_id for entry_id, entry in self.menu().items() if entry.startswith(text)), None)
        assert entry_id is not None, f"no entry {text} in {self.menu()}"
        arguments = GLib.Variant("(isvu)", (entry_id, "clicked", GLib.Variant("s", ""), 0))
        self._bus.call(self.service, self.property("Menu"), MENU, "Event", arguments)


def _service_and_path(name: str) -> tuple[str, str]:
    """Watchers list a bus name; most add the item's path, some with "@" in between."""
    service, slash, path = name.partition("/")
    return service.rstrip("@"), slash + path or ITEM_PATH
