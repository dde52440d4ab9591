"""Others on the session bus: callers without manners, and a bus or a tray that ends."""

import random
import signal
import struct
import time
from collections.abc import Iterator
from pathlib import Path

import pytest
from gi.repository import GLib

from driver.bus import ITEM, ITEM_PATH, MENU, Bus, Item
from driver.desktop import Desktop
from driver.hosts.host import NoBar
from driver.hosts.hostless import HostlessWatcher
from driver.program import Panel, Program
from driver.waiting import wait_until
from driver.windows import XWindows
from footprint import footprint_of, forget_most
from raw_bus import RawPeer, method_call

HOSTILE_CALLS = {"quick": 1000, "night": 100_000}
CALLS_PER_SECOND = 300
HUGE_ROUNDS = {"quick": 1, "night": 50}
HUGE = 250_000  # ids: a megabyte
MANY_WORDS = 20_000
RESTARTS = {"quick": 2, "night": 20}
QUIT_SECONDS = 1

FLOOD_SECONDS = {"quick": 2, "night": 8}
FLOOD_CALLS_PER_SECOND = 10_000
GROWTH_KIBIBYTES = 32 * 1024  # however long the flood is

BUS_NAME = "org.kelvinbar.Demo"
APPLICATION = "org.freedesktop.Application"
APPLICATION_PATH = "/org/kelvinbar/Demo"
OTHERS = "org.kelvinbar.Kelvinbar1"  # for other programs
OTHERS_PATH = "/org/kelvinbar/Kelvinbar1"
PROPERTIES = "org.freedesktop.DBus.Properties"
MENU_PATH = "/StatusMenu"

Call = tuple[str, str, str, GLib.Variant | None]


@pytest.fixture
def running(desktop: Desktop, program: Path) -> Iterator[Program]:
    running = Program(program, desktop)
    running.prefer(KelvinbarMenuBarKeys="TC0P")
    with NoBar(desktop):
        running.start()
        yield running
        running.finish()


def some_text(chance: random.Random) -> str:
    return chance.choice(["", "label", "clicked", "x" * 5000, "\u202e°\U0001f321", "../../etc", "%s%n"])


def some_number(chance: random.Random) -> int:
    return chance.choice([0, 1, 2, -1, 7, 2**31 - 1, -(2**31), chance.randrange(-(2**31), 2**31)])


def some_value(chance: random.Random) -> GLib.Variant:
    return chance.choice(
        [
            GLib.Variant("s", some_text(chance)),
            GLib.Variant("d", float("nan")),
            GLib.Variant("a{sv}", {"a": GLib.Variant("v", GLib.Variant("i", 1))}),
            GLib.Variant("ay", bytes(1000)),
        ]
    )


def hostile_calls(chance: random.Random) -> list[Call]:
    """Methods of the program with arguments that no tray sends: wrong ids, wrong values, wrong types."""
    ids = [some_number(chance) for _ in range(chance.randrange(50))]
    events = [(number, some_text(chance), some_value(chance), 0) for number in ids]
    words = GLib.Variant("(ss)", (some_text(chance), some_text(chance)))
    return [
        (MENU_PATH, MENU, "GetLayout", GLib.Variant("(iias)", (some_number(chance), some_number(chance), ["x"]))),
        (MENU_PATH, MENU, "GetGroupProperties", GLib.Variant("(aias)", (ids, [some_text(chance)]))),
        (MENU_PATH, MENU, "GetProperty", GLib.Variant("(is)", (some_number(chance), some_text(chance)))),
        (MENU_PATH, MENU, "Event", GLib.Variant("(isvu)", (-1, some_text(chance), some_value(chance), 2**32 - 1))),
        (MENU_PATH, MENU, "EventGroup", GLib.Variant("(a(isvu))", ([e for e in events if e[0] > 100],))),
        (MENU_PATH, MENU, "AboutToShowGroup", GLib.Variant("(ai)", (ids,))),
        (MENU_PATH, MENU, chance.choice(["GetLayout", "Event", "AboutToShow", "Explode"]), words),
        (ITEM_PATH, ITEM, chance.choice(["Activate", "Scroll", "ContextMenu", "Explode"]), words),
        (ITEM_PATH, ITEM, "ProvideXdgActivationToken", GLib.Variant("(s)", (some_text(chance),))),
        (ITEM_PATH, PROPERTIES, "Get", words),
        (ITEM_PATH, PROPERTIES, "Set", GLib.Variant("(ssv)", (ITEM, "Title", some_value(chance)))),
        (APPLICATION_PATH, APPLICATION, "ActivateAction", words),
        (APPLICATION_PATH, APPLICATION, "Open", GLib.Variant("(as)", (["file:///"] * 100,))),
        (OTHERS_PATH, OTHERS, chance.choice(["Refresh", "OpenPanel", "Explode"]), words),
        (OTHERS_PATH, PROPERTIES, "Set", GLib.Variant("(ssv)", (OTHERS, "Pinned", some_value(chance)))),
        (chance.choice(["/", "/Nothing"]), "org.example.Nothing", "Explode", None),
    ]


def huge_ids(chance: random.Random) -> GLib.Variant:
    ids = struct.pack(f"{HUGE}i", *(some_number(chance) for _ in range(HUGE)))
    return GLib.Variant.new_from_bytes(GLib.VariantType("ai"), GLib.Bytes.new(ids), True)


def huge_calls(chance: random.Random) -> list[Call]:
    no_words = GLib.Variant("as", [])
    text = GLib.Variant("s", "x" * 4 * HUGE)
    return [
        (MENU_PATH, MENU, "GetGroupProperties", GLib.Variant.new_tuple(huge_ids(chance), no_words)),
        (MENU_PATH, MENU, "AboutToShowGroup", GLib.Variant.new_tuple(huge_ids(chance))),
        (MENU_PATH, MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, ["label"] * MANY_WORDS))),
        (MENU_PATH, MENU, "GetProperty", GLib.Variant.new_tuple(GLib.Variant("i", 1), text)),
        (ITEM_PATH, ITEM, "ProvideXdgActivationToken", GLib.Variant.new_tuple(text)),
    ]


def outcome(bus: Bus, service: str, call: Call) -> str:
    path, interface, method, arguments = call
    try:
        bus.call(service, path, interface, method, arguments)
    except GLib.Error as error:
        return "error" if "GDBus.Error" in error.message else "no answer"
    return "answer"


def is_whole(desktop: Desktop, program: Program) -> bool:
    """Whether item, menu and name are on the bus."""
    item = desktop.bus.exported_item_of(program.pid)
    return item is not None and any("Quit" in entry for entry in menu_of(item)) and desktop.bus.has(BUS_NAME)


def menu_of(item: Item) -> list[str]:
    try:
        return list(item.menu().values())
    except GLib.Error:  # refused, right after a flood
        return []


def test_hostile_calls(desktop: Desktop, running: Program, scale: str, record) -> None:
    chance = random.Random(16)
    service = running.item().service
    outcomes: list[str] = []
    while len(outcomes) < HOSTILE_CALLS[scale]:
        calls = hostile_calls(chance)
        outcomes += [outcome(desktop.bus, service, call) for call in calls]
        time.sleep(len(calls) / CALLS_PER_SECOND)
    huge = huge_calls(chance) * HUGE_ROUNDS[scale]
    for call in huge:
        outcomes.append(outcome(desktop.bus, service, call))
        time.sleep(0.1)
    wait_until(10, "the item after the calls", lambda: is_whole(desktop, running))
    counts = {each: outcomes.count(each) for each in ("answer", "error", "no answer")}
    record(
        "bus: hostile calls",
        f"{len(outcomes)} calls, {len(huge)} of them huge: {counts['answer']} answers, "
        f"{counts['error']} errors, {counts['no answer']} without either; item there at the end",
        counts["no answer"] == 0 and running.item().service == service,
    )


@pytest.mark.parametrize(
    "method", ("GetAll", "GetLayout", "Activate", "application's Activate", "Refresh", "OpenPanel")
)
def test_flood(desktop: Desktop, running: Program, method: str, scale: str, record) -> None:
    service = running.item().service
    message = {
        "GetAll": method_call(service, ITEM_PATH, PROPERTIES, "GetAll", GLib.Variant("(s)", (ITEM,))),
        "GetLayout": method_call(service, MENU_PATH, MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, []))),
        "Activate": method_call(service, ITEM_PATH, ITEM, "Activate", GLib.Variant("(ii)", (0, 0))),
        "application's Activate": method_call(
            service, APPLICATION_PATH, APPLICATION, "Activate", GLib.Variant("(a{sv})", ({},))
        ),
        "Refresh": method_call(service, OTHERS_PATH, OTHERS, "Refresh"),
        "OpenPanel": method_call(service, OTHERS_PATH, OTHERS, "OpenPanel"),
    }[method]
    running.start_again()  # what the panel occupies does not count
    wait_until(Panel.OPEN_SECONDS, "the panel", Panel(XWindows(desktop, {}), scale=1, shadow=0).is_open)
    before = footprint_of(running.pid).kibibytes
    forget_most(running.pid)
    peer = RawPeer(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
    sent = peer.flood(message, FLOOD_CALLS_PER_SECOND, FLOOD_SECONDS[scale])
    wait_until(60, "the item after the flood", lambda: is_whole(desktop, running))
    peer.close()
    growth = footprint_of(running.pid).most_kibibytes - before
    record(
        f"bus: flood of {method}",
        f"{sent} calls at {FLOOD_CALLS_PER_SECOND} a second, {growth / 1024:+.0f} MiB at most; item there at the end",
        growth < GROWTH_KIBIBYTES,
    )


def test_restart_of_the_bus(desktop: Desktop, running: Program, scale: str, record) -> None:
    for _ in range(RESTARTS[scale]):
        desktop.restart_session_bus()
        wait_until(10, "item, menu and name on the new bus", lambda: is_whole(desktop, running))
        with HostlessWatcher(desktop):
            running.wait_for_tray()
        running.start_again()
    record("bus: restart", f"{RESTARTS[scale]} times; item, menu and name there at the end", True)


def test_restart_of_the_tray(desktop: Desktop, running: Program, scale: str, record) -> None:
    for _ in range(RESTARTS[scale]):
        with HostlessWatcher(desktop) as watcher:
            running.wait_for_tray()
            watcher.kill_bar()
    record("bus: restart of the tray", f"{RESTARTS[scale]} times; registered each time", True)


@pytest.mark.parametrize("name", ("SIGTERM", "SIGHUP"))
def test_quitting_waits_for_no_bus(desktop: Desktop, program: Path, name: str, record) -> None:
    running = Program(program, desktop)
    running.start()
    with desktop.silent_session_bus():
        started = time.monotonic()
        running.send(signal.Signals[name])
        running.wait()
        seconds = time.monotonic() - started
    record(f"bus that does not answer, then {name}", f"ended in {seconds:.2f} s", seconds < QUIT_SECONDS)
