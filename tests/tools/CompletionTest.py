#!/usr/bin/env python3
"""The completions in the shells themselves, and the manual page. usage: CompletionTest.py SNAPSHOT MANUAL"""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SNAPSHOT, MANUAL = sys.argv[1:3]
del sys.argv[1:3]

BASH = """
source <("$1" --completion bash)
COMP_WORDS=(kelvinbar-snapshot "${@:2}")
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
_kelvinbar_snapshot
printf '%s\\n' "${COMPREPLY[@]}"
"""
# Started by an interactive shell: Ctrl+T writes its line to the file $LINE, which a completion has changed.
BASH_START = """
source <("$SNAPSHOT" --completion bash)
bind -x '"\\C-t": printf %s "$READLINE_LINE" >"$LINE"; exit'
"""
FISH = 'source ($argv[1] --completion fish | psub); complete -C "kelvinbar-snapshot $argv[2..]"'
# An interactive shell at a pseudo-terminal, in which $3 makes the script in the folder $1 known. Its matches are written
# to a file there: what it draws is for people. What is typed before its line editor runs would be lost.
ZSH = r"""
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell "PS1=; folder=$1; offered=$1/offered; autoload -Uz compinit; $3"
zpty -w shell 'compadd() {
  local -a matches
  (( ${argv[(I)-[AOD]]} )) || { builtin compadd -A matches "$@"; print -rl -- $matches >>$offered }
  builtin compadd "$@"
}'
zpty -w shell 'completed() { zle complete-word; print do""ne }; zle -N completed; bindkey "^I" completed'
zpty -w shell 'zle-line-init() { print rea""dy }; zle -N zle-line-init'
zpty -r shell drawn '*ready*'
zpty -w -n shell "$2"$'\t'
zpty -r shell drawn '*done*'
"""


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True, timeout=60).stdout


def in_bash(*words):
    return output_of("bash", "-c", BASH, "bash", SNAPSHOT, *words).split()


def in_fish(*words):
    return [line.split("\t")[0] for line in output_of("fish", "-c", FISH, SNAPSHOT, " ".join(words)).splitlines()]


def typed_in_bash(line, folder):
    """The line after a tab, in a shell that works in `folder`."""
    result, start = Path(folder) / ".line", Path(folder) / ".start"
    start.write_text(BASH_START, encoding="utf-8")
    keyboard, terminal = os.openpty()
    os.write(keyboard, f"{line}\t\x14".encode())
    subprocess.run(
        ["bash", "--noprofile", "--rcfile", start, "-i"],
        stdin=terminal,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
        cwd=folder,
        env={**os.environ, "SNAPSHOT": str(Path(SNAPSHOT).resolve()), "LINE": str(result), "INPUTRC": "/dev/null"},
        start_new_session=True,
        timeout=60,
    )
    os.close(keyboard)
    os.close(terminal)
    return result.read_text(encoding="utf-8")


def in_zsh_that(*words, knows):
    with tempfile.TemporaryDirectory() as folder:
        (Path(folder) / "_kelvinbar-snapshot").write_text(output_of(SNAPSHOT, "--completion", "zsh"))
        offered = Path(folder) / "offered"
        offered.touch()
        output_of("zsh", "-f", "-c", ZSH, "zsh", folder, " ".join(["kelvinbar-snapshot", *words]), knows)
        return offered.read_text().split()


def in_zsh(*words):
    """As a package installs the script."""
    return in_zsh_that(*words, knows="fpath=($folder $fpath); compinit -D -u")


def in_zsh_that_sources_it(*words):
    return in_zsh_that(*words, knows="compinit -D -u; source $folder/_kelvinbar-snapshot")


SHELLS = [in_bash, in_fish, in_zsh, in_zsh_that_sources_it]


def documented_options():
    return set(re.findall(r"^ +(?:-\w,)?(--[a-z][a-z-]*)", output_of(SNAPSHOT, "--help"), re.MULTILINE))


class CompletionTest(unittest.TestCase):
    def assert_completed(self, words, expected, shells=SHELLS):
        for complete in shells:
            with self.subTest(shell=complete.__name__, words=words):
                self.assertEqual(sorted(complete(*words)), expected)

    def test_every_option_of_the_help_is_completed(self):
        self.assertGreater(len(documented_options()), 10)
        for complete in SHELLS:
            with self.subTest(shell=complete.__name__):
                self.assertLessEqual(documented_options(), set(complete("--")))

    def test_a_value_is_completed(self):
        self.assert_completed(["--format", "j"], ["json", "jsonl"])
        self.assert_completed(["--demo", "linux"], ["linux-pc"])
        self.assert_completed(["--completion", "z"], ["zsh"])

    def test_a_value_after_an_equals_sign_is_completed(self):
        self.assert_completed(["--format", "=", "ope"], ["openmetrics"], [in_bash])
        self.assert_completed(["--format=ope"], ["openmetrics"], [in_zsh, in_zsh_that_sources_it])
        self.assert_completed(["--format=ope"], ["--format=openmetrics"], [in_fish])

    def test_options_are_completed_behind_an_optional_value(self):
        for words in [["--demo"], ["--demo", "amd-pc"], ["--watch"], ["--watch", "2"]]:
            self.assert_completed([*words, "--for"], ["--format"])

    def test_further_values_are_completed(self):
        self.assert_completed(["--category", "cpu", "fan"], ["fans"])
        self.assert_completed(["--category", "cpu", "--category", "fan"], ["fans"])
        self.assert_completed(["--category=cpu", "fan"], ["fans"], [in_fish, in_zsh])
        self.assert_completed(["--category", "cpu", "gpu", "--format", "waybar", "fan"], [], [in_fish, in_zsh])

    def test_options_are_completed_behind_several_values(self):
        for words in [["--category", "cpu", "fans"], ["--key", "TC0P", "F0Ac"]]:
            self.assert_completed([*words, "--for"], ["--format"])
            self.assert_completed([*words, "--format", "wayb"], ["waybar"])

    def test_files_are_completed(self):
        for words in [["--replay"], ["--diff"], ["--diff", "/etc/group"]]:
            for complete in SHELLS[1:]:
                with self.subTest(shell=complete.__name__, words=words):
                    offered = [Path(path).name for path in complete(*words, "/etc/passw")]
                    self.assertIn("passwd", offered)

    def test_bash_completes_files_with_spaces_and_quotes_them(self):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "before it's warm.txt").touch()
            for options in ["--replay", "--diff", "--diff /etc/group"]:
                with self.subTest(options=options):
                    line = typed_in_bash(f"kelvinbar-snapshot {options} bef", folder)
                    self.assertEqual(line, f"kelvinbar-snapshot {options} before\\ it\\'s\\ warm.txt ")

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
