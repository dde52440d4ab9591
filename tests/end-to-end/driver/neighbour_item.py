"""A status item of one colour, for the places beside the program's item. usage: neighbour_item.py ID RRGGBB"""

import sys

from gi.repository import Gio, GLib

SIDE = 22
WATCHER = "org.kde.StatusNotifierWatcher"
INTERFACES = """<node><interface name="org.kde.StatusNotifierItem">
  <property name="Id" type="s" access="read"/>
  <property name="Category" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Menu" type="o" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconPixmap" type="a(iiay)" access="read"/>
  <signal name="NewIcon"/>
</interface><interface name="com.canonical.dbusmenu">
  <method name="GetLayout">
    <arg type="i" direction="in"/><arg type="i" direction="in"/><arg type="as" direction="in"/>
    <arg type="u" direction="out"/><arg type="(ia{sv}av)" direction="out"/>
  </method>
</interface></node>"""
EMPTY_MENU = GLib.Variant("(u(ia{sv}av))", (1, (0, {}, [])))


def properties(item_id, color):
    pixels = bytes.fromhex("ff" + color) * SIDE**2
    return {
        "Id": GLib.Variant("s", item_id),
        "Category": GLib.Variant("s", "ApplicationStatus"),
        "Status": GLib.Variant("s", "Active"),
        "Title": GLib.Variant("s", item_id),
        "Menu": GLib.Variant("o", "/StatusMenu"),  # GNOME shows no item without this
        "ItemIsMenu": GLib.Variant("b", False),
        "IconName": GLib.Variant("s", ""),
        "IconPixmap": GLib.Variant("a(iiay)", [(SIDE, SIDE, pixels)]),
    }


def main(item_id, color):
    values = properties(item_id, color)
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    item, menu = Gio.DBusNodeInfo.new_for_xml(INTERFACES).interfaces
    bus.register_object("/StatusNotifierItem", item, None, lambda *call: values[call[4]], None)
    bus.register_object("/StatusMenu", menu, lambda *call: call[-1].return_value(EMPTY_MENU), None, None)

    def register(*_):
        arguments = GLib.Variant("(s)", (bus.get_unique_name(),))
        bus.call(WATCHER, "/StatusNotifierWatcher", WATCHER, "RegisterStatusNotifierItem", arguments, None, 0, -1)

    Gio.bus_watch_name_on_connection(bus, WATCHER, Gio.BusNameWatcherFlags.NONE, register, None)
    GLib.MainLoop().run()


main(*sys.argv[1:])
