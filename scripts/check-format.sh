#!/usr/bin/env bash
# Checks that all sources are formatted with clang-format, or formats them. usage: scripts/check-format.sh [--fix]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh check
mode=(--dry-run --Werror)
[[ ${1:-} == --fix ]] && mode=(-i)
git ls-files -z '*.cpp' '*.h' '*.mm' | xargs -0 clang-format "${mode[@]}"
echo "Format: clean"
