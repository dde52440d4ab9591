#!/usr/bin/env python3
"""Tests scripts/packages/bill_of_materials.py with packages made for the test, on a system of Debian packages.
usage: BillOfMaterialsTest.py FOLDER-OF-SCRIPTS
"""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

CONTROL = """Package: {name}
Version: 1.2.3-1
Architecture: amd64
Maintainer: Nobody <nobody@kelvinbar.invalid>
Depends: {needs}
Description: made for a test
"""


class BillOfMaterials(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.enterContext(mock.patch.dict(os.environ, {"SOURCE_DATE_EPOCH": "86400"}))
        self.enterContext(mock.patch.object(materials, "included_headers", lambda build: ["/usr/include/stdio.h"]))

    def make_package(self, name, needs):
        control = self.folder / name / "DEBIAN" / "control"
        control.parent.mkdir(parents=True)
        control.write_text(CONTROL.format(name=name, needs=needs))
        file = self.folder / f"{name}_1.2.3-1_amd64.deb"
        subprocess.run(["dpkg-deb", "--build", control.parent.parent, file], check=True, capture_output=True)
        return file

    def bill(self):
        return materials.bill_of_materials("1.2.3", "unused", self.folder)

    def names(self, role):
        return [each["name"] for each in self.bill()["components"] if each["properties"][0]["value"] == role]

    def test_a_package_of_the_release_is_no_library_of_another(self):
        self.make_package("kelvinbar", "kelvinbar-snapshot (= 1.2.3-1), libc6 (>= 2.3)")
        self.assertEqual(self.names("linked or loaded"), ["libc6"])
        self.assertEqual(self.names("package for amd64"), ["kelvinbar"])

    def test_of_alternatives_the_first_is_listed(self):
        self.make_package("kelvinbar", "libc6 (>= 2.3) | libmusl, libgcc-s1")
        self.assertEqual(self.names("linked or loaded"), ["libc6", "libgcc-s1"])

    def test_a_package_with_an_included_header_is_listed(self):
        self.make_package("kelvinbar", "libc6")
        self.assertEqual(self.names("headers compiled in"), ["libc6-dev"])

    def test_every_reference_leads_to_a_component(self):
        self.make_package("kelvinbar", "libc6")
        bill = self.bill()
        known = {each["bom-ref"] for each in bill["components"]}
        self.assertEqual(
            {name for each in bill["dependencies"] for name in each["dependsOn"]}, known - {self.header(bill)}
        )

    def header(self, bill):
        return next(each["bom-ref"] for each in bill["components"] if each["name"] == "libc6-dev")

    def test_the_time_is_that_of_the_source(self):
        self.make_package("kelvinbar", "libc6")
        self.assertEqual(self.bill()["metadata"]["timestamp"], "1970-01-02T00:00:00Z")

    def test_a_library_that_is_not_here_has_no_version_and_fails(self):
        self.make_package("kelvinbar", "libnowhere")
        with self.assertRaisesRegex(SystemExit, "not installed here: libnowhere"):
            self.bill()

    def test_a_release_without_packages_fails(self):
        with self.assertRaisesRegex(SystemExit, "no packages"):
            self.bill()


if __name__ == "__main__":
    sys.path.insert(0, sys.argv.pop(1))
    import bill_of_materials as materials

    unittest.main()
