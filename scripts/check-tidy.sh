#!/usr/bin/env bash
# Runs clang-tidy over the program and the console programs. Fails on any finding. Sources of a target are checked
# together, because their headers take most of the time. Benchmarks and tests must pass the same checks, but are checked
# only on request.
# usage: scripts/check-tidy.sh [FOLDER …]   (for example: scripts/check-tidy.sh tests/smc)
set -euo pipefail
cd "$(dirname "$0")/.."
folders=("$@")
[[ ${#folders[@]} -gt 0 ]] || folders=(base catalogue sensors smc store shell panel qt machines desktop app process resources tools)

scripts/install-dependencies.sh check
cmake --preset tidy >/dev/null
cmake --build build/tidy --target kelvinbar_desktop_generated >/dev/null
pattern=$(IFS='|'; echo "${folders[*]}")
# Checks that do not know Objective-C: fast enumeration, BOOL, @available, and blocks, which copy what they capture.
not_for_objective_c=-cppcoreguidelines-init-variables,-readability-implicit-bool-conversion
not_for_objective_c+=,-readability-simplify-boolean-expr,-bugprone-narrowing-conversions
not_for_objective_c+=,-performance-unnecessary-value-param,-performance-unnecessary-copy-initialization

# Newer versions of this check object to initializers of members that g++ asks for.
not_for_newer=
[[ $(clang-tidy --version) == *"version 14."* ]] || not_for_newer=,-readability-redundant-member-init

# is_tidy CHECKS PATTERN…: whether the sources whose paths match are without findings.
is_tidy() {
  run-clang-tidy -quiet -p build/tidy -j "$(nproc)" -checks="$1$not_for_newer" \
    -header-filter="^$PWD/(base|catalogue|sensors|smc|store|shell|panel|qt|machines|desktop|app|process|resources|tools|tests|bench|fuzz)/" \
    "${@:2}" 2>/dev/null
}

# Unity sources include other sources on purpose.
is_tidy -bugprone-suspicious-include \
  "^$PWD/($pattern)/.*\.cpp$" "^$PWD/build/tidy/($pattern)/(?!.*qmlcache).*/Unity/unity_([0-9]+|models)_"
is_tidy "$not_for_objective_c" "^$PWD/($pattern)/.*\.mm$"
echo "Tidy: clean"
