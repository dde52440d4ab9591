# Proves that every gate detects a mistake of its kind. Stops if a mistake passes, or fails for another reason.

# mistake FILE EDIT: prints the path of a copy of FILE, edited with sed.
mistake() {
  local copy
  copy=$work/mistakes/$(basename "$1")
  sed -E "$2" "$1" >"$copy"
  ! cmp -s "$1" "$copy" || { echo "An edit changes nothing in $1: $2" >&2; exit 1; }
  echo "$copy"
}

# The same in a copy of all sources of the tests over I/O Kit. Prints the folder.
tree_with_mistake() {
  local tree=$work/mistakes/tree
  rm -rf "$tree"
  mkdir "$tree"
  git ls-files -z base machines/macos scripts/macos smc tests/macos-declarations tests/machines/macos |
    xargs -0 cp --parents --target-directory="$tree"
  cp "$(mistake "$1" "$2")" "$tree/$1"
  echo "$tree"
}

# caught TEXT GATE ARGUMENT …: the gate fails with a message that contains TEXT.
caught() {
  local output
  if output=$("${@:2}" 2>&1); then
    echo "A mistake passed: ${*:2}" >&2
    exit 1
  fi
  grep -qF -- "$1" <<<"$output" || { printf 'Not the failure that was to come (%s):\n%s\n' "$1" "$output" >&2; exit 1; }
  caught_count=$((caught_count + 1))
}

prove_gates() {
  caught_count=0
  rm -rf "$work/mistakes"
  mkdir -p "$work/mistakes/declarations"
  local desktop=desktop/macos machine=machines/macos
  local library=$work/arm64/build/$desktop/libkelvinbar_cocoa_complete.dylib

  # Compilation
  caught "no visible @interface for 'NSStatusBar' declares the selector 'removeItem:'" compiles kelvinbar_cocoa \
    "$(mistake $desktop/CocoaStatusBar.mm 's/removeStatusItem:/removeItem:/')"
  caught "undeclared selector 'togglePopOver:'" compiles kelvinbar_cocoa \
    "$(mistake $desktop/CocoaStatusBar.mm 's/@selector\(togglePopover:\)/@selector(togglePopOver:)/')"
  caught "'SMAppService' is only available on macOS 13.0 or newer" compiles kelvinbar_cocoa \
    "$(mistake $desktop/MainAppLoginItem.mm 's/if \(@available\(macOS 13.0, \*\)\) \{/{/')"
  caught "'isLowPowerModeEnabled' is only available on macOS 12.0 or newer" compiles kelvinbar_platform \
    "$(mistake $machine/MacSystemInformation.mm 's/if \(@available\(macOS 12.0, \*\)\) \{/{/')"
  caught "'to_chars' is unavailable: introduced in macOS 13.4" compiles kelvinbar_platform \
    "$(mistake $machine/MacSystemInformation.mm '1i #include <charconv>
      $a char text[40]; const auto end = std::to_chars(text, text + 40, 1.5).ptr;')"
  cp -r $declarations/* "$work/mistakes/declarations"
  cp "$(mistake $declarations/IOKit/IOKitLib.h 's/io_name_t\[128\]/io_name_t[64]/')" "$work/mistakes/declarations/IOKit/"
  caught "sizeof(io_name_t) == 128" compiles kelvinbar_platform $machine/DeclarationChecks.mm "$work/mistakes/declarations"

  caught "no member named 'applicationStateChangedX'" compiles_over_toolkit \
    "$(mistake $desktop/ActiveInput.cpp 's/applicationStateChanged/&X/')"
  caught "no member named 'sourceX'" compiles_test \
    "$(mistake tests/machines/macos/MacPlatformTest.cpp 's/machine\.source/&X/')"

  # Links, imports and load commands
  cp "$(mistake $declarations/stubs/Frameworks/AppKit.framework/AppKit.tbd '/_NSBeep/d')" \
    "$work/mistakes/declarations/stubs/Frameworks/AppKit.framework/"
  caught "undefined symbol: _NSBeep" links "$work/mistakes/complete.dylib" "$work/mistakes/declarations/stubs"
  local list=$declarations/imports/libkelvinbar_cocoa_complete.txt
  caught "+AppKit _NSBeep" imports_are "$library" "$(mistake $list '/_NSBeep/d')"
  caught "-AppKit _NSBeepTwice" imports_are "$library" "$(mistake $list '$a AppKit _NSBeepTwice')"
  caught "-ServiceManagement _OBJC_CLASS_\$_SMAppService" imports_are "$library" "$(mistake $list 's/ weak$//')"
  echo 'int main(void) { return 0; }' >"$work/mistakes/newer.c"
  "$toolchain/zig" cc -target aarch64-macos.12.0 "$work/mistakes/newer.c" -o "$work/mistakes/newer"
  caught "is not for macOS from $oldest_system on" loads_as_meant "$work/mistakes/newer"
  caught "is not for both architectures" has_both_architectures "$work/mistakes/newer"

  cp "$(mistake $declarations/stubs/lib/libobjc.tbd 's#/usr/lib/#/opt/#')" "$work/mistakes/declarations/stubs/lib/"
  cp $declarations/stubs/Frameworks/AppKit.framework/AppKit.tbd \
    "$work/mistakes/declarations/stubs/Frameworks/AppKit.framework/"
  links "$work/mistakes/complete.dylib" "$work/mistakes/declarations/stubs"
  caught "loads what no Mac has" loads_as_meant "$work/mistakes/complete.dylib"

  # Null pointers and reference counts
  caught "Dereference of null pointer" is_analysed "$(mistake $machine/SystemEntries.cpp \
    's/^    std::string bytes\(size/    char* nothing = nullptr;\n    if (size > 100) *nothing = 0;\n&/')"
  caught "Potential leak of an object" is_analysed "$(mistake $machine/IOKitRegistry.cpp \
    's/^ +const CFOwned key\(createString\(name\)\);/&\n    if (CFGetTypeID(CFStringCreateWithBytes(nullptr, nullptr, 0, 0, 0)) == 0) return std::nullopt;/')"
  caught "used after it is released" is_analysed "$(mistake $machine/CFValues.cpp \
    's/^    return CFStringCreateWithBytes/    const CFStringRef created = CFStringCreateWithBytes/
     s/^( +static_cast<CFIndex>\(text.size.*)$/\1\n    CFRelease(created);\n    CFRelease(created);\n    return nullptr;/')"

  # Tests, as code for macOS
  caught "something was not released" tests_pass_in_memory "$(tree_with_mistake $machine/SystemHandles.h \
    's/IOObjectRelease\(former\);//')"
  caught "a port released twice" tests_pass_in_memory "$(tree_with_mistake $machine/IOKitSMCDriver.cpp \
    's/^    IOServiceClose\(connection\);/&\n    IOObjectRelease(connection);/')"
  caught "an object used after its release" tests_pass_in_memory "$(tree_with_mistake $machine/CFValues.cpp \
    's/^    CFIndex size = 0;/    CFRelease(text);\n&/')"
  echo "== Proved: $caught_count mistakes are caught"
}
