# Run at the end of an installation: writes the names of the files that it put into place, by their paths from the prefix.
set(text "")
foreach(file IN LISTS CMAKE_INSTALL_MANIFEST_FILES)
  cmake_path(RELATIVE_PATH file BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}")
  string(APPEND text "${file}\n")
endforeach()
file(WRITE "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${list}" "${text}")
