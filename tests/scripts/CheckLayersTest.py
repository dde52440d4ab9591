#!/usr/bin/env python3
"""Tests of scripts/check-layers.py on small trees. usage: tests/scripts/CheckLayersTest.py"""

import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "check-layers.py"

LAYERS = "base:\nstore: base\nstore/files: base\ntests: *\n"
TREE = {
    "base/Text.h": "#include <string>\n",
    "store/Store.h": '#include "base/Text.h"\n',
    "store/files/File.cpp": '#include "base/Text.h"\n',
    "tests/StoreTest.cpp": '#include "store/Store.h"\n#include "Helper.h"\n',
}


def check(files=None, layers=LAYERS):
    """The exit status and the messages for TREE with these files added or replaced."""
    with tempfile.TemporaryDirectory() as root:
        for name, text in {**TREE, **(files or {}), "layers.txt": layers}.items():
            path = Path(root, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        result = subprocess.run([SCRIPT, root], capture_output=True, text=True, check=False)
    return result.returncode, result.stderr


class CheckLayersTest(unittest.TestCase):
    def assert_fails(self, message, files=None, layers=LAYERS):
        status, output = check(files, layers)
        self.assertEqual(status, 1)
        self.assertIn(message, output)

    def test_a_tree_that_keeps_to_its_layers_passes(self):
        self.assertEqual(check(), (0, ""))

    def test_an_include_that_is_not_allowed_fails_with_its_place(self):
        self.assert_fails(
            'base/Text.cpp:2: includes "store/Store.h", but base may not include store',
            {"base/Text.cpp": '#include <string>\n#include "store/Store.h"\n'},
        )

    def test_an_import_counts_as_an_include(self):
        self.assert_fails("base may not include store", {"base/Text.mm": '  # import "store/Store.h"\n'})

    def test_a_file_belongs_to_the_deepest_folder_that_is_listed(self):
        self.assert_fails("store/files may not include store", {"store/files/File.h": '#include "store/Store.h"\n'})

    def test_a_folder_that_is_not_listed_belongs_to_the_one_around_it(self):
        self.assertEqual(check({"store/deep/er/Deep.h": '#include "store/Store.h"\n'}), (0, ""))

    def test_a_source_outside_all_folders_fails(self):
        self.assert_fails("other/Other.cpp: layers.txt lists no folder", {"other/Other.cpp": ""})

    def test_an_allowed_include_that_nothing_uses_fails(self):
        self.assert_fails(
            "store may include store/files, but does not",
            layers=LAYERS.replace("store: base", "store: base store/files"),
        )

    def test_a_circle_of_allowed_includes_fails(self):
        self.assert_fails(
            "in a circle: base store",
            {"base/Text.cpp": '#include "store/Store.h"\n'},
            LAYERS.replace("base:", "base: store"),
        )

    def test_an_include_that_is_not_written_from_the_root_fails(self):
        self.assert_fails('"Text.h" is not written from the root', {"base/Text.cpp": '#include "Text.h"\n'})

    def test_a_folder_that_is_listed_twice_fails(self):
        self.assert_fails("layers.txt:5:", layers=LAYERS + "base:\n")

    def test_a_build_folder_is_left_out(self):
        self.assertEqual(check({"out/CMakeCache.txt": "", "out/Other.cpp": '#include "x.h"\n'}), (0, ""))


if __name__ == "__main__":
    unittest.main()
