# The Debian packages, which `cpack` makes: one for each component of the installation.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillo)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Quillo maintainers <maintainers@quillo.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGE_FILE_NAME quillo-${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_SOURCE quillo)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/package_documents.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/package_control.cmake)
set(CPACK_QUILLO_PACKAGING ${PROJECT_SOURCE_DIR}/packaging)

# What the packages say of themselves has to be what is built.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packaging/debian/changelog)
file(STRINGS packaging/debian/changelog entry LIMIT_COUNT 1)
if(NOT entry MATCHES "^quillo \\(${PROJECT_VERSION}\\) ")
  message(FATAL_ERROR "packaging/debian/changelog begins with \"${entry}\", and the version is "
    "${PROJECT_VERSION}: add an entry for it")
endif()

# The package `name` of `component`. SAME: it may be installed for several architectures at once.
function(quillo_package component name)
  cmake_parse_arguments(PACKAGE "SAME" "SECTION;DEPENDS;DESCRIPTION" "" ${ARGN})
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
  string(TOUPPER CPACK_DEBIAN_${component} prefix)
  set(${prefix}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(${prefix}_PACKAGE_SECTION ${PACKAGE_SECTION} PARENT_SCOPE)
  set(${prefix}_PACKAGE_DEPENDS ${PACKAGE_DEPENDS} PARENT_SCOPE)
  set(${prefix}_DESCRIPTION ${PACKAGE_DESCRIPTION} PARENT_SCOPE)
  if(PACKAGE_SAME)
    set(CPACK_QUILLO_SAME ${CPACK_QUILLO_SAME} ${name} PARENT_SCOPE)
  endif()
endfunction()

set(same "(= ${PROJECT_VERSION})")
set(library libquillo${PROJECT_VERSION_MAJOR})
set(host libquillo-host${PROJECT_VERSION_MAJOR})
set(about "
Quillo builds the pages of the web server in a networked device: a page
handler composes a tree of HTML elements, fills it with the device's data
and writes it to a stream.
.
This package holds")

quillo_package(runtime ${library} SAME
  SECTION libs
  DESCRIPTION "page building for web servers of networked devices${about} the shared library.")
quillo_package(dev libquillo-dev SAME
  SECTION libdevel
  DEPENDS "${library} ${same}, libboost-dev"
  DESCRIPTION "page building for web servers of networked devices (development)${about}
the headers of the library, of its kit for page authors and of the contract
that a device's platform keeps.")
if(QUILLO_BUILD_HOST)
  quillo_package(host_runtime ${host} SAME
    SECTION libs
    DESCRIPTION "stand-alone platform for Quillo pages${about}
the platform for a plain Linux machine: device log, attribute service,
configuration store and translation.")
  quillo_package(host_dev libquillo-host-dev SAME
    SECTION libdevel
    DEPENDS "${host} ${same}, libquillo-dev ${same}"
    DESCRIPTION "stand-alone platform for Quillo pages (development)${about}
what programs are compiled and linked with that use the platform for a plain
Linux machine.")
  quillo_package(tools quillo-tools
    SECTION web
    DEPENDS "${library} ${same}, ${host} ${same}"
    DESCRIPTION "pages that show this machine${about}
the programs for the sample pages, and their translations.")
endif()
include(CPack)
