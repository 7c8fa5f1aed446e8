# What CPack does not say of a Debian package, or says as it was said long ago: libraries may be
# installed for several architectures at once, and dpkg itself sees to the cache of libraries. CPack
# runs this when it has packed.
find_program(DPKG_DEB dpkg-deb REQUIRED)

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(folder ${CPACK_TEMPORARY_DIRECTORY}/again)
  file(REMOVE_RECURSE ${folder})
  execute_process(COMMAND ${DPKG_DEB} --raw-extract ${package} ${folder}
    COMMAND_ERROR_IS_FATAL ANY)

  file(READ ${folder}/DEBIAN/control control)
  string(REGEX MATCH "\nPackage: ([^\n]+)" line "${control}")
  if(CMAKE_MATCH_1 IN_LIST CPACK_QUILLO_SAME)
    string(REPLACE "${line}" "${line}\nMulti-Arch: same" control "${control}")
    file(WRITE ${folder}/DEBIAN/control "${control}")
  endif()
  if(EXISTS ${folder}/DEBIAN/shlibs)
    file(REMOVE ${folder}/DEBIAN/postinst ${folder}/DEBIAN/postrm)
    file(WRITE ${folder}/DEBIAN/triggers "activate-noawait ldconfig\n")
  endif()

  execute_process(
    COMMAND ${DPKG_DEB} --root-owner-group -Zxz --build ${folder} ${package}
    OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
