#!/usr/bin/env bash
# Builds and runs all tests under the address and undefined-behaviour sanitizers, then tests the release build in real
# panels. usage: scripts/test.sh [PRESET …]   (default: asan desktop; desktops: the release build in whole desktops,
# which take hundreds of packages)
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh test
export CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL:-$(nproc)}
[[ $# -gt 0 ]] || set -- asan desktop
for preset in "$@"; do
  [[ $preset != desktops ]] || scripts/install-dependencies.sh desktops
  cmake --workflow --preset "$preset"
done
