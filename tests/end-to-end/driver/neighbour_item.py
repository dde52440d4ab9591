"""A status item of one colour, for the places beside the program's item. usage: neighbour_item.py ID RRGGBB"""

import os
import sys

from gi.repository import Gio, GLib

SIDE = 22
NAME = f"org.kde.StatusNotifierItem-{os.getpid()}-1"
WATCHER = "org.kde.StatusNotifierWatcher"
INTERFACE = """<node><interface name="org.kde.StatusNotifierItem">
  <property name="Id" type="s" access="read"/>
  <property name="Category" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconPixmap" type="a(iiay)" access="read"/>
  <signal name="NewIcon"/>
</interface></node>"""


def properties(item_id, color):
    pixels = bytes.fromhex("ff" + color) * SIDE**2
    return {
        "Id": GLib.Variant("s", item_id),
        "Category": GLib.Variant("s", "ApplicationStatus"),
        "Status": GLib.Variant("s", "Active"),
        "Title": GLib.Variant("s", item_id),
        "ItemIsMenu": GLib.Variant("b", False),
        "IconName": GLib.Variant("s", ""),
        "IconPixmap": GLib.Variant("a(iiay)", [(SIDE, SIDE, pixels)]),
    }


def main(item_id, color):
    values = properties(item_id, color)
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    bus.register_object("/StatusNotifierItem", interface, None, lambda *call: values[call[4]], None)
    Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, None, None)

    def register(*_):
        arguments = GLib.Variant("(s)", (NAME,))
        bus.call(WATCHER, "/StatusNotifierWatcher", WATCHER, "RegisterStatusNotifierItem", arguments, None, 0, -1)

    Gio.bus_watch_name_on_connection(bus, WATCHER, Gio.BusNameWatcherFlags.NONE, register, None)
    GLib.MainLoop().run()


main(*sys.argv[1:])
