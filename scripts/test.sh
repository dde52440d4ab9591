#!/usr/bin/env bash
# Builds and runs all tests under the address and undefined-behaviour sanitizers, then the whole program, built as
# users run it, in real panels. usage: scripts/test.sh [PRESET …]   (asan and desktop unless told)
set -euo pipefail
cd "$(dirname "$0")/.."
presets=("$@")
[[ ${#presets[@]} -gt 0 ]] || presets=(asan desktop)

scripts/install-dependencies.sh test
for preset in "${presets[@]}"; do
  echo "== $preset"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
  ctest --preset "$preset" --parallel "$(nproc)"
done
