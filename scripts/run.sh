#!/usr/bin/env bash
# Builds Kelvinbar and runs it: the readings of this machine, then those of a made-up sample machine.
# usage: scripts/run.sh [ARGUMENTS OF kelvinbar-snapshot]
set -euo pipefail
cd "$(dirname "$0")/.."

{
  scripts/install-dependencies.sh run
  cmake --preset release
  cmake --build --preset release --target kelvinbar-snapshot
} >&2
program=build/release/tools/kelvinbar-snapshot

if [[ $# -gt 0 ]]; then
  exec "$program" "$@"
fi
printf '\n== This machine\n\n'
"$program"
printf '\n\n== A sample machine (%s --demo)\n\n' "$program"
"$program" --demo
printf '\n'
