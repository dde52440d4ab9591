# kelvinbar_add_manual_page(<program> <summary>): installs a manual page that is made of the program's own --help.
# A program for another machine runs in the emulator, if there is one.
find_program(KELVINBAR_HELP2MAN help2man)
if(NOT KELVINBAR_HELP2MAN)
  message(STATUS "Manual pages are not made: help2man is not found")
endif()

function(kelvinbar_add_manual_page program summary)
  if(NOT KELVINBAR_HELP2MAN OR (CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR))
    return()
  endif()
  set(command "$<TARGET_FILE:${program}>")
  if(CMAKE_CROSSCOMPILING)
    string(PREPEND command "${CMAKE_CROSSCOMPILING_EMULATOR} ")
  endif()
  set(page "${CMAKE_CURRENT_BINARY_DIR}/${program}.1")
  add_custom_command(OUTPUT "${page}" DEPENDS ${program}
    COMMAND "${KELVINBAR_HELP2MAN}" --no-info "--name=${summary}" --source=Kelvinbar "--output=${page}"
      "${command}"
    COMMENT "Writing the manual page of ${program}" VERBATIM)
  add_custom_target(${program}-manual-page ALL DEPENDS "${page}")
  install(FILES "${page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endfunction()
