#!/usr/bin/env bash
# Runs each fuzz target for SECONDS, starting with the seeds in the repository, and prints what they reach. To run one:
# KELVINBAR_FUZZ_SECONDS=60 ctest --preset fuzz -R fuzz.preferences -V
# usage: scripts/fuzz.sh [SECONDS]   (default: 60)
#        scripts/fuzz.sh keep         adds to the seeds what the runs have found that reaches more
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
[[ $seconds == keep || $seconds =~ ^[0-9]+$ ]] || { echo "usage: scripts/fuzz.sh [SECONDS|keep]" >&2; exit 2; }

# keep TARGET: adds to its seeds the fewest inputs of the build folder's corpus that reach more branches.
keep() {
  "build/fuzz/fuzz/fuzz_$1" -set_cover_merge=1 -use_counters=0 -max_len=4096 "fuzz/seeds/$1" "build/fuzz/corpus/$1"
}

scripts/install-dependencies.sh fuzz
if [[ $seconds == keep ]]; then
  cmake --preset fuzz >/dev/null
  cmake --build --preset fuzz
  for seeds in fuzz/seeds/*; do keep "$(basename "$seeds")"; done
else
  KELVINBAR_FUZZ_SECONDS=$seconds cmake --workflow --preset fuzz
fi
