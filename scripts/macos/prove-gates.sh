# Proves that every gate detects a mistake of its kind. Stops if a mistake passes, or fails for another reason.
#
# Two groups of mistakes are tried at a time, each in its own folder, `mistakes`, and with its own count, `caught_count`.

# mistake FILE EDIT: prints the path of a copy of FILE, edited with sed.
mistake() {
  local copy
  copy=$mistakes/$(basename "$1")
  sed -E "$2" "$1" >"$copy"
  ! cmp -s "$1" "$copy" || { echo "An edit changes nothing in $1: $2" >&2; exit 1; }
  echo "$copy"
}

# The same in a copy of all sources of the tests over I/O Kit. Prints the folder.
tree_with_mistake() {
  local tree=$mistakes/tree
  rm -rf "$tree"
  mkdir "$tree"
  git ls-files -z base machines/macos scripts/macos smc tests/macos-declarations tests/macos-in-memory tests/machines/macos |
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

# caught_by_sdk TEXT HEADER EDIT: the comparison with the SDK fails with TEXT for the declarations with a mistake.
caught_by_sdk() {
  rm -rf "$mistakes/declared"
  cp -r $declarations "$mistakes/declared"
  cp "$(mistake "$declarations/$2" "$3")" "$mistakes/declared/$2"
  caught "Not in the SDK: $1" agrees_with_sdk "$mistakes/declared"
}

# One of each kind of name, of parameters, and of values.
prove_comparison() {
  local appkit=AppKit/AppKit.h
  caught_by_sdk 'class NSWorkplace' $appkit 's/@interface NSWorkspace/@interface NSWorkplace/'
  caught_by_sdk 'class NSStatusBarButton: NSScreen' $appkit 's/NSStatusBarButton : NSButton/NSStatusBarButton : NSScreen/'
  caught_by_sdk '-[NSStatusBar removeItem:]' $appkit 's/removeStatusItem:/removeItem:/'
  caught_by_sdk '-[NSEvent removeMonitor:]' $appkit 's/\+ (\(void\)removeMonitor:)/- \1/'
  caught_by_sdk 'property NSScreen.visibleArea' $appkit 's/NSRect visibleFrame/NSRect visibleArea/'
  caught_by_sdk 'a setter of NSScreen.frame' $appkit 's/@property\(readonly\) NSRect frame/@property NSRect frame/'
  caught_by_sdk 'function NSBeeps' $appkit 's/void NSBeep\(/void NSBeeps(/'
  caught_by_sdk 'function IOServiceClose' IOKit/IOKitLib.h 's/(IOServiceClose\(io_connect_t connect)/\1, int how/'
  caught_by_sdk '-[NSStatusBar statusItemWithLength:] as (text)' $appkit 's/(statusItemWithLength:\()CGFloat/\1NSString*/'
  caught_by_sdk '-[NSMenu addItem:] as (NSMenu)' $appkit 's/(addItem:\()NSMenuItem/\1NSMenu/'
  caught_by_sdk '-[NSWorkspace openURL:] as (NSURL) -> number' $appkit 's/BOOL(\)openURL:)/NSInteger\1/'
  caught_by_sdk 'property NSStatusItem.button as NSButton' $appkit 's/NSStatusBarButton\* button/NSButton* button/'
  caught_by_sdk 'function IOObjectRelease as (pointer)' IOKit/IOKitLib.h 's/(IOObjectRelease\()io_object_t /\1void* /'
  caught_by_sdk 'constant NSFontWeightMiddle' $appkit 's/NSFontWeightMedium/NSFontWeightMiddle/'
  caught_by_sdk 'enumerator NSApplicationActivationPolicyNever' $appkit 's/PolicyProhibited/PolicyNever/'
  caught_by_sdk 'NSEventMaskOtherMouseDown = 16777216' $appkit 's/1ULL << 25/1ULL << 24/'
  caught_by_sdk 'NSImageLeft = 1' $appkit 's/NSImageOnly, NSImageLeft/NSImageLeft, NSImageOnly/'
}

# caught_over_fake TEXT SOURCE EDIT: the tests over the fake system fail with TEXT for SOURCE with a mistake.
caught_over_fake() { caught "$1" passes_over_fake "$(mistake "$2" "$3")"; }

# What the compiler accepts and only a run shows: references, pools, what is taken back, threads, behaviour.
prove_execution() {
  local application=desktop/macos/CocoaApplication.mm bar=desktop/macos/CocoaStatusBar.mm
  local timers=desktop/macos/CocoaTimers.mm window=desktop/macos/CocoaWindow.mm
  local login=desktop/macos/MainAppLoginItem.mm symbol=desktop/macos/SystemSymbolMask.mm
  local system=machines/macos/MacSystemInformation.mm
  # a function's pool: the line after the one that opens the function
  local pool='n; s/@autoreleasepool //'

  # References and pools
  caught_over_fake 'is autoreleased without a pool' $bar "/::hasImageResource/{ $pool }"
  caught_over_fake 'is autoreleased without a pool' $application "/^bool systemPrefersReducedMotion/{ $pool }"
  caught_over_fake 'is autoreleased without a pool' $system "/::activeProcessorCount/{ $pool }"
  caught_over_fake '"KelvinbarClickTarget"' $bar \
    's/^@property\(nonatomic\) std::function<void\(\)> action;/&\n@property(nonatomic) id itself;/
     s/^ +target_\.action = .*/&\n target_.itself = target_;/'
  caught_over_fake 'a released KelvinbarClickTarget is used' $bar \
    's/^ +target_\.action = .*/&\n CFBridgingRelease((__bridge CFTypeRef)target_);/'
  caught_over_fake '"NSObject"' $application 's/CFBridgingRelease\(kept\)/(__bridge id)kept/'
  caught_over_fake 'ended with status' $application 's/const auto handler = onPress/const auto\& handler = onPress/'

  # What has to be taken back
  caught_over_fake '"1 status items"' $bar '/removeStatusItem:/d'
  caught_over_fake '"1 monitors"' $application 's/\[NSEvent removeMonitor:ended\]/(void)ended/'
  caught_over_fake '"1 activities"' $application 's/\[NSProcessInfo\.processInfo endActivity:ended\]/(void)ended/'
  caught_over_fake '"1 timers"' $timers '/\[timer_ invalidate\]/d'
  caught_over_fake '"1 observers"' $application '/\[NSNotificationCenter\.defaultCenter removeObserver:/d'
  caught_over_fake '"1 observers of other programs"' $application \
    '/\[NSDistributedNotificationCenter\.defaultCenter removeObserver:/d'
  caught_over_fake '"1 handlers of events"' $application \
    's/\[NSAppleEventManager\.sharedAppleEventManager$/[(NSAppleEventManager*)nil/'
  caught_over_fake '"1 saved graphics states"' $symbol '/restoreGraphicsState/d'

  # Threads and versions of the system
  caught_over_fake 'from another thread than the main one' $application \
    '1i #include <thread>
     s/^( +)(\[NSApplication\.sharedApplication hide:nil\];)/std::thread([] { @autoreleasepool { \2 } }).join();/'
  caught_over_fake 'SMAppService before macOS 13' $login 's/macOS 13\.0/macOS 12.0/'
  caught_over_fake 'the areas beside the notch before macOS 12' $bar 's/macOS 12\.0/macOS 11.0/'
  caught_over_fake 'the low power mode before macOS 12' $system 's/macOS 12\.0/macOS 11.0/'

  # Behaviour
  caught_over_fake 'OnlyATemplateIsDrawnInTheColourOfTheBar' $bar 's/setTemplate:image/setTemplate:!image/'
  caught_over_fake 'AClickIsReportedOnce' $bar 's/action = @selector\(togglePopover:\)/action = nullptr/'
  caught_over_fake 'ARightClickIsReportedAsASecondaryOne' $bar 's/ \| NSEventMaskRightMouseUp//'
  caught_over_fake 'AControlClickIsReportedAsASecondaryOne' $bar 's/(NSEventModifierFlagControl\)) != 0/\1 > 1UL << 18/'
  caught_over_fake 'TheItemOfAnOpenPanelStaysHighlightedAfterItsMenu' $bar 's/highlight:isHighlighted_\]/highlight:NO]/'
  caught_over_fake 'a menu at a place in a view' $bar 's/inView:nil/inView:button/'
  caught_over_fake 'ATimerRepeatsInItsIntervalWithItsTolerance' $timers 's/secondsOf\(tolerance/secondsOf(interval - tolerance/'
  caught_over_fake 'ATimerFiresUntilItIsInvalidated' $timers 's/NSRunLoopCommonModes\]/@"the default mode"]/'
  caught_over_fake 'AWindowMovesToTheActiveSpace' $window 's/NSWindowCollectionBehaviorFullScreenAuxiliary \|//'
  caught_over_fake 'ATitleHasItsTextFontColourAndBaseline' $bar \
    's/(NSFontWeightSemibold) : (NSFontWeightRegular)/\2 : \1/'
  caught_over_fake 'are converted to another view' $bar 's/toView:nil/toView:button/'
  caught_over_fake 'AnInstanceHandsOverToAnOlderOne' $application 's/NSOrderedAscending/NSOrderedDescending/'
  caught_over_fake 'programs without an identifier are asked for' $application '/identifier == nil/d'
  caught_over_fake 'EveryPressInAnotherProgramIsReported' $application 's/ \| NSEventMaskOtherMouseDown//'
  caught_over_fake 'AHiddenProgramIsShownBeforeItIsActivated' $application '/unhideWithoutActivation/d'
  caught_over_fake 'AnInstanceThatHandsOverIsReported' $application 's/BehaviorDeliverImmediately/BehaviorHold/'
  caught_over_fake 'OnlyAnEnabledItemIsRegistered' $login 's/status == SMAppServiceStatusEnabled/status != 0/'
  caught_over_fake 'SaysThatTheItemIsBehindTheNotch' desktop/macos/OpeningAgain.cpp 's/reason != nullptr/false/'
  caught_over_fake 'OpensThePanelAndSaysNothingOfAnItemThatIsSeen' desktop/macos/OpeningAgain.cpp '/^ +openPanel\(\);/d'
  caught_over_fake 'no address is opened' $login 's/if \(address != nil\) //'
  caught_over_fake 'WhatIsNotDrawnIsNotCovered' $symbol '/std::fill_n/d'
  caught_over_fake 'a bitmap that is not square' $symbol 's/bytesPerRow:side \* bytesAPixel/bytesPerRow:side/'

  caught 'run too few lines of CocoaApplication.mm' covers_over_fake 95 \
    "$(mistake $application '$a bool isNeverCalled(int number);\
      bool isNeverCalled(int number) {\n if (number > 3) {\n return true;\n }\n return\n number\n <\n 2;\n }')"
}

# What compilers and the analyser report, and what the checks of declarations, links, imports and load commands do.
prove_build() {
  mkdir "$mistakes/declarations"
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
  cp -r $declarations/* "$mistakes/declarations"
  cp "$(mistake $declarations/IOKit/IOKitLib.h 's/io_name_t\[128\]/io_name_t[64]/')" "$mistakes/declarations/IOKit/"
  caught "sizeof(io_name_t) == 128" compiles kelvinbar_platform $machine/DeclarationChecks.mm "$mistakes/declarations"

  caught "no member named 'applicationStateChangedX'" compiles_over_toolkit \
    "$(mistake $desktop/ActiveInput.cpp 's/applicationStateChanged/&X/')"
  /usr/lib/qt6/libexec/moc -I. "$(mistake panel/Plate.h 's/(Q_PROPERTY.* READ )(\w+)/\1\2X/')" -o "$mistakes/moc.cpp"
  caught "no member named 'colorsX'" compiles_over_toolkit "$mistakes/moc.cpp"
  caught "no member named 'sourceX'" compiles_test \
    "$(mistake tests/machines/macos/MacPlatformTest.cpp 's/machine\.source/&X/')"

  # Links, imports and load commands
  cp "$(mistake $declarations/stubs/Frameworks/AppKit.framework/AppKit.tbd '/_NSBeep/d')" \
    "$mistakes/declarations/stubs/Frameworks/AppKit.framework/"
  caught "undefined symbol: _NSBeep" links "$mistakes/complete.dylib" "$mistakes/declarations/stubs"
  local list=$declarations/imports/libkelvinbar_cocoa_complete.txt
  caught "+AppKit _NSBeep" imports_are "$library" "$(mistake $list '/_NSBeep/d')"
  caught "-AppKit _NSBeepTwice" imports_are "$library" "$(mistake $list '$a AppKit _NSBeepTwice')"
  caught "-ServiceManagement _OBJC_CLASS_\$_SMAppService" imports_are "$library" "$(mistake $list 's/ weak$//')"
  echo 'int main(void) { return 0; }' >"$mistakes/newer.c"
  "$toolchain/zig" cc -target aarch64-macos.12.0 "$mistakes/newer.c" -o "$mistakes/newer"
  caught "is not for macOS from $oldest_system on" loads_as_meant "$mistakes/newer"
  caught "is not for both architectures" has_both_architectures "$mistakes/newer"

  cp "$(mistake $declarations/stubs/lib/libobjc.tbd 's#/usr/lib/#/opt/#')" "$mistakes/declarations/stubs/lib/"
  cp $declarations/stubs/Frameworks/AppKit.framework/AppKit.tbd \
    "$mistakes/declarations/stubs/Frameworks/AppKit.framework/"
  links "$mistakes/complete.dylib" "$mistakes/declarations/stubs"
  caught "loads what no Mac has" loads_as_meant "$mistakes/complete.dylib"

  # Null pointers and reference counts
  caught "Dereference of null pointer" is_analysed "$(mistake $machine/SystemEntries.cpp \
    's/^    std::string bytes\(size/    char* nothing = nullptr;\n    if (size > 100) *nothing = 0;\n&/')"
  caught "Potential leak of an object" is_analysed "$(mistake $machine/IOKitRegistry.cpp \
    's/^ +const CFOwned key\(createString\(name\)\);/&\n    if (CFGetTypeID(CFStringCreateWithBytes(nullptr, nullptr, 0, 0, 0)) == 0) return std::nullopt;/')"
  caught "used after it is released" is_analysed "$(mistake $machine/CFValues.cpp \
    's/^    return CFStringCreateWithBytes/    const CFStringRef created = CFStringCreateWithBytes/
     s/^( +static_cast<CFIndex>\(text.size.*)$/\1\n    CFRelease(created);\n    CFRelease(created);\n    return nullptr;/')"

  prove_comparison
  prove_tests_in_memory
}

prove_tests_in_memory() {
  local machine=machines/macos
  caught "something was not released" tests_pass_in_memory "$(tree_with_mistake $machine/SystemHandles.h \
    's/IOObjectRelease\(former\);//')" x86_64
  caught "a port released twice" tests_pass_in_memory "$(tree_with_mistake $machine/IOKitSMCDriver.cpp \
    's/^    IOServiceClose\(connection\);/&\n    IOObjectRelease(connection);/')" x86_64
  caught "an object used after its release" tests_pass_in_memory "$(tree_with_mistake $machine/CFValues.cpp \
    's/^    CFIndex size = 0;/    CFRelease(text);\n&/')" arm64
  caught "Other tests ran than those in the sources" tests_pass_in_memory "$(tree_with_mistake \
    tests/machines/macos/IOKitTest.cpp 's/(IOKit, )(FindsAServiceByItsClass)/\1DISABLED_\2/')" x86_64
}

# proves GROUP: the function prove_GROUP catches its mistakes; their number is in a file.
proves() {
  local mistakes=$work/mistakes/$1 caught_count=0
  mkdir -p "$mistakes"
  "prove_$1"
  echo "$caught_count" >"$mistakes/count"
}

prove_gates() {
  rm -rf "$work/mistakes"
  proves build &
  local build=$!
  proves execution
  wait "$build"
  echo "== Proved: $(($(cat "$work"/mistakes/*/count | paste -sd +))) mistakes are caught"
}
