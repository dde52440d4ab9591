#!/usr/bin/env python3
"""The service for prometheus-node-exporter and the dashboard, without running either.
usage: ServiceTest.py SNAPSHOT SERVICE DASHBOARD
"""

import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from service_unit import ServiceUnit, expressions

SNAPSHOT, SERVICE, DASHBOARD = map(Path, sys.argv[1:])
SAMPLES = ["intel-notebook", "apple-silicon-desktop", "amd-pc", "linux-pc"]
HIGHEST_EXPOSURE = 1.5


def run(*command: str | Path) -> subprocess.CompletedProcess:
    return subprocess.run(command, capture_output=True, text=True, timeout=60)


def metrics_of(sample: str) -> set[str]:
    printed = run(SNAPSHOT, "--demo", sample, "--format", "openmetrics").stdout
    return set(re.findall(r"^# TYPE (\w+)", printed, re.MULTILINE))


class Service(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def exposure_of(self, text):
        unit = self.folder / "exposed.service"
        unit.write_text(text, encoding="utf-8")
        report = run("systemd-analyze", "security", "--offline=yes", "--no-pager", unit)
        return float(re.search(r"Overall exposure level for \S+: ([\d.]+)", report.stdout)[1])

    def test_the_service_is_confined(self):
        text = ServiceUnit(SERVICE, SNAPSHOT).text
        self.assertLessEqual(self.exposure_of(text), HIGHEST_EXPOSURE)
        unfiltered = re.sub(r"^(SystemCallFilter|CapabilityBoundingSet)=.*\n", "", text, flags=re.MULTILINE)
        self.assertGreater(self.exposure_of(unfiltered), HIGHEST_EXPOSURE)

    def test_systemd_has_no_objection_to_service_and_timer(self):
        for file in [SERVICE, SERVICE.with_suffix(".timer")]:
            (self.folder / file.name).write_text(ServiceUnit(file, SNAPSHOT).text, encoding="utf-8")
        check = run("systemd-analyze", "verify", "--man=no", *self.folder.iterdir())
        self.assertEqual((check.returncode, check.stdout, check.stderr), (0, "", ""))

    def test_the_service_is_that_of_an_ordinary_user(self):
        unit = ServiceUnit(SERVICE, SNAPSHOT)
        self.assertEqual(unit.values("DynamicUser"), ["yes"])
        self.assertFalse([command for command in unit.commands() if not command[0].startswith("/")])


class Dashboard(unittest.TestCase):
    def test_the_dashboard_asks_only_for_metrics_that_exist(self):
        asked = set(re.findall(r"\bkelvinbar_\w+", DASHBOARD.read_text(encoding="utf-8")))
        self.assertTrue(asked)
        self.assertLessEqual(asked, set.union(*map(metrics_of, SAMPLES)))

    def test_each_panel_asks_for_something(self):
        dashboard = json.loads(DASHBOARD.read_text(encoding="utf-8"))
        self.assertGreaterEqual(len(expressions(dashboard)), len(dashboard["panels"]))


unittest.main(argv=sys.argv[:1])
