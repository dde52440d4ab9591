#!/usr/bin/env bash
# Installs the Debian packages that a task needs and that are missing; with none missing it needs no root.
# usage: scripts/install-dependencies.sh run|test|check|bench|fuzz …
set -euo pipefail

build=(g++ cmake ninja-build libcli11-dev)
declare -A packages=(
  [run]="${build[*]}"
  [test]="${build[*]} libgtest-dev libgmock-dev locales"
  [check]="${build[*]} libgtest-dev libgmock-dev locales libbenchmark-dev clang-format clang-tidy git"
  [bench]="${build[*]} libbenchmark-dev"
  [fuzz]="${build[*]} clang libclang-rt-14-dev"
)

missing=()
for task in "$@"; do
  [[ -n ${packages[$task]:-} ]] || { echo "install-dependencies.sh: unknown task '$task'" >&2; exit 2; }
  for package in ${packages[$task]}; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

as_root=()
if [[ $(id -u) -ne 0 ]]; then
  command -v sudo >/dev/null || {
    echo "Please install as root: apt-get install ${missing[*]}" >&2
    exit 1
  }
  as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
