"""A window of one colour that prints what it receives. usage: plain_window.py RRGGBB"""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gtk  # noqa: E402


def tell(text):
    print(text, flush=True)


def main(color):
    style = Gtk.CssProvider()
    style.load_from_data(f"window {{ background: #{color}; }}".encode())
    window = Gtk.Window(title="Plain window", default_width=400, default_height=300)
    window.get_style_context().add_provider(style, Gtk.STYLE_PROVIDER_PRIORITY_APPLICATION)
    window.connect("button-press-event", lambda *_: tell("pressed"))
    window.connect("focus-in-event", lambda *_: tell("focused"))
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    Gtk.main()


main(sys.argv[1])
