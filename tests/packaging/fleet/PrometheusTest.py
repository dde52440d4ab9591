#!/usr/bin/env python3
"""From the service's commands through Debian's prometheus-node-exporter to an answer of Debian's Prometheus.
usage: PrometheusTest.py SNAPSHOT SERVICE DASHBOARD
"""

import json
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.error
import urllib.parse
import urllib.request
from pathlib import Path

from service_unit import ServiceUnit, expressions

sys.path.insert(0, str(Path(__file__).parents[2] / "reliability"))

from system_calls import filter_for

SNAPSHOT, SERVICE, DASHBOARD = map(Path, sys.argv[1:])
PROGRAMS = ["prometheus", "prometheus-node-exporter", "bwrap"]
PATIENCE = 60  # seconds

CONFIGURATION = """
global: {{scrape_interval: 1s}}
scrape_configs:
  - job_name: node
    static_configs: [targets: ["127.0.0.1:{port}"]]
"""


def free_port() -> int:
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


class Prometheus:
    """Prometheus and an exporter of the folder "textfiles", with everything below one folder and on loopback alone."""

    def __init__(self, folder: Path) -> None:
        self._folder = folder
        self.textfiles = folder / "textfiles"
        self.textfiles.mkdir()
        self._port = free_port()
        self._processes = [self._start_exporter(exporter_port := free_port()), self._start_prometheus(exporter_port)]

    def _start(self, *command: str) -> subprocess.Popen:
        with (self._folder / f"{command[0]}.log").open("wb") as log:
            return subprocess.Popen(command, cwd=self._folder, stdout=log, stderr=log)

    def _start_exporter(self, port: int) -> subprocess.Popen:
        textfiles = ["--collector.disable-defaults", "--collector.textfile"]
        textfiles += [f"--collector.textfile.directory={self.textfiles}"]
        return self._start("prometheus-node-exporter", f"--web.listen-address=127.0.0.1:{port}", *textfiles)

    def _start_prometheus(self, exporter_port: int) -> subprocess.Popen:
        configuration = self._folder / "prometheus.yml"
        configuration.write_text(CONFIGURATION.format(port=exporter_port), encoding="utf-8")
        storage = ["--storage.tsdb.path=data", f"--config.file={configuration}"]
        return self._start("prometheus", f"--web.listen-address=127.0.0.1:{self._port}", *storage)

    def stop(self) -> None:
        for process in self._processes:
            process.kill()
            process.wait()

    def logs(self) -> str:
        return "\n".join(log.read_text(errors="replace")[-2000:] for log in self._folder.glob("*.log"))

    def _answer(self, query: str) -> list[dict]:
        parameters = urllib.parse.urlencode({"query": query})
        try:
            with urllib.request.urlopen(
                f"http://127.0.0.1:{self._port}/api/v1/query?{parameters}", timeout=10
            ) as answer:
                return json.load(answer)["data"]["result"]
        except (urllib.error.URLError, ConnectionError):  # not ready yet
            return []

    def wait_for(self, query: str) -> list[dict]:
        """The series of the query, as soon as there are any."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if series := self._answer(query):
                return series
            time.sleep(0.2)
        raise AssertionError(f"no answer to {query} in {PATIENCE} s\n{self.logs()}")


class Fleet(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if missing := [program for program in PROGRAMS if not shutil.which(program)]:
            raise unittest.SkipTest(f"not installed: {', '.join(missing)}")
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        cls.prometheus = Prometheus(cls.folder)
        cls.addClassCleanup(cls.prometheus.stop)
        cls.unit = ServiceUnit(SERVICE, SNAPSHOT, "--demo", "linux-pc")

    def setUp(self):
        self.unit.run_in(self.prometheus.textfiles, *self.confinement())

    def confinement(self):
        """What the service allows: no network, one folder that can be written, the system calls of its filter."""
        rules = self.folder / "filter"
        rules.write_bytes(filter_for(name for line in self.unit.values("SystemCallFilter") for name in line.split()))
        textfiles = str(self.prometheus.textfiles)
        bwrap = [
            "bwrap",
            "--die-with-parent",
            "--unshare-net",
            "--cap-drop",
            "ALL",
            "--ro-bind",
            "/",
            "/",
            "--dev",
            "/dev",
        ]
        bwrap += ["--proc", "/proc", "--bind", textfiles, textfiles, "--chdir", textfiles, "--seccomp", "3"]
        return ["sh", "-c", 'exec "$@" 3<"$0"', str(rules), *bwrap]

    def test_a_reading_is_found_in_prometheus(self):
        series = self.prometheus.wait_for('kelvinbar_temperature_celsius{key="k10temp-pci-00c3/temp1"}')
        self.assertEqual(len(series), 1)
        self.assertEqual(series[0]["metric"]["name"], "CPU Tctl")
        self.assertEqual(series[0]["metric"]["category"], "CPU")
        printed = subprocess.run(
            [SNAPSHOT, "--demo", "linux-pc", "--format", "json"], capture_output=True, check=True, timeout=60
        )
        readings = {reading["key"]: reading for reading in json.loads(printed.stdout)["readings"]}
        self.assertAlmostEqual(float(series[0]["value"][1]), readings["k10temp-pci-00c3/temp1"]["numericValue"])

    def test_the_exporter_reads_the_whole_file(self):
        self.assertEqual(self.prometheus.wait_for("node_textfile_scrape_error")[0]["value"][1], "0")
        written = (self.prometheus.textfiles / "kelvinbar.prom").read_text(encoding="utf-8").splitlines()
        samples = [line for line in written if not line.startswith("#")]
        self.prometheus.wait_for("kelvinbar_voltage_volts")
        found = self.prometheus.wait_for('count({__name__=~"kelvinbar_.+"})')
        self.assertEqual(int(found[0]["value"][1]), len(samples))

    def test_each_query_of_the_dashboard_has_an_answer(self):
        for query in expressions(json.loads(DASHBOARD.read_text(encoding="utf-8"))):
            with self.subTest(query=query):
                self.assertTrue(self.prometheus.wait_for(query.replace("$machine", ".*")))

    def test_nothing_but_the_finished_file_stays_in_the_folder(self):
        self.assertEqual([file.name for file in self.prometheus.textfiles.iterdir()], ["kelvinbar.prom"])

    def test_the_exporter_may_read_the_file(self):
        self.assertEqual((self.prometheus.textfiles / "kelvinbar.prom").stat().st_mode & 0o777, 0o644)

    def test_the_filter_ends_what_calls_anything_else(self):
        result = subprocess.run([*self.confinement(), "mkdir", "another"], timeout=60)
        self.assertEqual(result.returncode, 128 + signal.SIGSYS)


unittest.main(argv=sys.argv[:1])
