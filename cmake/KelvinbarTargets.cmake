# What every target of the project is built with, stated once.

find_package(Threads REQUIRED)

function(kelvinbar_configure_target target)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Woverloaded-virtual -Werror)
  if(APPLE)
    target_compile_options(${target} PRIVATE
      -Wunguarded-availability $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc -Wundeclared-selector>)
  endif()
  if(KELVINBAR_SANITIZE)
    target_compile_options(${target} PRIVATE
      "-fsanitize=${KELVINBAR_SANITIZE}" -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE "-fsanitize=${KELVINBAR_SANITIZE}")
  endif()
endfunction()

# A folder of the repository as a static library named after it.
function(kelvinbar_add_library name)
  add_library(${name} STATIC ${ARGN})
  kelvinbar_configure_target(${name})
endfunction()

function(kelvinbar_add_program name)
  add_executable(${name} ${ARGN})
  kelvinbar_configure_target(${name})
endfunction()
