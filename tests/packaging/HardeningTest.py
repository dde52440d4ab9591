#!/usr/bin/env python3
"""Looks in the installed programs and libraries for what cmake/KelvinbarHardening.cmake asks for.
usage: HardeningTest.py CMAKE BUILD optimised|unoptimised
"""

import re
import subprocess
import sys
import tempfile
import unittest
from functools import cache
from pathlib import Path

# The instruction that an indirect jump or call has to land on.
LANDING_PADS = {"X86-64": b"\xf3\x0f\x1e\xfa", "AArch64": b"\x3f\x23\x03\xd5"}


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


class InstalledFile:
    def __init__(self, path):
        self.path = path

    def __str__(self):
        return self.path.name

    @cache
    def read(self, *options):
        return run("readelf", "--wide", *options, self.path)

    def imports(self, pattern):
        return re.search(rf"UND {pattern}\b", self.read("--dyn-syms")) is not None

    def machine(self):
        return re.search(r"Machine:.*?(X86-64|AArch64|\S+)$", self.read("--file-header"), re.MULTILINE).group(1)

    def functions(self):
        """As the table for exceptions counts them."""
        return self.read("--debug-dump=frames").count(" FDE ")

    def landing_pads(self):
        return self.path.read_bytes().count(LANDING_PADS[self.machine()])


class Hardening(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        run(CMAKE, "--install", BUILD, "--prefix", folder.name)
        regular = (path for path in Path(folder.name).rglob("*") if path.is_file() and not path.is_symlink())
        cls.files = [InstalledFile(path) for path in regular if path.read_bytes().startswith(b"\x7fELF")]

    def check_each(self, holds):
        self.assertTrue(self.files, "nothing was installed")
        self.assertEqual([str(file) for file in self.files if not holds(file)], [])

    def test_each_file_can_be_loaded_anywhere(self):
        self.check_each(lambda file: "DYN" in file.read("--file-header"))

    def test_each_file_is_bound_when_it_is_loaded_and_then_read_only(self):
        self.check_each(lambda file: "GNU_RELRO" in file.read("--program-headers"))
        self.check_each(lambda file: re.search(r"BIND_NOW|Flags: .*NOW", file.read("--dynamic")))

    def test_no_stack_is_executable(self):
        self.check_each(lambda file: re.search(r"GNU_STACK.* RW +0x", file.read("--program-headers")))

    def test_each_file_guards_its_stack(self):
        self.check_each(lambda file: file.imports("__stack_chk_fail"))

    def test_functions_begin_with_a_landing_pad(self):
        # A function that is only called directly needs none. The compiler's start files bring two of their own.
        self.check_each(lambda file: file.landing_pads() > 2 + file.functions() / 8)

    def test_the_standard_library_is_asked_to_check_its_calls(self):
        self.assertTrue(any(file.imports(r"_ZSt\d+__glibcxx_assert_fail\w*") for file in self.files))

    @unittest.skipUnless(sys.argv[3:] == ["optimised"], "the C library's checks need an optimiser")
    def test_the_c_library_is_asked_to_check_its_calls(self):
        self.assertTrue(any(file.imports(r"__(?!stack)\w+_chk") for file in self.files))


CMAKE, BUILD = sys.argv[1:3]
unittest.main(argv=sys.argv[:1])
