#!/usr/bin/env bash
# Fails when a source is not as clang-format would write it. usage: scripts/check-format.sh [--fix]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh check
mode=(--dry-run --Werror)
[[ ${1:-} == --fix ]] && mode=(-i)
git ls-files -z '*.cpp' '*.h' '*.mm' | xargs -0 clang-format "${mode[@]}"
echo "Format: clean"
