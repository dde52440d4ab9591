# The program's icon in the theme that all desktops fall back to. Below 48 pixels the dial of the large drawing is a blur.
set(icons "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
set(icon_folder "${CMAKE_CURRENT_BINARY_DIR}/icons")
file(MAKE_DIRECTORY "${icon_folder}")

# kelvinbar_add_icons(<drawing> <side> …): pixel images of the drawing, in the variable icon_files too.
function(kelvinbar_add_icons drawing)
  set(source "${PROJECT_SOURCE_DIR}/resources/artwork/${drawing}.svg")
  foreach(side IN LISTS ARGN)
    set(icon "${icon_folder}/kelvinbar-${side}.png")
    add_custom_command(OUTPUT "${icon}" DEPENDS "${source}" kelvinbar-render-artwork
      COMMAND kelvinbar-render-artwork "${source}" "${icon}" ${side}
      COMMENT "Drawing the icon with ${side} pixels" VERBATIM)
    install(FILES "${icon}" DESTINATION "${icons}/${side}x${side}/apps" RENAME kelvinbar.png)
    list(APPEND icon_files "${icon}")
  endforeach()
  set(icon_files "${icon_files}" PARENT_SCOPE)
endfunction()

kelvinbar_add_icons(MenuBarIcon 16 22 24 32)
kelvinbar_add_icons(AboutIcon 48 64 96 128 256 512)
add_custom_target(kelvinbar_icons ALL DEPENDS ${icon_files})
install(FILES "${PROJECT_SOURCE_DIR}/resources/artwork/AboutIcon.svg"
  DESTINATION "${icons}/scalable/apps" RENAME kelvinbar.svg)
install(FILES "${PROJECT_SOURCE_DIR}/resources/symbols/thermometer.medium.svg"
  DESTINATION "${icons}/symbolic/apps" RENAME kelvinbar-symbolic.svg)
