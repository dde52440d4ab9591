#!/usr/bin/env bash
# Installs the Debian packages that a task needs where their content is missing; with nothing missing it needs
# no root. usage: scripts/install-dependencies.sh run|test|check|bench|fuzz …
set -euo pipefail

# package -> a program or a file that tells whether its content is here, wherever that came from
declare -A evidence=(
  [g++]=g++ [cmake]=cmake [ninja-build]=ninja [libcli11-dev]=/usr/include/CLI/CLI.hpp
  [libgtest-dev]=/usr/include/gtest/gtest.h [libgmock-dev]=/usr/include/gmock/gmock.h
  [locales]=/usr/share/i18n/locales/de_DE [libbenchmark-dev]=/usr/include/benchmark/benchmark.h
  [clang-format]=clang-format [clang-tidy]=run-clang-tidy [git]=git
  [libsensors-dev]=/usr/include/sensors/sensors.h [strace]=strace
  [clang]=clang++ [libclang-rt-14-dev]='/usr/lib/llvm-14/lib/clang/*/lib/linux/libclang_rt.fuzzer-*.a'
)
build="g++ cmake ninja-build libcli11-dev"
declare -A packages=(
  [run]="$build"
  [test]="$build libgtest-dev libgmock-dev locales"
  [check]="$build libgtest-dev libgmock-dev locales libbenchmark-dev clang-format clang-tidy git"
  [bench]="$build libbenchmark-dev libsensors-dev strace"
  [fuzz]="$build clang libclang-rt-14-dev"
)

is_here() {
  case $1 in
    /*) compgen -G "$1" >/dev/null ;;
    *) command -v "$1" >/dev/null ;;
  esac
}

missing=()
for task in "$@"; do
  [[ -n ${packages[$task]:-} ]] || { echo "install-dependencies.sh: unknown task '$task'" >&2; exit 2; }
  for package in ${packages[$task]}; do
    is_here "${evidence[$package]}" || missing+=("$package")
  done
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

as_root=()
[[ $(id -u) -eq 0 ]] || as_root=(sudo)
if ! command -v apt-get >/dev/null || ! command -v "${as_root[0]:-true}" >/dev/null; then
  echo "Please install what these Debian packages hold: ${missing[*]}" >&2
  exit 1
fi
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
