# Run by CPack before it packs: adds what only a Debian package has, and compresses as Debian does.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()

# Without it CPack makes packages that need nothing, and only warns.
find_program(KELVINBAR_SHLIBDEPS dpkg-shlibdeps)
if(NOT KELVINBAR_SHLIBDEPS)
  message(FATAL_ERROR "dpkg-shlibdeps, which finds what the packages need, is missing: install dpkg-dev")
endif()

set(folder "${CMAKE_CURRENT_LIST_DIR}")

# kelvinbar_compress(<file> …): replaces the files by compressed ones without names and times in them.
function(kelvinbar_compress)
  execute_process(COMMAND gzip --best --no-name --force ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Debian's zsh does not look into the folder that others use.
function(kelvinbar_move_zsh_completions root)
  if(EXISTS "${root}/zsh/site-functions")
    file(RENAME "${root}/zsh/site-functions" "${root}/zsh/vendor-completions")
  endif()
endfunction()

foreach(package IN LISTS CPACK_COMPONENTS_ALL)
  set(root "${CPACK_TEMPORARY_DIRECTORY}/${package}/usr/share")
  set(documents "${root}/doc/${package}")
  string(TIMESTAMP day "%a, %d %b %Y %H:%M:%S +0000" UTC) # of SOURCE_DATE_EPOCH, if set
  configure_file("${folder}/changelog.in" "${documents}/changelog.Debian" @ONLY)
  configure_file("${folder}/../../../CHANGELOG.md" "${documents}/changelog" COPYONLY)
  configure_file("${folder}/copyright" "${documents}/copyright" COPYONLY)
  configure_file("${folder}/${package}.lintian-overrides" "${root}/lintian/overrides/${package}" COPYONLY)
  kelvinbar_move_zsh_completions("${root}")
  file(GLOB pages "${root}/man/man?/*.[1-9]")
  kelvinbar_compress("${documents}/changelog.Debian" "${documents}/changelog" ${pages})
endforeach()
