#!/usr/bin/env bash
# Runs clang-tidy over the program, the console programs and the benchmarks. Fails on any finding. Sources of a target
# are checked together, because their headers take most of the time. Tests must pass the same checks, but take a quarter
# of an hour, so they are checked only on request.
# usage: scripts/check-tidy.sh [FOLDER …]   (for example: scripts/check-tidy.sh tests/smc)
set -euo pipefail
cd "$(dirname "$0")/.."
folders=("$@")
[[ ${#folders[@]} -gt 0 ]] || folders=(base catalogue sensors smc store shell panel qt machines desktop app resources tools bench)

scripts/install-dependencies.sh check
cmake --preset tidy >/dev/null
pattern=$(IFS='|'; echo "${folders[*]}")
# Unity sources include other sources on purpose.
run-clang-tidy -quiet -p build/tidy -j "$(nproc)" -checks=-bugprone-suspicious-include \
  -header-filter="^$PWD/(base|catalogue|sensors|smc|store|shell|panel|qt|machines|desktop|app|resources|tools|tests|bench|fuzz)/" \
  "^$PWD/($pattern)/" "^$PWD/build/tidy/($pattern)/(?!.*qmlcache).*/Unity/unity_([0-9]+|models)_" 2>/dev/null
echo "Tidy: clean"
