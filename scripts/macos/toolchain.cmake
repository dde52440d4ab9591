# Cross-compiles for macOS on Linux, against the declarations and stubs in tests/macos-declarations.
# Needs KELVINBAR_COMPILERS (a folder with c++, ar and ranlib for one architecture) and CMAKE_OSX_ARCHITECTURES.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 20) # the Darwin version of macOS 11
set(CMAKE_SYSTEM_PROCESSOR "${CMAKE_OSX_ARCHITECTURES}")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KELVINBAR_COMPILERS)
set(CMAKE_OSX_SYSROOT "" CACHE STRING "")

# Makes the standard library's headers mark, as Apple's do, the version that introduced each function.
set(availability "-U_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS")
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER "${KELVINBAR_COMPILERS}/c++")
  set(CMAKE_${language}_FLAGS_INIT
    "-isystem ${CMAKE_CURRENT_LIST_DIR}/../../tests/macos-declarations ${availability} -fno-sanitize=undefined")
endforeach()
# The compiler driver passes the language twice.
string(APPEND CMAKE_OBJCXX_FLAGS_INIT " -Wno-unused-command-line-argument")
set(CMAKE_AR "${KELVINBAR_COMPILERS}/ar" CACHE FILEPATH "")
set(CMAKE_RANLIB "${KELVINBAR_COMPILERS}/ranlib" CACHE FILEPATH "")

set(stubs "${CMAKE_CURRENT_LIST_DIR}/../../tests/macos-declarations/stubs")
foreach(kind EXE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-F${stubs}/Frameworks -L${stubs}/lib")
endforeach()

# Installed packages are for another system.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool CACHE FILEPATH "")
