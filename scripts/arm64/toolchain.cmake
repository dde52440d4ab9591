# Cross-compiles for Linux on arm64 with Debian's cross compiler, against the packages of the architecture "arm64". Programs
# for arm64 that the build runs are run by qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triplet aarch64-linux-gnu)
set(CMAKE_CXX_COMPILER "${triplet}-g++")
set(CMAKE_LIBRARY_ARCHITECTURE "${triplet}")
# g++ 12 for arm64 sees overlaps where strings are joined, and there are none.
set(CMAKE_CXX_FLAGS_INIT -Wno-restrict)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static)
set(ENV{PKG_CONFIG_LIBDIR} "/usr/lib/${triplet}/pkgconfig:/usr/share/pkgconfig")

# Qt's tools are this machine's.
set(QT_HOST_PATH /usr CACHE PATH "")

set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
