# The same source and compiler produce the same bytes, in any folder and at any time: a program contains no path
# of this machine and no time.
add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=build)
add_link_options(-Wl,--no-insert-timestamp)
