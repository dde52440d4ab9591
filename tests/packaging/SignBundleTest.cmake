# Signs a made-up bundle with a program that only notes its arguments, and compares the notes.
#
#   folder   to work in
cmake_minimum_required(VERSION 3.25)

set(bundle "${folder}/Kelvinbar Demo.app")
set(contents "${bundle}/Contents")
set(entitlements "${folder}/some.entitlements")
set(codesign "${folder}/codesign")

file(REMOVE_RECURSE "${folder}")
foreach(part
    "PlugIns/quick/libqtquick2plugin.dylib" "PlugIns/platforms/libqcocoa.dylib" "Frameworks/libother.dylib"
    "Frameworks/QtCore.framework/Versions/A/QtCore" "MacOS/Kelvinbar Demo" "MacOS/kelvinbar-snapshot"
    "Resources/Kelvinbar.icns")
  file(WRITE "${contents}/${part}" "")
endforeach()
file(MAKE_DIRECTORY "${contents}/Resources/qml/QtQuick")
file(CREATE_LINK "${contents}/PlugIns/quick/libqtquick2plugin.dylib"
  "${contents}/Resources/qml/QtQuick/libqtquick2plugin.dylib" SYMBOLIC)
file(WRITE "${codesign}" [[#!/bin/sh
for argument in "$@"; do printf '%s|' "$argument"; done >>"$0.notes"
echo >>"$0.notes"
]])
file(CHMOD "${codesign}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)

# expect_notes(<identity> <options of each part> <further options of the bundle>)
function(expect_notes identity options program_options)
  file(REMOVE "${codesign}.notes")
  execute_process(COMMAND "${CMAKE_COMMAND}" -D "bundle=${bundle}" -D "identity=${identity}"
      -D "entitlements=${entitlements}" -D "codesign=${codesign}"
      -P "${CMAKE_CURRENT_LIST_DIR}/../../packaging/macos/SignBundle.cmake"
    COMMAND_ERROR_IS_FATAL ANY)
  set(expected "")
  foreach(part
      PlugIns/platforms/libqcocoa.dylib PlugIns/quick/libqtquick2plugin.dylib Frameworks/QtCore.framework
      Frameworks/libother.dylib MacOS/kelvinbar-snapshot)
    string(APPEND expected "${options}${contents}/${part}|\n")
  endforeach()
  string(APPEND expected "${options}${program_options}${bundle}|\n--verify|--deep|--strict|${bundle}|\n")
  file(READ "${codesign}.notes" notes)
  if(NOT notes STREQUAL expected)
    message(FATAL_ERROR "signed:\n${notes}\nnot:\n${expected}")
  endif()
endfunction()

expect_notes("-" "--force|--sign|-|" "")
expect_notes("Developer ID Application: Somebody" "--force|--sign|Developer ID Application: Somebody|--options|runtime|--timestamp|"
  "--entitlements|${entitlements}|")
