#!/usr/bin/env bash
# Runs clang-tidy over the program, its console programs and its benchmarks; any finding fails. Sources of a target are
# looked at together, since their headers take most of the time. The tests are held to the same checks, but take a
# quarter of an hour: name them to have them checked.
# usage: scripts/check-tidy.sh [FOLDER …]   (for example: scripts/check-tidy.sh tests/smc)
set -euo pipefail
cd "$(dirname "$0")/.."
folders=("$@")
[[ ${#folders[@]} -gt 0 ]] || folders=(base catalogue smc store shell panel qt machines desktop app resources tools bench)

scripts/install-dependencies.sh check
cmake --preset dev -B build/tidy -D KELVINBAR_BENCH=ON -D CMAKE_DISABLE_PRECOMPILE_HEADERS=ON \
  -D CMAKE_UNITY_BUILD=ON -D CMAKE_UNITY_BUILD_BATCH_SIZE=10 >/dev/null
pattern=$(IFS='|'; echo "${folders[*]}")
# What is put together is no header, and is included on purpose.
run-clang-tidy -quiet -p build/tidy -j "$(nproc)" -checks=-bugprone-suspicious-include \
  -header-filter="^$PWD/(base|catalogue|smc|store|shell|panel|qt|machines|desktop|app|resources|tools|tests|bench|fuzz)/" \
  "^$PWD/($pattern)/" "^$PWD/build/tidy/($pattern)/(?!.*qmlcache).*/Unity/unity_([0-9]+|models)_" 2>/dev/null
echo "Tidy: clean"
