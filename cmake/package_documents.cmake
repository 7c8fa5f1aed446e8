# What a Debian package holds besides what is installed otherwise: copyright and changelog in its
# folder of documents. Manual pages are compressed. CPack runs this before it packs.
find_program(GZIP gzip REQUIRED)

function(quillo_compress file)
  execute_process(COMMAND ${GZIP} -9n ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} prefix)
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
  set(documents ${share}/doc/${CPACK_DEBIAN_${prefix}_PACKAGE_NAME})
  file(COPY ${CPACK_QUILLO_PACKAGING}/debian/copyright ${CPACK_QUILLO_PACKAGING}/debian/changelog
    DESTINATION ${documents} FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  quillo_compress(${documents}/changelog)
  file(GLOB pages ${share}/man/man*/*.?)
  foreach(page IN LISTS pages)
    quillo_compress(${page})
  endforeach()
endforeach()
