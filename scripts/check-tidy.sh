#!/usr/bin/env bash
# Runs clang-tidy over the program, its console programs and its benchmarks; any finding fails. The tests are
# held to the same checks, but take a quarter of an hour: name them to have them checked.
# usage: scripts/check-tidy.sh [FOLDER …]   (for example: scripts/check-tidy.sh tests/smc)
set -euo pipefail
cd "$(dirname "$0")/.."
folders=("$@")
[[ ${#folders[@]} -gt 0 ]] || folders=(base catalogue smc store shell panel platform resources tools bench)

scripts/install-dependencies.sh check
cmake --preset dev -B build/tidy -D KELVINBAR_BENCH=ON -D CMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
pattern=$(IFS='|'; echo "${folders[*]}")
run-clang-tidy -quiet -p build/tidy -j "$(nproc)" "^$PWD/($pattern)/" 2>/dev/null
echo "Tidy: clean"
