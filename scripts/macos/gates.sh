# Checks of the code for macOS that run on Linux. Each fails with a message. What it checks is an argument, so that
# scripts/macos/prove-gates.sh can pass it code with mistakes.
declarations=tests/macos-declarations
oldest_system=11.0

# command_for TARGET PATTERN: the last command matching PATTERN with which the arm64 build creates TARGET.
command_for() { ninja -C "$work/arm64/build" -t commands "$1" | grep -E -- "$2" | tail -n 1; }

# compiles TARGET SOURCE [DECLARATIONS]: SOURCE compiles as Objective-C++ with the flags of TARGET.
compiles() {
  local command
  command=$(command_for "$1" ' -c .*\.mm$' | sed "
    s# -MD .* -c .*# -c '$(realpath "$2")' -o '$work/compiled.o'#
    s#[^ ]*$declarations#$(realpath "${3:-$declarations}")#")
  (cd "$work/arm64/build" && bash -c "$command")
}

# Sets `compiler` to the command that compiles the core's C++ sources, without a source.
set_compiler() {
  local command
  command=$(command_for kelvinbar_macos ' -c .*\.cxx$')
  eval "compiler=(${command%% -MD *})"
}

# compiles_over_toolkit SOURCE …: the sources compile with this machine's headers of the toolkit. Does not link.
compiles_over_toolkit() {
  local headers=/usr/include/x86_64-linux-gnu/qt6 modules compiler
  modules=(QtCore QtGui QtNetwork QtQml QtQmlIntegration QtQmlModels QtQuick)
  set_compiler
  mkdir -p "$work/objects"
  # xargs puts the source last.
  # shellcheck disable=SC2016
  printf '%s\0' "$@" | xargs -0 -P "$(nproc)" -n 1 bash -euc '"$@" -o "$0/$(basename "${@: -1}").o"' "$work/objects" \
    "${compiler[@]}" -isystem "$headers" "${modules[@]/#/-isystem$headers/}" -DKELVINBAR_STANDARD_DOTS_PER_INCH=72 \
    '-DKELVINBAR_AUTHOR=""' '-DKELVINBAR_CONTACT=""' '-DKELVINBAR_DONATION_PAGE=""' '-DKELVINBAR_VERSION=""' \
    '-DKELVINBAR_ROUNDED_FONTS=""' -c
}

# compiles_test SOURCE
compiles_test() {
  local compiler
  set_compiler
  "${compiler[@]}" -isystem "$work/libraries/include" -c "$1" -o "$work/test.o"
}

# links LIBRARY STUBS: the desktop folder links against the stubs of the system's libraries.
links() {
  local command
  command=$(command_for kelvinbar_cocoa_complete ' -dynamiclib ' | sed "
    s#[^ ]*$declarations/stubs/Frameworks#-F$2/Frameworks#
    s#[^ ]*$declarations/stubs/lib#-L$2/lib#
    s# -o [^ ]*# -o $1#")
  (cd "$work/arm64/build" && bash -c "$command")
}

# The symbols that a program imports from frameworks and the Objective-C runtime, one "FRAMEWORK SYMBOL [weak]" per line.
imports_of() {
  llvm-nm --undefined-only -m "$1" |
    sed -nE 's/^ *\(undefined\) (weak )?external ([^ ]+) \(from ([^)]*)\)$/\3 \2 \1/p' |
    grep -vE '^lib(System|c\+\+) ' | sed 's/ *$//' | sort
}

# imports_are PROGRAM LIST: the imports equal the list. Lines that end in "(ARCHITECTURE)" are for that one only.
imports_are() {
  local architecture
  architecture=$(llvm-lipo -archs "$1" | xargs)
  diff -u --label "$2" --label "$1" <(sed -E "/^#/d; s/ \($architecture\)$//; /\)$/d" "$2" | sort) <(imports_of "$1") || {
    echo "The imports of $1 are others than those of $2." >&2
    return 1
  }
}

# loads_as_meant PROGRAM: the program is for macOS, runs on the oldest supported version, and loads only libraries of
# the system.
loads_as_meant() {
  local headers libraries others
  headers=$(llvm-objdump --macho --private-headers "$1")
  awk -v oldest="$oldest_system" '
    $1 == "platform" { platform = $2 } $1 == "minos" { minimum = $2 }
    END { exit !(platform == "macos" && minimum == oldest) }' <<<"$headers" || {
    echo "$1 is not for macOS from $oldest_system on." >&2
    return 1
  }
  libraries=$(llvm-objdump --macho --dylibs-used "$1")
  # The first line names the program; a library names itself.
  others=$(sed "1d; \#^\s/System/Library/Frameworks/#d; \#^\s/usr/lib/#d; /$(basename "$1")/d" <<<"$libraries")
  [[ -z $others ]] || { echo "$1 loads what no Mac has: $others" >&2; return 1; }
}

# has_both_architectures PROGRAM
has_both_architectures() {
  [[ $(llvm-lipo -archs "$1" | xargs -n 1 | sort | xargs) == "arm64 x86_64" ]] || {
    echo "$1 is not for both architectures." >&2
    return 1
  }
}

# is_analysed SOURCE …: the analyser has no findings, including reference counts.
is_analysed() {
  local library=$toolchain/lib
  printf '%s\0' "$@" | xargs -0 -P "$(nproc)" -n 1 clang++-19 --analyze --target=arm64-apple-macos$oldest_system \
    -std=c++20 -fobjc-arc -I. -nostdinc -D_LIBCPP_ABI_VERSION=1 -D_LIBCPP_ABI_NAMESPACE=__1 \
    -D_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS -D_LIBCPP_HARDENING_MODE=_LIBCPP_HARDENING_MODE_NONE \
    -D_LIBCPP_PSTL_BACKEND_SERIAL \
    -isystem "$declarations" -isystem "$library/libcxx/include" -isystem "$library/libcxxabi/include" \
    -isystem "$library/include" -isystem "$library/libc/include/any-macos-any" \
    -Xanalyzer -analyzer-output=text -Xanalyzer -analyzer-werror -Xanalyzer -analyzer-checker=osx,cplusplus
}

# tests_pass_in_memory FOLDER ARCHITECTURE [ARCHIVES]: the tests over I/O Kit, and with the folder of a build those of the
# core, pass, compiled for macOS and linked in memory.
tests_pass_in_memory() {
  ZIG=$toolchain/zig ARM64_ROOT=$work/arm64-root "$1/scripts/macos/run-jit-tests.sh" "$2" "$work/jit-$2${3:+-core}" "${@:3}"
}

# agrees_with_sdk DECLARATIONS: the SDK has what the headers in that folder declare.
agrees_with_sdk() {
  local library=$toolchain/lib headers=(AppKit/AppKit CoreServices/CoreServices CoreText/CoreText IOKit/IOKitLib ServiceManagement/ServiceManagement)
  printf '#import <%s.h>\n' "${headers[@]}" |
    clang++-19 --target=arm64-apple-macos$oldest_system -std=c++20 -x objective-c++ -fobjc-arc -nostdinc -isystem "$1" \
      -isystem "$library/include" -isystem "$library/libc/include/any-macos-any" \
      -fsyntax-only -Xclang -ast-dump=json - |
    scripts/macos/check_declarations.py "$work/node_modules/@nativescript/macos-node-api/types" "$1"
}

# core_command TARGET PATTERN: the same as command_for, in the build for this machine.
core_command() { ninja -C build/core -t commands "$1" | grep -E -- "$2" | tail -n 1; }

# compiles_for_fake SOURCE OBJECT [FLAG …]: compiles SOURCE as the file of its name is compiled for the fake system.
compiles_for_fake() {
  local command
  rm -f "$2"
  command=$(core_command kelvinbar_cocoa_tests " -c .*/$(basename "$1")$" | sed "
    s# -MD .* -c .*# ${*:3} -c '$(realpath "$1")' -o '$2'#")
  [[ -n $command ]] || { echo "$(basename "$1") is not compiled by itself." >&2; return 1; }
  (cd build/core && bash -c "$command")
}

# links_with_fake PROGRAM OBJECT …: links the tests over the fake system. The objects replace those of the build.
links_with_fake() {
  local command
  command=$(core_command kelvinbar_cocoa_tests ' -o tests/macos-runtime/kelvinbar_cocoa_tests ' | sed "
    s/^: && //; s/ && .*//
    s# -o [^ ]*# ${*:2} -o $1#")
  (cd build/core && bash -c "$command")
}

# runs_over_fake PROGRAM
runs_over_fake() {
  "$1" --gtest_brief=1 2>&1 || {
    echo "The tests over the fake system ended with status $?."
    return 1
  }
}

# passes_over_fake SOURCE: the tests over the fake system pass with SOURCE in place of the file of its name.
passes_over_fake() {
  local folder=$work/replaced
  mkdir -p "$folder"
  compiles_for_fake "$1" "$folder/source.o" && links_with_fake "$folder/tests" "$folder/source.o" &&
    runs_over_fake "$folder/tests"
}

# covers_over_fake PERCENT SOURCE …: the tests over the fake system run that share of the lines of each source.
covers_over_fake() {
  local folder=$work/coverage source objects=()
  mkdir -p "$folder"
  for source in "${@:2}"; do
    objects+=("$folder/$(basename "$source").o")
    compiles_for_fake "$source" "${objects[-1]}" -fprofile-instr-generate -fcoverage-mapping || return 1
  done
  links_with_fake "$folder/tests" "${objects[@]}" -u__llvm_profile_runtime \
    "$(clang++ -print-resource-dir)/lib/linux/libclang_rt.profile-x86_64.a" &&
    LLVM_PROFILE_FILE=$folder/counts runs_over_fake "$folder/tests" >/dev/null &&
    llvm-profdata merge "$folder/counts" -o "$folder/merged" &&
    llvm-cov export --summary-only --instr-profile="$folder/merged" "$folder/tests" "${@:2}" |
    scripts/macos/line_coverage.py "$1"
}
