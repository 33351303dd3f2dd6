# SPDX-License-Identifier: MIT
# tallyscope_embed_icons(<library> <svg>...): compiles drawings into a library as text, each known by its file's name;
# resources/tallyscope.svg is known as "app". A program that links the library statically needs no resource set-up.
function(tallyscope_embed_icons library)
  set(rows "")
  foreach(file IN LISTS ARGN)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    get_filename_component(name ${file} NAME_WE)
    if(name STREQUAL "tallyscope")
      set(name "app")
    endif()
    file(READ ${file} text)
    string(APPEND rows "    {\"${name}\", R\"svg(${text})svg\"},\n")
  endforeach()
  set(TALLYSCOPE_ICON_ROWS "${rows}")
  configure_file(${PROJECT_SOURCE_DIR}/platform/ui/IconDrawings.cpp.in ${CMAKE_CURRENT_BINARY_DIR}/IconDrawings.cpp @ONLY)
  tallyscope_folder(${library} folder)
  target_sources(${folder} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/IconDrawings.cpp)
endfunction()
