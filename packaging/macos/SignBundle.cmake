# Signs a complete bundle from the inside out: a signature covers what it finds signed, and --deep would give every part
# the options and entitlements of the program.
#
#   bundle         the folder NAME.app
#   identity       the code-signing identity; "-" signs ad hoc
#   entitlements   the file with the program's entitlements
#   codesign       the program that signs
cmake_minimum_required(VERSION 3.25)

set(options --force --sign "${identity}")
set(program_options "")
if(NOT identity STREQUAL "-")
  # Notarization demands the hardened runtime and a time from Apple's server.
  list(APPEND options --options runtime --timestamp)
  # None is needed. The program is not in a sandbox, so I/O Kit is open to it. Its scripts run in an interpreter, and
  # all libraries in the bundle have its own signature, so neither generated code nor foreign libraries are allowed.
  set(program_options --entitlements "${entitlements}")
endif()

function(sign)
  execute_process(COMMAND "${codesign}" ${options} ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

get_filename_component(name "${bundle}" NAME_WLE)
set(contents "${bundle}/Contents")
file(GLOB_RECURSE libraries "${contents}/PlugIns/*.dylib")
file(GLOB frameworks "${contents}/Frameworks/*.dylib" "${contents}/Frameworks/*.framework")
file(GLOB programs "${contents}/MacOS/*")
list(REMOVE_ITEM programs "${contents}/MacOS/${name}") # signed with the bundle
foreach(part IN LISTS libraries frameworks programs)
  sign("${part}")
endforeach()
sign(${program_options} "${bundle}")
execute_process(COMMAND "${codesign}" --verify --deep --strict "${bundle}" COMMAND_ERROR_IS_FATAL ANY)
