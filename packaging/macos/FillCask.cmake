# Makes the Homebrew cask of a release from its disk image.
#
#   image       the universal disk image
#   version     of the program
#   downloads   the address of the folder with the published image
#   homepage    the project's address
#   cask        the file to write
cmake_minimum_required(VERSION 3.25)

foreach(name image version downloads homepage cask)
  if(NOT ${name})
    message(FATAL_ERROR "the cask needs -D ${name}=…")
  endif()
endforeach()
file(SHA256 "${image}" checksum)
configure_file("${CMAKE_CURRENT_LIST_DIR}/kelvinbar.rb.in" "${cask}" @ONLY)
