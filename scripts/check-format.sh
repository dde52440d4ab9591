#!/usr/bin/env bash
# Checks that all sources are formatted, or formats them, with a version of clang-format that Debian 12 and 13 both have.
# usage: scripts/check-format.sh [--fix]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh check
mode=(--dry-run --Werror)
[[ ${1:-} == --fix ]] && mode=(-i)
git ls-files -z '*.cpp' '*.h' '*.mm' | xargs -0 clang-format-19 "${mode[@]}"
echo "Format: clean"
