# Where things lie below the prefix. The build tree is laid out alike, so that what finds its files
# by its own place finds them in both.
include(GNUInstallDirs)

foreach(kind IN ITEMS BIN LIB INCLUDE DATA MAN)
  if(IS_ABSOLUTE ${CMAKE_INSTALL_${kind}DIR})
    message(FATAL_ERROR "CMAKE_INSTALL_${kind}DIR is ${CMAKE_INSTALL_${kind}DIR}: the installation "
      "can be moved, so this must be a folder below the prefix, such as lib or share")
  endif()
endforeach()

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_BINDIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})

# The public header, the kit and the host's set-up header; and the contract's headers, in a folder
# of their own: their names are too common to stand beside those of others.
set(QUILLO_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/quillo)
set(QUILLO_PLATFORM_HEADERS ${QUILLO_HEADERS}/platform)

# The catalogs, and the way to them from the folder of the libraries.
set(QUILLO_CATALOGS ${CMAKE_INSTALL_DATADIR}/quillo/catalogs)
set(QUILLO_CATALOG_DIR ${PROJECT_BINARY_DIR}/${QUILLO_CATALOGS})
file(RELATIVE_PATH QUILLO_CATALOGS_FROM_LIBRARY
  /${CMAKE_INSTALL_LIBDIR} /${QUILLO_CATALOGS})
