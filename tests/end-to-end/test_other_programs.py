"""What other programs get from the running program on the session bus, asked with gdbus."""

import re
import subprocess
import time
from typing import Any

import pytest
from gi.repository import GLib

from driver.desktop import Desktop
from driver.program import Panel, Program
from driver.waiting import stays, wait_until

SERVICE = "org.kelvinbar.Demo"
PATH = "/org/kelvinbar/Kelvinbar1"
INTERFACE = "org.kelvinbar.Kelvinbar1"


class Client:
    """Asks with the tool that people have."""

    def __init__(self, desktop: Desktop) -> None:
        self._desktop = desktop

    def property(self, name: str) -> Any:
        return self._call("org.freedesktop.DBus.Properties.Get", INTERFACE, name)[0]

    def readings(self) -> dict[str, tuple]:
        """By key."""
        return {reading[0]: reading for reading in self.property("Readings")}

    def refresh(self) -> bool:
        return self._call(f"{INTERFACE}.Refresh")[0]

    def open_panel(self) -> None:
        self._call(f"{INTERFACE}.OpenPanel")

    def set_title(self) -> str:
        """The error."""
        return self._gdbus(
            "call", "--method", "org.freedesktop.DBus.Properties.Set", INTERFACE, "Title", "<'other'>"
        ).stderr

    def introspection(self) -> str:
        return self._gdbus("introspect").stdout

    def _call(self, method: str, *arguments: str) -> tuple:
        run = self._gdbus("call", "--method", method, *arguments)
        assert run.returncode == 0, run.stderr
        return GLib.Variant.parse(None, run.stdout).unpack()

    def _gdbus(self, command: str, *arguments: str) -> subprocess.CompletedProcess:
        place = ("--session", "--dest", SERVICE, "--object-path", PATH)
        return self._desktop.run(["gdbus", command, *place, *arguments])


@pytest.fixture
def client(desktop: Desktop) -> Client:
    return Client(desktop)


@pytest.fixture(autouse=True)
def _started(program: Program, client: Client) -> None:
    program.prefer(KelvinbarMenuBarKeys="TC0P", KelvinbarSamplingRate="fast")
    program.start()
    wait_until(10, "a pass", lambda: client.property("LastUpdated") > 0)


def test_the_properties_are_those_of_the_tray_and_the_panel(program: Program, client: Client) -> None:
    assert client.property("Pinned") == ["TC0P"]
    assert re.fullmatch(r"[0-9.]+°", client.property("Title"))
    key, name, category, *_, unit, _, status = client.readings()["TC0P"]
    assert (key, name, category, unit, status) == ("TC0P", "CPU Proximity", "CPU", "°C", "OK")
    assert len(client.readings()) > 50
    assert abs(client.property("LastUpdated") / 1000 - time.time()) < 60


def test_the_description_is_that_of_the_repository(client: Client) -> None:
    description = client.introspection()
    for member in (
        "Refresh(out b taken)",
        "OpenPanel()",
        "Refreshed(t lastUpdated)",
        "readonly s Title",
        "readonly a(sssssdsss) Readings",
        "readonly as Pinned",
        "readonly t LastUpdated",
        "readonly a{sv} Cost",
    ):
        assert member in re.sub(r"\s+", " ", description).replace("( ", "(").replace(");", ")"), member


def test_no_property_can_be_set(client: Client) -> None:
    before = client.property("Title")
    assert "read-only" in client.set_title()
    assert len(client.property("Title")) == len(before)


def test_a_monitor_sees_each_refresh(desktop: Desktop) -> None:
    desktop.start("monitor", ["gdbus", "monitor", "--session", "--dest", SERVICE, "--object-path", PATH])
    log = desktop.logs / "monitor.log"
    signal = re.compile(INTERFACE.replace(".", r"\.") + r"\.Refreshed \(uint64 [0-9]+,\)")
    wait_until(10, "three signals", lambda: len(signal.findall(log.read_text())) >= 3)


def test_a_second_refresh_within_a_period_is_not_taken(client: Client) -> None:
    assert client.refresh()
    assert not all([client.refresh() for _ in range(5)])
    wait_until(10, "the period's end", client.refresh)


def test_it_opens_the_panel_and_never_closes_it(client: Client, panel: Panel) -> None:
    client.open_panel()
    panel.wait_open()
    client.open_panel()
    assert stays(0.5, panel.is_open)


def test_the_cost_is_of_a_program_that_runs(client: Client) -> None:
    cost = client.property("Cost")
    assert 0 < cost["PrivateMemory"] < cost["ResidentMemory"] < 500 * 2**20
    assert cost["WakeUpsPerMinute"] > 1
    assert 0 < cost["CpuTimePerMinute"] < 60


def test_it_is_there_again_after_the_bus_restarted(desktop: Desktop, client: Client) -> None:
    desktop.restart_session_bus()
    wait_until(10, "the name", lambda: desktop.bus.has(SERVICE))
    wait_until(10, "the object", lambda: client.property("Pinned") == ["TC0P"])
    before = client.property("LastUpdated")
    wait_until(10, "another pass", lambda: client.property("LastUpdated") > before)


def test_the_name_and_the_object_go_with_the_program(desktop: Desktop, program: Program) -> None:
    assert desktop.bus.has(SERVICE)
    program.finish()
    assert not desktop.bus.has(SERVICE)
