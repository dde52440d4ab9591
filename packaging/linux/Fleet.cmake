# Readings of many machines: a service for the textfile collector of prometheus-node-exporter. Installing it switches
# nothing on.
set(system_calls "${PROJECT_SOURCE_DIR}/tests/reliability/snapshot-system-calls.txt")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${system_calls}")
file(STRINGS "${system_calls}" KELVINBAR_SNAPSHOT_SYSTEM_CALLS REGEX "^[a-z]")
list(JOIN KELVINBAR_SNAPSHOT_SYSTEM_CALLS " " KELVINBAR_SNAPSHOT_SYSTEM_CALLS)

configure_file(fleet/kelvinbar-snapshot.service.in fleet/kelvinbar-snapshot.service @ONLY)
configure_file(fleet/kelvinbar-snapshot.timer fleet/kelvinbar-snapshot.timer COPYONLY)
install(FILES
    "${CMAKE_CURRENT_BINARY_DIR}/fleet/kelvinbar-snapshot.service"
    "${CMAKE_CURRENT_BINARY_DIR}/fleet/kelvinbar-snapshot.timer"
  DESTINATION lib/systemd/system COMPONENT kelvinbar-snapshot)
install(FILES fleet/kelvinbar-dashboard.json
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/kelvinbar-snapshot/examples" COMPONENT kelvinbar-snapshot)
