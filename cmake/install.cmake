# What `cmake --install` puts where, and what others find it by: find_package(Quillo), pkg-config.
# A component of the installation is a Debian package (cmake/package.cmake).
include(CMakePackageConfigHelpers)

set(packageFiles ${CMAKE_INSTALL_LIBDIR}/cmake/Quillo)
file(RELATIVE_PATH QUILLO_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" QUILLO_PREFIX_FROM_PC "${QUILLO_PREFIX_FROM_PC}")

# The pkg-config file NAME.pc, as a part of `component`.
function(quillo_install_pc name component)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
endfunction()

# The shared library `target`: what programs need to run in `runtime`, the name that they are linked
# by in `development`.
function(quillo_install_library target export runtime development)
  install(TARGETS ${target} EXPORT ${export}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
      COMPONENT ${runtime} NAMELINK_COMPONENT ${development})
endfunction()

function(quillo_install_export export component)
  install(EXPORT ${export} NAMESPACE Quillo::
    DESTINATION ${packageFiles} COMPONENT ${component})
endfunction()

# A device's own contract headers are the device's to install: they are used where they are.
if(QUILLO_PLATFORM_INCLUDE STREQUAL ${PROJECT_SOURCE_DIR}/platform/include)
  set(contract ${QUILLO_PLATFORM_HEADERS})
  set(QUILLO_PC_PLATFORM_INCLUDE "\${prefix}/${contract}")
  install(DIRECTORY platform/include/ DESTINATION ${contract} COMPONENT dev)
else()
  set(contract ${QUILLO_PLATFORM_INCLUDE})
  set(QUILLO_PC_PLATFORM_INCLUDE ${contract})
endif()
target_include_directories(quillo_platform INTERFACE $<INSTALL_INTERFACE:${contract}>)
set_target_properties(quillo_platform PROPERTIES EXPORT_NAME platform)
install(TARGETS quillo_platform EXPORT QuilloTargets)

target_include_directories(quillo INTERFACE $<INSTALL_INTERFACE:${QUILLO_HEADERS}>)
install(FILES include/quillo DESTINATION ${QUILLO_HEADERS} COMPONENT dev)
quillo_install_library(quillo QuilloTargets runtime dev)
quillo_install_pc(quillo dev)

if(TARGET quillo_kit)
  # Those who use the kit need the library; the warnings it is compiled with are its own affair.
  set_target_properties(quillo_kit PROPERTIES
    EXPORT_NAME kit
    INTERFACE_LINK_LIBRARIES quillo
    INTERFACE_INCLUDE_DIRECTORIES
      "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/kit>;$<INSTALL_INTERFACE:${QUILLO_HEADERS}>")
  install(DIRECTORY kit/quillo_kit DESTINATION ${QUILLO_HEADERS} COMPONENT dev)
  install(TARGETS quillo_kit EXPORT QuilloTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
  get_target_property(type quillo_kit TYPE)
  if(NOT type STREQUAL INTERFACE_LIBRARY)
    set(QUILLO_PC_KIT "-L\${libdir} -lquillo_kit")
  endif()
  quillo_install_pc(quillo-kit dev)
endif()
quillo_install_export(QuilloTargets dev)

if(TARGET quillo_host)
  set_target_properties(quillo_host PROPERTIES EXPORT_NAME host)
  target_include_directories(quillo_host INTERFACE $<INSTALL_INTERFACE:${QUILLO_HEADERS}>)
  install(FILES platform/host/host.hpp DESTINATION ${QUILLO_HEADERS}/host COMPONENT host_dev)
  quillo_install_library(quillo_host QuilloHostTargets host_runtime host_dev)
  quillo_install_export(QuilloHostTargets host_dev)
  quillo_install_pc(quillo-host host_dev)
  install(DIRECTORY ${QUILLO_CATALOG_DIR}/ DESTINATION ${QUILLO_CATALOGS} COMPONENT tools)
endif()

# Programs find the libraries by their own place, wherever the prefix is moved to.
file(RELATIVE_PATH librariesFromProgram /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
foreach(program IN ITEMS quillo-render quillo-serve)
  if(TARGET ${program})
    set_target_properties(${program} PROPERTIES INSTALL_RPATH $ORIGIN/${librariesFromProgram})
    install(TARGETS ${program} COMPONENT tools)
    install(FILES packaging/man/${program}.1
      DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
  endif()
endforeach()

# Style sheets, images and scripts that pages refer to.
if(QUILLO_BUILD_HOST AND EXISTS ${PROJECT_SOURCE_DIR}/pages/static)
  install(DIRECTORY pages/static/
    DESTINATION ${CMAKE_INSTALL_DATADIR}/quillo/static COMPONENT tools)
endif()

configure_package_config_file(cmake/QuilloConfig.cmake.in ${PROJECT_BINARY_DIR}/QuilloConfig.cmake
  INSTALL_DESTINATION ${packageFiles} NO_SET_AND_CHECK_MACRO)
# Before version 1, a minor version may break what the one before could do.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuilloConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/QuilloConfig.cmake ${PROJECT_BINARY_DIR}/QuilloConfigVersion.cmake
  DESTINATION ${packageFiles} COMPONENT dev)
