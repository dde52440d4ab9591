# Compiler and linker options that make memory errors harder to exploit, each where the tools know it. On macOS the
# loader and the linker do the rest by default. tests/packaging looks for the effects in the installed files.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)

# kelvinbar_harden_compiling(<result variable> <flag>)
function(kelvinbar_harden_compiling result flag)
  check_cxx_compiler_flag("${flag}" ${result})
  if(${result})
    add_compile_options("${flag}")
  endif()
endfunction()

# kelvinbar_harden_linking(<result variable> <flag>)
function(kelvinbar_harden_linking result flag)
  check_linker_flag(CXX "${flag}" ${result})
  if(${result})
    add_link_options("${flag}")
  endif()
endfunction()

# Checks of the C library's calls, which need an optimiser and are not for sanitizers, whose own checks they would hide.
# Old C libraries warn of level 3, and have 2. A distribution's level is undefined first.
function(kelvinbar_fortify)
  set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
  check_cxx_source_compiles("#include <cstring>\nint main() {}" KELVINBAR_HAS_FORTIFY_3)
  set(level 2)
  if(KELVINBAR_HAS_FORTIFY_3)
    set(level 3)
  endif()
  add_compile_options(
    "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level}>")
endfunction()

kelvinbar_harden_compiling(KELVINBAR_HAS_STACK_PROTECTOR -fstack-protector-strong)
if(APPLE)
  return()
endif()

if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|i.86|AMD64)$")
  kelvinbar_harden_compiling(KELVINBAR_HAS_CF_PROTECTION -fcf-protection)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
  kelvinbar_harden_compiling(KELVINBAR_HAS_BRANCH_PROTECTION -mbranch-protection=standard)
endif()
add_compile_definitions(_GLIBCXX_ASSERTIONS)
if(NOT KELVINBAR_SANITIZE)
  kelvinbar_fortify()
endif()
kelvinbar_harden_linking(KELVINBAR_HAS_RELRO -Wl,-z,relro)
kelvinbar_harden_linking(KELVINBAR_HAS_NOW -Wl,-z,now)
kelvinbar_harden_linking(KELVINBAR_HAS_NOEXECSTACK -Wl,-z,noexecstack)
