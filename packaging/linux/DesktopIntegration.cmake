# Desktop entry, D-Bus service and interface, software catalogue and icons.
configure_file(org.kelvinbar.Kelvinbar.service.in org.kelvinbar.Kelvinbar.service @ONLY)
install(FILES org.kelvinbar.Kelvinbar.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/org.kelvinbar.Kelvinbar.service"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services")
install(FILES "${PROJECT_SOURCE_DIR}/desktop/linux/session/org.kelvinbar.Kelvinbar1.xml"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces")

include(CatalogueEntry.cmake)
include(Icons.cmake)
