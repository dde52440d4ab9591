#!/usr/bin/env python3
"""What kelvinbar-snapshot prints, read by programs that others wrote. usage: OutputFormatsTest.py SNAPSHOT"""

import csv
import io
import json
import subprocess
import sys
import unittest
from pathlib import Path

import jsonschema
from prometheus_client.openmetrics.parser import text_string_to_metric_families
from prometheus_client.parser import text_string_to_metric_families as plain_families

SNAPSHOT = Path(sys.argv.pop(1))
SCHEMA = json.loads((Path(__file__).resolve().parents[2] / "docs" / "snapshot.schema.json").read_text(encoding="utf-8"))
SAMPLES = ["intel-notebook", "apple-silicon-desktop", "amd-pc", "linux-pc"]
MACHINES = [[], *(["--demo", sample] for sample in SAMPLES)]


def printed(*options):
    result = subprocess.run([SNAPSHOT, *options], capture_output=True, check=True, timeout=60)
    return result.stdout.decode("utf-8")


def values_of(families):
    return [(sample.name, sample.labels, sample.value) for family in families for sample in family.samples]


class OutputFormatsTest(unittest.TestCase):
    def test_json_fits_its_schema(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)
        for machine in MACHINES:
            for output_format in ["json", "jsonl"]:
                with self.subTest(machine=machine, format=output_format):
                    document = json.loads(printed(*machine, "--format", output_format))
                    jsonschema.validate(document, SCHEMA, jsonschema.Draft202012Validator)
                    self.assertTrue(document["readings"])

    def test_a_line_with_milliseconds_fits_the_schema(self):
        command = [SNAPSHOT, "--demo", "--watch", "0.5", "--format", "jsonl"]
        with subprocess.Popen(command, stdout=subprocess.PIPE, text=True, encoding="utf-8") as watch:
            document = json.loads(watch.stdout.readline())
            watch.terminate()
        jsonschema.validate(document, SCHEMA, jsonschema.Draft202012Validator)
        self.assertRegex(document["time"], r"\.\d{3}Z$")

    def test_the_schema_refuses_a_reading_without_a_key_and_one_of_another_category(self):
        for change in [("key", None), ("category", "Toast"), ("numericValue", "7")]:
            document = json.loads(printed("--demo", "--format", "json"))
            document["readings"][0].update({change[0]: change[1]})
            with self.assertRaises(jsonschema.ValidationError):
                jsonschema.validate(document, SCHEMA, jsonschema.Draft202012Validator)

    def test_json_has_the_readings_of_the_text(self):
        keys = [line.split("\t")[0] for line in printed("--demo", "linux-pc").splitlines()[4:]]
        document = json.loads(printed("--demo", "linux-pc", "--format", "json"))
        self.assertEqual([reading["key"] for reading in document["readings"]], keys)

    def test_csv_is_read_as_a_table(self):
        for machine in MACHINES:
            with self.subTest(machine=machine):
                rows = list(csv.DictReader(io.StringIO(printed(*machine, "--format", "csv")), strict=True))
                document = json.loads(printed(*machine, "--format", "json"))
                self.assertEqual([row["name"] for row in rows], [reading["name"] for reading in document["readings"]])
                self.assertTrue(all(None not in row and None not in row.values() for row in rows))

    def test_openmetrics_is_parsed_with_all_readings(self):
        for machine in MACHINES:
            with self.subTest(machine=machine):
                families = list(text_string_to_metric_families(printed(*machine, "--format", "openmetrics")))
                document = json.loads(printed(*machine, "--format", "json"))
                keys = [labels["key"] for _, labels, _ in values_of(families)]
                self.assertEqual(sorted(keys), sorted(reading["key"] for reading in document["readings"]))
                for family in families:
                    self.assertTrue(family.name.endswith(family.unit))
                    self.assertTrue(all(sample.timestamp is None for sample in family.samples))

    def test_openmetrics_without_its_end_passes_the_checks_of_prometheus(self):
        for machine in MACHINES:
            with self.subTest(machine=machine):
                text = printed(*machine, "--format", "openmetrics")
                self.assertTrue(text.endswith("\n# EOF\n"))
                plain = text.removesuffix("# EOF\n")
                check = subprocess.run(["promtool", "check", "metrics"], input=plain.encode(), capture_output=True)
                self.assertEqual((check.returncode, check.stdout, check.stderr), (0, b"", b""))
                families = text_string_to_metric_families(text)
                self.assertEqual(values_of(plain_families(plain)), values_of(families))


if __name__ == "__main__":
    unittest.main()
