#!/usr/bin/env python3
"""The completions in the shells themselves, and the manual page. usage: CompletionTest.py SNAPSHOT MANUAL"""

import re
import subprocess
import sys
import unittest

SNAPSHOT, MANUAL = sys.argv[1:3]
del sys.argv[1:3]

BASH = """
source <("$1" --completion bash)
compopt() { :; }
COMP_WORDS=(kelvinbar-snapshot "${@:2}")
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
_kelvinbar_snapshot
printf '%s\\n' "${COMPREPLY[@]}"
"""
FISH = 'source ($argv[1] --completion fish | psub); complete -C "kelvinbar-snapshot $argv[2..]"'
ZSH = '_arguments() { print -rl -- "$@" }; source <("$1" --completion zsh)'


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True, timeout=60).stdout


def in_bash(*words):
    return output_of("bash", "-c", BASH, "bash", SNAPSHOT, *words).split()


def in_fish(*words):
    return [line.split("\t")[0] for line in output_of("fish", "-c", FISH, SNAPSHOT, " ".join(words)).splitlines()]


def documented_options():
    return set(re.findall(r"^ +(?:-\w,)?(--[a-z][a-z-]*)", output_of(SNAPSHOT, "--help"), re.MULTILINE))


class CompletionTest(unittest.TestCase):
    def test_bash_and_fish_complete_every_option_of_the_help(self):
        self.assertGreater(len(documented_options()), 10)
        for complete in [in_bash, in_fish]:
            self.assertLessEqual(documented_options(), set(complete("--")))

    def test_bash_and_fish_complete_a_value(self):
        for complete in [in_bash, in_fish]:
            self.assertEqual(sorted(complete("--format", "j")), ["json", "jsonl"])
            self.assertEqual(complete("--demo", "linux"), ["linux-pc"])
            self.assertEqual(complete("--completion", "z"), ["zsh"])

    def test_bash_completes_a_value_after_an_equals_sign(self):
        self.assertEqual(in_bash("--format", "=", "ope"), ["openmetrics"])

    def test_bash_completes_further_values(self):
        self.assertEqual(in_bash("--category", "cpu", "fan"), ["fans"])

    def test_bash_completes_files(self):
        self.assertIn("/etc/passwd", in_bash("--replay", "/etc/passw"))

    def test_zsh_gets_every_option_and_its_values(self):
        specs = output_of("zsh", "-f", "-c", ZSH, "zsh", SNAPSHOT)
        for option in documented_options():
            self.assertRegex(specs, rf"(?m)^\*?{option}\[")
        self.assertRegex(specs, r"(?m)^--format\[.*\]:NAME:\(text json jsonl")

    def test_the_manual_page_has_every_option_and_is_formatted_without_complaints(self):
        formatted = subprocess.run(
            ["man", "--warnings=all", "--local-file", MANUAL],
            capture_output=True,
            text=True,
            env={"MANWIDTH": "100", "LC_ALL": "C.UTF-8", "PATH": "/usr/bin:/bin"},
            check=True,
        )
        self.assertEqual(formatted.stderr, "")
        self.assertLessEqual(documented_options(), set(re.findall(r"--[a-z][a-z-]*", formatted.stdout)))


if __name__ == "__main__":
    unittest.main()
