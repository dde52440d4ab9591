#!/usr/bin/env bash
# Runs tests as macOS code on x86-64 Linux: compiled to Mach-O objects and linked in memory, over a fake I/O Kit and the C
# library of the host. Needs LLVM's programs in the path, and libc++.so.1 (libc++1-19). Code for arm64 runs in an emulator
# (qemu-user-static), with that program for arm64 in the folder ARM64_ROOT, and with the C++ library for macOS.
#
# Without ARCHIVES, the folder of a build for that architecture, only the tests over I/O Kit run, otherwise all tests of
# the core but those in tests/macos-in-memory/not-run.txt.
# usage: ZIG=path-of-zig [ARM64_ROOT=folder] scripts/macos/run-jit-tests.sh x86_64|arm64 BUILD_FOLDER [ARCHIVES]
set -euo pipefail
cd "$(dirname "$0")/../.."
source scripts/macos/cxx-library.sh
architecture=${1:?is to be x86_64 or arm64}
zig=${ZIG:?is to be the path of the zig program}
mkdir -p "${2:?is to be a folder}"
build=$(realpath "$2")
archives=${3:-}
processor=${architecture/arm64/aarch64}
support=tests/macos-in-memory
export ZIG_GLOBAL_CACHE_DIR=${ZIG_GLOBAL_CACHE_DIR:-$build/cache} ZIG_LOCAL_CACHE_DIR=${ZIG_LOCAL_CACHE_DIR:-$build/cache}

# The tests of each unit, which is compiled as a whole.
declare -A units=([iokit]="tests/machines/macos/IOKitTest.cpp tests/machines/macos/FakeIOKit.cpp")
if [[ -n $archives ]]; then
  for folder in base catalogue sensors smc store shell; do units[$folder]=$(echo tests/$folder/*.cpp); done
  units[machines]=$(echo tests/machines/{replay,demo,linux/naming}/*.cpp)
  units[system]=$(echo tests/machines/macos/{MacPlatform,MacSystemInformation,ReplayThroughIOKit,SystemEntries}Test.cpp)
  units[tools]=$(echo tests/{tools,resources}/*.cpp)
fi

rm -rf "$build/units" "$build/objects"
mkdir -p "$build/units" "$build/objects"
left_out() { grep -q "^$1: " $support/not-run.txt; }

# write_unit NAME SOURCE …
write_unit() {
  local source
  for source in "${@:2}"; do
    if ! left_out "$source"; then echo "$source"; fi
  done >"$build/units/$1.txt"
  sed 's/.*/#include "&"/' "$build/units/$1.txt" >"$build/units/$1.cpp"
  make_initializer_known "$1"
}

# The function that initialises the global objects of a unit is local to it.
make_initializer_known() {
  echo "__asm(\".globl \\\"__GLOBAL__sub_I_$1.cpp\\\"\");" >>"$build/units/$1.cpp"
  echo "INITIALIZER($1)" >>"$build/units/Initializers.inc"
}

for unit in "${!units[@]}"; do
  # shellcheck disable=SC2086
  write_unit "$unit" ${units[$unit]}
done
if [[ -z $archives ]]; then
  printf '#include "%s"\n' machines/macos/{CFValues,IOKitRegistry,IOKitSMCDriver}.cpp base/Value.cpp >"$build/units/program.cpp"
fi
printf '#include "%s"\n' $support/{Runner,HostLibrary,HostThreads,HostCharacters}.cpp >"$build/units/support.cpp"

flags=(-target "$processor-macos.11.0" -std=c++20 -g0 -fno-stack-protector -fno-sanitize=undefined)

# The tests' framework and its precompiled headers, which change with the framework, the compiler and its flags only.
framework=/usr/src/googletest/googletest mocks=/usr/src/googletest/googlemock
version=$({ "$zig" version; echo "${flags[@]}"; find -L "$framework" "$mocks" -name '*.[hc]*' -exec cat {} +; } | sha256sum)
prepared=$ZIG_LOCAL_CACHE_DIR/framework-${version%% *}

# The headers of the framework, separated from the others of this machine.
mkdir -p "$prepared/include"
ln -sfn "$framework/include/gtest" "$prepared/include/gtest"
ln -sfn "$mocks/include/gmock" "$prepared/include/gmock"
printf '#include <%s.h>\n' gmock/gmock gtest/gtest >"$prepared/headers.h"
for part in gtest gmock; do
  echo "#include \"src/$part-all.cc\"" >"$build/units/$part.cpp"
  make_initializer_known $part
done

warnings=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror)
own=(-I. "-I$build/units" -isystem tests/macos-declarations "-DKELVINBAR_ROOT=\"$PWD\"" "${warnings[@]}")
run_compiler() { "$zig" c++ "${flags[@]}" -isystem "$prepared/include" "$@"; }

# compile NAME: compiles a unit, or prepares a part of the framework.
compile() {
  local unit=$build/units/$1.cpp object=$build/objects/$1.o
  case $1 in
    # The time of the source does not count: the compiler's own cache may return what it made of an earlier one.
    headers)
      run_compiler -Xclang -fno-pch-timestamp -x c++-header "$prepared/headers.h" -o "$build/$1" &&
        mv "$build/$1" "$prepared/headers.pch"
      ;;
    gtest | gmock)
      run_compiler -w "-I$framework" "-I$mocks" -c "$unit" -o "$object" && mv "$object" "$prepared/$1.o"
      ;;
    program) run_compiler "${own[@]}" -O2 -c "$unit" -o "$object" ;;
    # Statics are not guarded: the guards need locks, which are among them.
    support) run_compiler "${own[@]}" -O1 -fno-threadsafe-statics -c "$unit" -o "$object" ;;
    *) run_compiler "${own[@]}" -include-pch "$prepared/headers.pch" -c "$unit" -o "$object" ;;
  esac
}

# compile_all NAME …: as many at a time as there are processors.
compile_all() {
  local definitions
  definitions=$(declare -p flags own zig build framework mocks prepared; declare -f run_compiler compile)
  printf '%s\n' "$@" | xargs -r -P "$(nproc)" -I{} bash -euc "$definitions"$'\n''compile {}'
}

missing=()
for file in headers.pch gtest.o gmock.o; do
  [[ -e $prepared/$file ]] || missing+=("${file%.*}")
done
[[ ${#missing[@]} -eq 0 ]] || compile_all "${missing[@]}"
# Those of the most sources first.
mapfile -t names < <(cd "$build/units" && ls -S -- *.cpp | sed 's/\.cpp$//' | grep -vxE 'gtest|gmock')
compile_all "${names[@]}"

unpack_library() {
  echo 'int main() { return 0; }' >"$build/empty.cpp"
  "$zig" c++ -target "$processor-macos.11.0" "$build/empty.cpp" -o "$build/empty"
  mkdir -p "$build/library"
  for library in $(built_cxx_library "$processor"); do (cd "$build/library" && llvm-ar x "$library"); done
  rm -f "$build/library/cxa_noexception.o" # defines what others define
}

objects=("$prepared"/{gtest,gmock}.o "$build"/objects/*.o)
if [[ $architecture == arm64 ]]; then
  # Texts are laid out in another way than in the host's C++ library.
  root=${ARM64_ROOT:?is to be a folder with programs for arm64}
  linker=(qemu-aarch64-static -L "$root" "$root$(llvm-config --bindir)/llvm-jitlink")
  unpack_library
  objects+=("$build"/library/*.o)
else
  linker=(llvm-jitlink -preload libc++.so.1)
fi
libraries=()
if [[ -n $archives ]]; then
  for library in "$archives"/{tools/libkelvinbar_tools,tools/cost/libkelvinbar_own_cost,process/libkelvinbar_process,panel/libkelvinbar_panel_content,machines/demo/libkelvinbar_demo,machines/replay/libkelvinbar_replay,machines/linux/naming/libkelvinbar_sensor_names,machines/macos/libkelvinbar_macos,resources/libkelvinbar_resources,libkelvinbar_core}.a; do
    name=$(basename "$library" .a)
    libraries+=("-L$(dirname "$library")" "-l${name#lib}")
  done
fi

filter=$(sed -nE 's/^(\w+\.\w+): .*/\1/p' $support/not-run.txt | paste -sd :)
timeout 600 "${linker[@]}" "${objects[@]}" "${libraries[@]}" \
  --args tests "--gtest_filter=-$filter" >"$build/output.txt" 2>"$build/errors.txt" || {
  sed -E '/^\[ *(OK|RUN|-+) *\]/d' "$build/output.txt" >&2
  tail -n 20 "$build/errors.txt" >&2
  exit 1
}

# Every test in the sources, but those that are left out, has passed. (Tests with parameters are counted by their framework.)
tests_in() { sed -nE 's/^ *TEST(_F)?\((\w+), (\w+)\).*/\2.\3/p' "$@"; }
# shellcheck disable=SC2046
tests_in $(cat "$build"/units/*.txt) | sort >"$build/tests.txt"
sed -nE 's/^(\w+\.\w+): .*/\1/p' $support/not-run.txt | sort >"$build/left-out.txt"
sed -nE 's/^\[ +OK \] (\w+\.\w+) .*/\1/p' "$build/output.txt" | sort >"$build/passed.txt"
diff <(comm -23 "$build/tests.txt" "$build/left-out.txt") "$build/passed.txt" >&2 || { echo "Other tests ran than those in the sources." >&2; exit 1; }
[[ -s $build/passed.txt ]] || { echo "There are no tests." >&2; exit 1; }
echo "$(grep -c '^\[ *OK' "$build/output.txt") tests passed"
