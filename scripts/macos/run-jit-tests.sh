#!/usr/bin/env bash
# Runs the tests over I/O Kit as macOS code on x86-64 Linux: compiled to Mach-O objects and linked in memory against a
# fake I/O Kit. Needs llvm-jitlink-14 (llvm-14) and libc++.so.1 (libc++1-19).
# usage: ZIG=path-of-zig scripts/macos/run-jit-tests.sh [BUILD_FOLDER]   (default: build/macos/jit)
set -euo pipefail
cd "$(dirname "$0")/../.."
export zig=${ZIG:?is to be the path of the zig program} build=${1:-build/macos/jit}

program=(machines/macos/{CFValues,IOKitRegistry,IOKitSMCDriver}.cpp base/Value.cpp)
tests=(tests/machines/macos/IOKitTest.cpp)
support=(tests/machines/macos/FakeIOKit.cpp tests/machines/macos/jit/{Runner,HostLibrary}.cpp)

mkdir -p "$build"
build=$(realpath "$build")
rm -rf "$build/objects"
mkdir "$build/objects"
export ZIG_GLOBAL_CACHE_DIR=${ZIG_GLOBAL_CACHE_DIR:-$build/cache} ZIG_LOCAL_CACHE_DIR=${ZIG_LOCAL_CACHE_DIR:-$build/cache}

# Counts everything that looks like a test, so that none can be missing from the list unnoticed.
sed -nE 's/^TEST(_F)?\((\w+), (\w+)\).*/TEST_CASE(\2, \3)/p' "${tests[@]}" >"$build/TestList.inc"
count=$(cat "${tests[@]}" | grep -cE '\bTEST(_[FP])?\(') || { echo "There are no tests." >&2; exit 1; }

# Constructors of global objects would not run, so they are errors.
export flags="-target x86_64-macos.11.0 -std=c++20 -O2 -fno-stack-protector -Wall -Wextra -Wpedantic -Wshadow
  -Wconversion -Wsign-conversion -Wglobal-constructors -Werror -I. -Itests/machines/macos/jit
  -isystem tests/macos-declarations -include tests/machines/macos/jit/HostLocks.h"
compile() {
  # shellcheck disable=SC2086
  "$zig" c++ $flags "-I$build" -c "$1" -o "$build/objects/${1//\//_}.o"
}
export -f compile
printf '%s\n' "${tests[@]}" "${support[@]}" "${program[@]}" | xargs -P "$(nproc)" -I{} bash -euc 'compile {}'

timeout 60 llvm-jitlink-14 -preload libc++.so.1 "$build"/objects/*.o | tee "$build/output.txt"
if [[ $count -eq 0 || $(tail -n 1 "$build/output.txt") != "$count tests passed" ]]; then
  echo "$count tests were to pass." >&2
  exit 1
fi
