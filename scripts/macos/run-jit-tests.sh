#!/usr/bin/env bash
# Runs the tests over I/O Kit as macOS code on x86-64 Linux: compiled to Mach-O objects and linked in memory against a
# fake I/O Kit. Needs llvm-jitlink-14 (llvm-14) and libc++.so.1 (libc++1-19). Code for arm64 runs in an emulator
# (qemu-user-static), with these two for arm64 in the folder ARM64_ROOT.
# usage: ZIG=path-of-zig [ARM64_ROOT=folder] scripts/macos/run-jit-tests.sh x86_64|arm64 BUILD_FOLDER
set -euo pipefail
cd "$(dirname "$0")/../.."
architecture=${1:?is to be x86_64 or arm64}
export zig=${ZIG:?is to be the path of the zig program} build=${2:?is to be a folder}
export processor=${architecture/arm64/aarch64}

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
export flags="-target $processor-macos.11.0 -std=c++20 -O2 -fno-stack-protector -Wall -Wextra -Wpedantic -Wshadow
  -Wconversion -Wsign-conversion -Wglobal-constructors -Werror -I. -Itests/machines/macos/jit
  -isystem tests/macos-declarations -include tests/machines/macos/jit/HostLocks.h"
compile() {
  # shellcheck disable=SC2086
  "$zig" c++ $flags "-I$build" -c "$1" -o "$build/objects/${1//\//_}.o"
}
export -f compile
printf '%s\n' "${tests[@]}" "${support[@]}" "${program[@]}" | xargs -P "$(nproc)" -I{} bash -euc 'compile {}'

linker=(llvm-jitlink-14 -preload libc++.so.1)
if [[ $architecture == arm64 ]]; then
  root=${ARM64_ROOT:?is to be a folder with programs for arm64}
  # Texts are laid out in another way than in the host's libc++: that of macOS, which the compiler builds when it first
  # links for it, comes first.
  echo 'int main() { return 0; }' >"$build/empty.cpp"
  "$zig" c++ -target "$processor-macos.11.0" "$build/empty.cpp" -o "$build/empty"
  for library in "$ZIG_GLOBAL_CACHE_DIR"/o/*/libc++.a; do
    headers=$(llvm-readobj-14 --file-headers "$library" 2>/dev/null)
    if [[ $headers == *"Arch: $processor"* ]]; then library_folder=$(dirname "$library"); fi
  done
  linker=(qemu-aarch64-static -L "$root" "$root/usr/lib/llvm-14/bin/llvm-jitlink" -preload libc++abi.so.1
    "-L$library_folder" -lc++)
fi
timeout 120 "${linker[@]}" "$build"/objects/*.o | tee "$build/output.txt"
if [[ $count -eq 0 || $(tail -n 1 "$build/output.txt") != "$count tests passed" ]]; then
  echo "$count tests were to pass." >&2
  exit 1
fi
