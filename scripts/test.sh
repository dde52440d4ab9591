#!/usr/bin/env bash
# Builds and runs all tests, first as they are, then under the address and undefined-behaviour sanitizers.
# usage: scripts/test.sh [PRESET …]   (dev and asan unless told)
set -euo pipefail
cd "$(dirname "$0")/.."
presets=("$@")
[[ ${#presets[@]} -gt 0 ]] || presets=(dev asan)

scripts/install-dependencies.sh test
for preset in "${presets[@]}"; do
  echo "== $preset"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  ctest --preset "$preset" --parallel "$(nproc)"
done
