#!/usr/bin/env bash
# Attacks the program as docs/reliability.md says, and prints its table. Fails if a promise was not held.
# usage: scripts/check-reliability.sh [quick|night] [PART …]   (a part is a tests/reliability/test_PART.py; default:
# quick, all parts)
set -euo pipefail
cd "$(dirname "$0")/.."

scale=quick
if [[ ${1:-} == quick || ${1:-} == night ]]; then
  scale=$1
  shift
fi
modules=(tests/reliability/test_*.py)
if [[ $# -gt 0 ]]; then
  modules=("${@/#/tests/reliability/test_}")
  modules=("${modules[@]/%/.py}")
fi

has_part() { [[ " ${modules[*]} " == *" tests/reliability/test_$1.py "* ]]; }

# build PRESET TARGET …, in the folders of scripts/test.sh, where most is built already.
build() {
  cmake --preset "$1" >/dev/null
  cmake --build --preset "$1" --target "${@:2}"
}

scripts/install-dependencies.sh test fuzz reliability
build desktop kelvinbar kelvinbar-demo kelvinbar-panel kelvinbar-xembed kelvinbar-snapshot kelvinbar_attacks
if [[ $scale == night ]] && { has_part faults || has_part memory; }; then build asan kelvinbar_attacks; fi
if has_part fuzz; then build fuzz kelvinbar_fuzz_targets; fi

exec /usr/bin/python3 -B -m pytest -p no:cacheprovider --tb=short -q --scale="$scale" "${modules[@]}"
