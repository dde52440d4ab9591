# What the program says of its options, for shells and as a manual page, made by running it.
if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
  return()
endif()

set(documents "")

# kelvinbar_snapshot_document(<file> <folder> COMMAND …): a file that the command prints, installed below the folder.
function(kelvinbar_snapshot_document file folder)
  cmake_parse_arguments(PARSE_ARGV 2 document "" "" "COMMAND")
  set(path "${CMAKE_CURRENT_BINARY_DIR}/${file}")
  add_custom_command(OUTPUT "${path}" COMMAND ${document_COMMAND} > "${path}" DEPENDS kelvinbar-snapshot VERBATIM)
  install(FILES "${path}" DESTINATION "${folder}")
  list(APPEND documents "${path}")
  set(documents "${documents}" PARENT_SCOPE)
endfunction()

file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/completions")
kelvinbar_snapshot_document(completions/kelvinbar-snapshot "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
  COMMAND kelvinbar-snapshot --completion bash)
kelvinbar_snapshot_document(completions/_kelvinbar-snapshot "${CMAKE_INSTALL_DATADIR}/zsh/site-functions"
  COMMAND kelvinbar-snapshot --completion zsh)
kelvinbar_snapshot_document(completions/kelvinbar-snapshot.fish "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d"
  COMMAND kelvinbar-snapshot --completion fish)

add_custom_target(kelvinbar_snapshot_documents ALL DEPENDS ${documents})

kelvinbar_add_manual_page(kelvinbar-snapshot "prints the sensor readings of a machine")
