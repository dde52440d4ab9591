# The images of the status item, in every size that trays request.
set(artwork_folder "${CMAKE_CURRENT_BINARY_DIR}/artwork")
set(artwork_sides 16 22 24 32 48)
file(MAKE_DIRECTORY "${artwork_folder}")
foreach(drawing artwork/MenuBarIcon symbols/thermometer.medium)
  set(source "${PROJECT_SOURCE_DIR}/resources/${drawing}.svg")
  get_filename_component(picture "${drawing}" NAME)
  list(TRANSFORM artwork_sides REPLACE "(.+)" "${artwork_folder}/${picture}-\\1.argb" OUTPUT_VARIABLE pictures)
  add_custom_command(OUTPUT ${pictures} DEPENDS "${source}" kelvinbar-render-artwork
    COMMAND kelvinbar-render-artwork "${source}" "${artwork_folder}" ${artwork_sides}
    COMMENT "Drawing ${picture}" VERBATIM)
  list(APPEND artwork_pictures ${pictures})
endforeach()
add_custom_target(kelvinbar_artwork DEPENDS ${artwork_pictures})

function(kelvinbar_add_status_item_pictures program)
  qt_add_resources(${program} artwork PREFIX "/artwork" BASE "${artwork_folder}" FILES ${artwork_pictures})
  add_dependencies(${program} kelvinbar_artwork)
endfunction()
