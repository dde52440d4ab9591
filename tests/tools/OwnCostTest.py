#!/usr/bin/env python3
"""What --self prints with and without a tray program on the session bus. usage: OwnCostTest.py SNAPSHOT [--without-bus]"""

import json
import os
import socket
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

SNAPSHOT = Path(sys.argv[1])
WITHOUT_BUS = "--without-bus" in sys.argv[2:]
SCHEMA = json.loads((Path(__file__).resolve().parents[2] / "docs" / "snapshot.schema.json").read_text(encoding="utf-8"))
# The last two are not as this version knows them.
COST = {
    "CpuTimePerMinute": "<0.25>",
    "WakeUpsPerMinute": "<12.0>",
    "ResidentMemory": "<uint64 3145728>",
    "AccessesOfLastPass": "<uint32 40>",
    "LaterNumber": "<(1, 'x')>",
    "PrivateMemory": "<'of another type'>",
}
PROPERTIES = """<node><interface name="org.freedesktop.DBus.Properties"><method name="Get">
  <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method></interface></node>"""


def serve(form):
    """Has the tray program's name on the bus until standard input ends. `form`: "cost", "text", "error" or "mute"."""
    from gi.repository import Gio, GLib

    answers = {
        "cost": GLib.Variant.parse(None, "<{%s}>" % ", ".join(f"'{name}': {value}" for name, value in COST.items())),
        "text": GLib.Variant("v", GLib.Variant("s", "a text")),
    }

    def answer(connection, sender, path, interface, method, arguments, call):
        if form in answers:
            call.return_value(GLib.Variant.new_tuple(answers[form]))
        elif form == "error":
            call.return_dbus_error("org.kelvinbar.No", "no")

    def register(connection, name):
        interface = Gio.DBusNodeInfo.new_for_xml(PROPERTIES).interfaces[0]
        connection.register_object("/org/kelvinbar/Kelvinbar1", interface, answer, None, None)

    def tell(connection, name):
        print("ready", flush=True)

    loop = GLib.MainLoop()
    Gio.bus_own_name(Gio.BusType.SESSION, "org.kelvinbar.Kelvinbar", Gio.BusNameOwnerFlags.NONE, register, tell, None)
    GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT, GLib.IO_HUP, lambda *_: loop.quit())
    loop.run()


SILENCE = "kelvinbar-snapshot: the tray program does not answer; what is printed is the cost of this program\n"
NO_BUS = "kelvinbar-snapshot: the session bus cannot be reached; what is printed is the cost of this program\n"


def environment_with(bus, folder="/nowhere"):
    """`bus` and `folder`: None for no such variable."""
    variables = {**os.environ, "DBUS_SESSION_BUS_ADDRESS": bus, "XDG_RUNTIME_DIR": folder}
    return {name: value for name, value in variables.items() if value is not None}


def printed(*options, bus, errors=""):
    command = [SNAPSHOT, "--demo", "--self", *options]
    result = subprocess.run(command, capture_output=True, check=True, timeout=60, env=environment_with(bus))
    assert result.stderr.decode("utf-8") == errors, result.stderr
    return result.stdout.decode("utf-8")


def own_readings(bus, errors=""):
    document = json.loads(printed("--format", "json", "--category", "kelvinbar", bus=bus, errors=errors))
    assert all(reading["category"] == "Kelvinbar" for reading in document["readings"])
    return {reading["key"].removeprefix("kelvinbar/"): reading for reading in document["readings"]}


def programs(bus, errors=""):
    return {reading["type"] for reading in own_readings(bus, errors).values()}


class OwnCostTest(unittest.TestCase):
    def setUp(self):
        daemon = ["dbus-daemon", "--session", "--nofork", "--print-address"]
        self.daemon = subprocess.Popen(daemon, stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.daemon.stdout.close)
        self.addCleanup(self.daemon.wait)
        self.addCleanup(self.daemon.terminate)
        self.bus = self.daemon.stdout.readline().strip()

    def serve(self, form):
        command = [sys.executable, "-B", __file__, "--serve", form]
        environment = {**os.environ, "DBUS_SESSION_BUS_ADDRESS": self.bus}
        service = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, env=environment)
        self.service = service
        self.addCleanup(service.wait)
        self.addCleanup(service.stdout.close)
        self.addCleanup(service.stdin.close)
        self.assertEqual(service.stdout.readline(), "ready\n")

    @unittest.skipIf(WITHOUT_BUS, "the program was built without the bus")
    def test_the_tray_programs_cost_is_printed(self):
        self.serve("cost")
        readings = own_readings(self.bus)
        self.assertEqual({reading["type"] for reading in readings.values()}, {"tray program"})
        numbers = {key: reading["numericValue"] for key, reading in readings.items()}
        self.assertEqual(numbers, {"cpu-time": 0.25, "wake-ups": 12, "resident-memory": 3, "accesses": 40})

    def test_without_a_tray_program_it_is_the_console_programs(self):
        readings = own_readings(self.bus)
        self.assertEqual({reading["type"] for reading in readings.values()}, {"console program"})
        self.assertLess(readings["cpu-time"]["numericValue"], 60)
        self.assertGreater(readings["private-memory"]["numericValue"], 0)

    @unittest.skipIf(WITHOUT_BUS, "the program was built without the bus")
    def test_an_answer_that_is_no_cost_is_none(self):
        for form in ["error", "text"]:
            with self.subTest(form=form):
                self.serve(form)
                self.assertEqual(programs(self.bus, SILENCE), {"console program"})
                self.doCleanups()
                self.setUp()

    def test_without_a_bus_nothing_is_missed(self):
        for address in ["", None]:
            self.assertEqual(programs(address), {"console program"})
        command = [SNAPSHOT, "--demo", "--self", "--format", "csv"]
        result = subprocess.run(command, capture_output=True, check=True, timeout=60, env=environment_with(None, None))
        self.assertEqual(result.stderr, b"")

    @unittest.skipIf(WITHOUT_BUS, "the program was built without the bus")
    def test_a_bus_that_is_gone_is_named(self):
        for address in ["unix:path=/nowhere/bus", "junk"]:
            self.assertEqual(programs(address, NO_BUS), {"console program"})

    @unittest.skipIf(WITHOUT_BUS, "the program was built without the bus")
    def test_a_program_that_does_not_answer_is_waited_for_a_second(self):
        self.serve("mute")
        begin = time.monotonic()
        self.assertEqual(programs(self.bus, SILENCE), {"console program"})
        self.assertGreaterEqual(time.monotonic() - begin, 1)

    @unittest.skipIf(WITHOUT_BUS, "the program was built without the bus")
    def test_a_bus_that_does_not_answer_is_named(self):
        with tempfile.TemporaryDirectory() as folder, socket.socket(socket.AF_UNIX) as mute:
            mute.bind(f"{folder}/bus")
            mute.listen()
            self.assertEqual(programs(f"unix:path={folder}/bus", SILENCE), {"console program"})

    def watch(self):
        """Rows of a series about the wake-ups of one program."""
        options = ["--watch", "0.1", "--format", "csv", "--key", "kelvinbar/wake-ups"]
        command = [SNAPSHOT, "--demo", "--self", *options]
        pipes = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
        watched = subprocess.Popen(command, text=True, env=environment_with(self.bus), **pipes)
        self.addCleanup(watched.stderr.close)
        self.addCleanup(watched.wait)
        self.addCleanup(watched.stdout.close)
        self.addCleanup(watched.terminate)
        return watched

    def field_that_is(self, wanted, watched):
        while (field := watched.stdout.readline().rstrip("\n").split(",")[1]) != wanted:
            self.assertIn(field, ["", "12"])

    @unittest.skipIf(WITHOUT_BUS, "the program was built without the bus")
    def test_a_series_is_about_one_program(self):
        self.serve("cost")
        watched = self.watch()
        self.assertEqual(watched.stdout.readline(), "time,Wake-Ups a Minute of the tray program\n")
        self.field_that_is("12", watched)
        self.service.terminate()
        self.field_that_is("", watched)
        self.serve("cost")
        self.field_that_is("12", watched)
        self.daemon.terminate()
        self.field_that_is("", watched)
        watched.terminate()
        watched.wait()
        away = "kelvinbar-snapshot: the tray program does not answer any more; its cost is left out until it does\n"
        self.assertEqual(watched.stderr.read(), 2 * away)

    @unittest.skipIf(WITHOUT_BUS, "the program was built without the bus")
    def test_the_doctor_tells_it_too(self):
        self.serve("cost")
        command = [SNAPSHOT, "--doctor", "--self", "--format", "json"]
        result = subprocess.run(command, capture_output=True, check=True, timeout=60, env=environment_with(self.bus))
        section = json.loads(result.stdout)["sections"][-1]
        found = {finding["subject"]: finding["found"] for finding in section["findings"]}
        self.assertEqual((section["title"], found["program"]), ("Kelvinbar", "the tray program"))
        self.assertEqual((found["CPU Time a Minute"], found["Resident Memory"]), ("0.25 s", "3 MB"))

    def test_json_fits_its_schema_and_the_text_is_refused(self):
        import jsonschema

        document = json.loads(printed("--format", "json", bus=self.bus))
        jsonschema.validate(document, SCHEMA, jsonschema.Draft202012Validator)
        self.assertIn("Kelvinbar", [reading["category"] for reading in document["readings"]])
        self.assertEqual(subprocess.run([SNAPSHOT, "--self"], capture_output=True).returncode, 2)

    def test_prometheus_accepts_the_metrics(self):
        text = printed("--format", "openmetrics", bus=self.bus).removesuffix("# EOF\n")
        check = subprocess.run(["promtool", "check", "metrics"], input=text.encode(), capture_output=True)
        self.assertEqual((check.returncode, check.stdout, check.stderr), (0, b"", b""))


if __name__ == "__main__":
    if sys.argv[1] == "--serve":
        serve(sys.argv[2])
    else:
        unittest.main(argv=sys.argv[:1])
