#!/usr/bin/env bash
# Runs each fuzz target for SECONDS, starting with the seeds in the repository.
# usage: scripts/fuzz.sh [SECONDS]   (default: 60)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
[[ $seconds =~ ^[0-9]+$ ]] || { echo "usage: scripts/fuzz.sh [SECONDS]" >&2; exit 2; }

scripts/install-dependencies.sh fuzz
cmake --preset fuzz -D KELVINBAR_FUZZ_SECONDS="$seconds" >/dev/null
cmake --workflow --preset fuzz
