# Builds the catalogs NAME.po of `folder` into OUT/NAME/LC_MESSAGES/quillo.mo, as a part of `target`.
# A catalog that msgfmt finds fault with fails the build, and so does one that is not complete.
find_program(MSGFMT msgfmt REQUIRED)
mark_as_advanced(MSGFMT)

function(quillo_add_catalogs target folder out)
  foreach(name IN LISTS ARGN)
    set(source ${folder}/${name}.po)
    set(catalog ${out}/${name}/LC_MESSAGES/quillo.mo)
    add_custom_command(
      OUTPUT ${catalog}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${out}/${name}/LC_MESSAGES
      COMMAND ${CMAKE_COMMAND} -DMSGFMT=${MSGFMT} -DSOURCE=${source} -DCATALOG=${catalog}
              -P ${PROJECT_SOURCE_DIR}/cmake/compile_catalog.cmake
      DEPENDS ${source} ${PROJECT_SOURCE_DIR}/cmake/compile_catalog.cmake
      COMMENT "Compiling the catalog ${name}"
      VERBATIM)
    list(APPEND catalogs ${catalog})
  endforeach()
  add_custom_target(${target} ALL DEPENDS ${catalogs})
endfunction()
