# The packages: kelvinbar-snapshot has the console program and the core's library, which needs no Qt; kelvinbar has
# the rest and depends on it. `cpack` in the build folder makes Debian's; scripts/check-packages.sh builds and tries them.
set(KELVINBAR_PACKAGE_REVISION 1 CACHE STRING "Number of the packaging of this version")

# A package must name somebody. Packagers set KELVINBAR_CONTACT; .invalid is never delivered to.
set(KELVINBAR_MAINTAINER "${KELVINBAR_AUTHOR} <${KELVINBAR_CONTACT}>")
if(NOT KELVINBAR_CONTACT)
  set(KELVINBAR_MAINTAINER "${KELVINBAR_AUTHOR} <nobody@kelvinbar.invalid>")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelvinbar)
set(CPACK_PACKAGE_CONTACT "${KELVINBAR_MAINTAINER}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${KELVINBAR_HOMEPAGE}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_COMPONENTS_ALL kelvinbar-snapshot)
if(Qt6_FOUND)
  list(APPEND CPACK_COMPONENTS_ALL kelvinbar)
endif()
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/debian/CompletePackages.cmake")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SOURCE kelvinbar)
set(CPACK_DEBIAN_PACKAGE_RELEASE "${KELVINBAR_PACKAGE_REVISION}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/lib/kelvinbar")

# The panel's views ask for QML modules by name, and two libraries are loaded if they are there: no tool finds these.
set(CPACK_DEBIAN_KELVINBAR_PACKAGE_NAME kelvinbar)
set(CPACK_DEBIAN_KELVINBAR_PACKAGE_DEPENDS
  "kelvinbar-snapshot (= ${PROJECT_VERSION}-${KELVINBAR_PACKAGE_REVISION}), qml6-module-qtquick, \
qml6-module-qtquick-templates, qml6-module-qtqml-workerscript")
set(CPACK_DEBIAN_KELVINBAR_PACKAGE_RECOMMENDS "libcanberra0")
set(CPACK_DEBIAN_KELVINBAR_DESCRIPTION "sensor readings in the tray
Shows up to six temperatures, fans, voltages, powers or batteries in the tray
of the desktop, and all others in a panel by category.
.
It reads the kernel's hardware monitors, batteries and energy counters, and
the controller of Intel Macs. kelvinbar-demo shows a made-up machine.")

set(CPACK_DEBIAN_KELVINBAR-SNAPSHOT_PACKAGE_NAME kelvinbar-snapshot)
set(CPACK_DEBIAN_KELVINBAR-SNAPSHOT_PACKAGE_RECOMMENDS "libsensors5")
set(CPACK_DEBIAN_KELVINBAR-SNAPSHOT_DESCRIPTION "sensor readings on the console
Prints temperatures, fans, voltages, powers and batteries of a machine as text
for a bug report, as a table, JSON, CSV or OpenMetrics, or as a line for a
status bar. It watches them, compares two snapshots, finds which sensor is
which, and says why one is missing.
.
It needs no desktop. kelvinbar shows the same readings in the tray.")
set(CPACK_DEBIAN_KELVINBAR-SNAPSHOT_PACKAGE_SUGGESTS "prometheus-node-exporter")
set(CPACK_DEBIAN_KELVINBAR-SNAPSHOT_PACKAGE_CONTROL_EXTRA
  "${CMAKE_CURRENT_LIST_DIR}/debian/postinst;${CMAKE_CURRENT_LIST_DIR}/debian/prerm;${CMAKE_CURRENT_LIST_DIR}/debian/postrm")
set(CPACK_DEBIAN_KELVINBAR-SNAPSHOT_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The same for systems of RPM packages: `cpack -G RPM`.
set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_PACKAGE_LICENSE MIT)
set(CPACK_RPM_PACKAGE_GROUP "System/Monitoring")
set(CPACK_RPM_PACKAGE_RELEASE "${KELVINBAR_PACKAGE_REVISION}")
set(CPACK_RPM_KELVINBAR_PACKAGE_NAME kelvinbar)
set(CPACK_RPM_KELVINBAR_PACKAGE_SUMMARY "Sensor readings in the tray")
set(CPACK_RPM_KELVINBAR_PACKAGE_REQUIRES
  "kelvinbar-snapshot = ${PROJECT_VERSION}-${KELVINBAR_PACKAGE_REVISION}, qt6-qtdeclarative")
set(CPACK_RPM_KELVINBAR-SNAPSHOT_PACKAGE_NAME kelvinbar-snapshot)
set(CPACK_RPM_KELVINBAR-SNAPSHOT_PACKAGE_SUMMARY "Sensor readings on the console")
# Folders that belong to the system.
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
  "${CMAKE_INSTALL_PREFIX}/share/icons" "${CMAKE_INSTALL_PREFIX}/share/icons/hicolor"
  "${CMAKE_INSTALL_PREFIX}/share/metainfo" "${CMAKE_INSTALL_PREFIX}/share/dbus-1"
  "${CMAKE_INSTALL_PREFIX}/share/dbus-1/services" "${CMAKE_INSTALL_PREFIX}/share/man"
  "${CMAKE_INSTALL_PREFIX}/share/man/man1")

include(CPack)
