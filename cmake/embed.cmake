# Makes `out`, a C++ source in which the constant Pages::NAME is the text of `files`, one behind the
# other. It is made anew when a file changes, and left alone when its text does not.
function(quillo_embed_text name out)
  set(text "")
  foreach(file IN LISTS ARGN)
    file(READ ${file} part)
    string(APPEND text "${part}")
  endforeach()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ARGN})
  file(CONFIGURE OUTPUT ${out} @ONLY CONTENT
[[namespace Pages {

extern char const @name@[];
char const @name@[] = R"embedded(@text@)embedded";

}  // namespace Pages
]])
endfunction()
