"""A watcher of status items that has no host: it accepts items, and nothing shows them."""

from gi.repository import Gio, GLib

NAME = "org.kde.StatusNotifierWatcher"
INTERFACE = """<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
  <signal name="StatusNotifierHostRegistered"/>
</interface></node>"""

items = []


def answer(_connection, sender, _path, _interface, method, arguments, invocation):
    if method == "RegisterStatusNotifierItem":
        name = arguments.unpack()[0]
        items.append(sender + name if name.startswith("/") else name + "/StatusNotifierItem")
    invocation.return_value(None)


def value(_connection, _sender, _path, _interface, name):
    return {
        "RegisteredStatusNotifierItems": GLib.Variant("as", items),
        "IsStatusNotifierHostRegistered": GLib.Variant("b", False),
        "ProtocolVersion": GLib.Variant("i", 0),
    }[name]


def main():
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    bus.register_object("/StatusNotifierWatcher", interface, answer, value, None)
    Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, None, None)
    GLib.MainLoop().run()


main()
