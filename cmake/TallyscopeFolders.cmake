# SPDX-License-Identifier: MIT
# A folder is a library of its own inside the build, folder_<its path>, which links what stands here and nothing else,
# so a call up the house doesn't link. Installed are two libraries, each one archive of its folders' objects.

set(core_folders platform_core files statistics spatial bands conditioning)
set(workbench_folders platform_ui outside_colour outside_plot gridctrl plots workbench)

set(links_of_platform_core)
set(links_of_files folder_platform_core)
set(links_of_statistics folder_spatial folder_platform_core)  # one layer with spatial
set(links_of_spatial folder_statistics folder_files folder_platform_core)
set(links_of_bands folder_statistics folder_spatial folder_platform_core)
set(links_of_conditioning folder_bands folder_statistics folder_files folder_platform_core)
set(links_of_platform_ui folder_files folder_platform_core Qt6::Widgets Qt6::Svg)
set(links_of_outside_colour folder_platform_core)
set(links_of_outside_plot folder_outside_colour folder_platform_ui folder_files Qt6::PrintSupport)
set(links_of_gridctrl folder_platform_ui)
set(links_of_plots folder_outside_plot folder_conditioning)
set(links_of_workbench folder_plots folder_gridctrl)

# clang counts sign conversions among -Wconversion, g++ doesn't. A neighbour's name in an unnamed namespace isn't one that
# a local name hides, but compiled together it looks so.
set(strict_warnings -Wconversion -Wno-sign-conversion)
if(NOT TALLYSCOPE_UNITY)
  list(APPEND strict_warnings -Wshadow)
endif()

add_library(tallyscope_core STATIC)
if(NOT TALLYSCOPE_CORE_ONLY)
  add_library(tallyscope_workbench STATIC)
  target_link_libraries(tallyscope_workbench PUBLIC tallyscope_core Qt6::Widgets Qt6::Svg Qt6::PrintSupport)
endif()
foreach(library tallyscope_core tallyscope_workbench)
  if(TARGET ${library})
    set_target_properties(${library} PROPERTIES LINKER_LANGUAGE CXX)
    target_include_directories(${library} PUBLIC
      $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/tallyscope>)
  endif()
endforeach()

# The target that compiles the calling folder's sources for an installed library.
function(tallyscope_folder library out)
  file(RELATIVE_PATH name ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  string(REPLACE "/" "_" name ${name})
  set(folder folder_${name})
  set(${out} ${folder} PARENT_SCOPE)
  if(TARGET ${folder})
    return()
  endif()
  add_library(${folder} STATIC)
  target_include_directories(${folder} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${folder} PUBLIC ${links_of_${name}})
  target_sources(${library} PRIVATE $<TARGET_OBJECTS:${folder}>)
  if(name IN_LIST core_folders)
    target_compile_options(${folder} PRIVATE ${strict_warnings})
  endif()
  if(TALLYSCOPE_TESTS)
    # All of the folder's objects on what it links: fails on a name that only a folder above has.
    add_executable(${folder}_stands ${PROJECT_SOURCE_DIR}/cmake/stands.cpp $<TARGET_OBJECTS:${folder}>)
    target_link_libraries(${folder}_stands PRIVATE ${links_of_${name}})
  endif()
endfunction()

# tallyscope_sources(<library> <name>...): adds the pair name.h and name.cpp of the calling folder to a library. A name
# that ends in .h or .cpp stands for that file alone. Headers are installed.
function(tallyscope_sources library)
  set(target ${library})
  if(library MATCHES "^tallyscope_(core|workbench)$")
    tallyscope_folder(${library} target)
  endif()
  foreach(name IN LISTS ARGN)
    if(NOT name MATCHES "\\.cpp$")
      string(REGEX REPLACE "\\.h$" "" stem ${name})
      target_sources(${library} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
        FILES ${CMAKE_CURRENT_SOURCE_DIR}/${stem}.h)
    endif()
    if(NOT name MATCHES "\\.h$")
      string(REGEX REPLACE "\\.cpp$" "" stem ${name})
      target_sources(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${stem}.cpp)
      tallyscope_unity(${target} ${stem}.cpp)
    endif()
  endforeach()
endfunction()
