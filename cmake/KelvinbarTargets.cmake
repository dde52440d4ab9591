# The kinds of targets in this project, and their common options.

find_package(Threads REQUIRED)

add_library(kelvinbar_options INTERFACE)
target_include_directories(kelvinbar_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(kelvinbar_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${KELVINBAR_WARNINGS_AS_ERRORS}>:-Werror>)
if(APPLE)
  target_compile_options(kelvinbar_options INTERFACE
    -Wunguarded-availability $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc -Wundeclared-selector>)
endif()
if(KELVINBAR_SANITIZE)
  target_compile_options(kelvinbar_options INTERFACE
    "-fsanitize=${KELVINBAR_SANITIZE}" -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(kelvinbar_options INTERFACE "-fsanitize=${KELVINBAR_SANITIZE}")
endif()
if(CMAKE_INTERPROCEDURAL_OPTIMIZATION AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # With link-time optimisation the linker also finds types of one name that differ between sources (-Wodr). The
  # disabled warning is a false positive in Qt's containers.
  target_link_options(kelvinbar_options INTERFACE
    $<$<BOOL:${KELVINBAR_WARNINGS_AS_ERRORS}>:-Werror=odr> -Wno-alloc-size-larger-than)
endif()

# A folder of the repository as a static library.
function(kelvinbar_add_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PRIVATE kelvinbar_options)
endfunction()

function(kelvinbar_add_program name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE kelvinbar_options)
endfunction()

# The core. If the program loads modules, program and modules share it as a shared library. Only the core exports
# symbols, so names in a module cannot clash with names in the program.
set(kelvinbar_core_kind STATIC)
if(KELVINBAR_HAS_MODULES)
  set(kelvinbar_core_kind SHARED)
endif()
add_library(kelvinbar_core ${kelvinbar_core_kind})
set_target_properties(kelvinbar_core PROPERTIES LINKER_LANGUAGE CXX)
target_link_libraries(kelvinbar_core PRIVATE kelvinbar_options PUBLIC Threads::Threads)

set(KELVINBAR_MODULE_DIR "${CMAKE_INSTALL_LIBDIR}/kelvinbar")
file(RELATIVE_PATH KELVINBAR_MODULE_DIR_FROM_PROGRAM
  "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}/kelvinbar")

# kelvinbar_place_beside_modules(<target> [COMPONENT <package>]): builds and installs the target in the folder of the modules, where they find
# each other. Undefined symbols are a link error.
function(kelvinbar_place_beside_modules target)
  set_target_properties(${target} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib/kelvinbar"
    INSTALL_RPATH "$ORIGIN")
  if(NOT KELVINBAR_SANITIZE) # the program defines the sanitizer's symbols
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
  install(TARGETS ${target} LIBRARY DESTINATION "${KELVINBAR_MODULE_DIR}" ${ARGN})
endfunction()

# A part of the program that is loaded on first use.
function(kelvinbar_add_module name)
  add_library(${name} MODULE ${ARGN})
  target_link_libraries(${name} PRIVATE kelvinbar_options)
  kelvinbar_place_beside_modules(${name})
endfunction()

if(KELVINBAR_HAS_MODULES)
  set(CMAKE_CXX_VISIBILITY_PRESET hidden)
  set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
  set(CMAKE_INSTALL_RPATH "$ORIGIN/${KELVINBAR_MODULE_DIR_FROM_PROGRAM}")
  set_target_properties(kelvinbar_core PROPERTIES OUTPUT_NAME kelvinbar-core)
  # No function of the core is interposed, so internal calls can be direct.
  target_link_options(kelvinbar_core PRIVATE -Wl,-Bsymbolic-functions)
  kelvinbar_place_beside_modules(kelvinbar_core COMPONENT kelvinbar-snapshot) # all programs need it, that one needs no other
endif()

# A folder of the core: an object library that is linked into kelvinbar_core, which is what others link.
function(kelvinbar_add_core_folder folder)
  set(objects kelvinbar_${folder}_objects)
  add_library(${objects} OBJECT ${ARGN})
  target_link_libraries(${objects} PRIVATE kelvinbar_options Threads::Threads)
  if(KELVINBAR_HAS_MODULES)
    set_target_properties(${objects} PROPERTIES CXX_VISIBILITY_PRESET default)
    target_compile_options(${objects} PRIVATE -fno-semantic-interposition)
  endif()
  target_sources(kelvinbar_core PRIVATE $<TARGET_OBJECTS:${objects}>)
endfunction()
