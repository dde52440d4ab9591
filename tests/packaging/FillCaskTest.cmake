# Fills the cask for a made-up disk image.
#
#   folder   to work in
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${folder}")
file(WRITE "${folder}/image.dmg" "abc")
set(cask "${folder}/kelvinbar.rb")
set(values -D version=1.2.3 -D downloads=https://example.org/files -D homepage=https://example.org -D "cask=${cask}")
set(script -P "${CMAKE_CURRENT_LIST_DIR}/../../packaging/macos/FillCask.cmake")

execute_process(COMMAND "${CMAKE_COMMAND}" -D "image=${folder}/image.dmg" ${values} ${script}
  COMMAND_ERROR_IS_FATAL ANY)
file(READ "${cask}" text)
foreach(expected
    [[version "1.2.3"]]
    [[sha256 "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"]]
    [[url "https://example.org/files/kelvinbar-#{version}-universal.dmg"]]
    [[homepage "https://example.org"]])
  string(FIND "${text}" "${expected}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "the cask lacks ${expected}:\n${text}")
  endif()
endforeach()
if(text MATCHES "@")
  message(FATAL_ERROR "not everything is filled in:\n${text}")
endif()

file(REMOVE "${cask}")
foreach(image "${folder}/missing.dmg" "")
  execute_process(COMMAND "${CMAKE_COMMAND}" -D "image=${image}" ${values} ${script}
    RESULT_VARIABLE result ERROR_QUIET)
  if(result EQUAL 0 OR EXISTS "${cask}")
    message(FATAL_ERROR "a cask without an image")
  endif()
endforeach()
