#!/usr/bin/env bash
# Runs clang-tidy over every source of the program, its tests and its benchmarks; any finding fails.
# usage: scripts/check-tidy.sh [PATH PATTERN]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh check
cmake --preset dev -B build/tidy -D KELVINBAR_BENCH=ON -D CMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
# The embedded texts are generated, and are no code of ours.
run-clang-tidy -quiet -p build/tidy -j "$(nproc)" "^$PWD/(?!build/)${1:-.*}" 2>/dev/null
echo "Tidy: clean"
