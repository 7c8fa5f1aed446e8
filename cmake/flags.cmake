# What every target of this project is compiled and linked with.

add_library(quillo_flags INTERFACE)
target_compile_options(quillo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2 -Wold-style-cast -Wnon-virtual-dtor
  -Wcast-qual -Wundef
  -fstack-protector-strong
  # The file of a report is relative to the repository, whatever the build folder is.
  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=
  $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
target_link_options(quillo_flags INTERFACE -Wl,-z,relro,-z,now)
