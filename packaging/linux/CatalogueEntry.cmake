# The entry of software catalogues. Addresses are in it only if the packager knows the project's; a catalogue accepts
# pictures by address only.
set(catalogue_addresses "")
if(KELVINBAR_HOMEPAGE)
  configure_file(CatalogueAddresses.xml.in CatalogueAddresses.xml @ONLY)
  file(READ "${CMAKE_CURRENT_BINARY_DIR}/CatalogueAddresses.xml" catalogue_addresses)
endif()

# The versions and days of the changelog's headings.
file(STRINGS "${PROJECT_SOURCE_DIR}/CHANGELOG.md" headings REGEX "^## ")
set(catalogue_releases "")
foreach(heading IN LISTS headings)
  if(heading MATCHES "^## ([0-9.]+) - ([0-9]+-[0-9]+-[0-9]+)$")
    string(APPEND catalogue_releases "    <release version=\"${CMAKE_MATCH_1}\" date=\"${CMAKE_MATCH_2}\"/>\n")
  endif()
endforeach()

set(catalogue_file org.kelvinbar.Kelvinbar.metainfo.xml)
configure_file(${catalogue_file}.in ${catalogue_file} @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${catalogue_file}" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
