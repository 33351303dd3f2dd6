# SPDX-License-Identifier: MIT
# The libraries, and the flags that every target of this tree is built with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

# Figures must be the same to the last bit on every machine: a product and a sum are never fused behind our back.
add_compile_options(-ffp-contract=off -Wall -Wextra -Wimplicit-fallthrough -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  add_compile_options(-Wno-restrict)  # false alarms on std::string in GCC 12 (bug 105329)
endif()
if(TALLYSCOPE_SANITIZE)
  add_compile_options(-fsanitize=${TALLYSCOPE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TALLYSCOPE_SANITIZE})
endif()

if(TALLYSCOPE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)  # the fuzzers see which ways a run took
endif()

add_library(tallyscope_core STATIC)
if(NOT TALLYSCOPE_CORE_ONLY)
  add_library(tallyscope_workbench STATIC)
endif()

foreach(library tallyscope_core tallyscope_workbench)
  if(TARGET ${library})
    target_include_directories(${library} PUBLIC
      $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/tallyscope>)
  endif()
endforeach()
# clang counts sign conversions among -Wconversion, g++ doesn't.
target_compile_options(tallyscope_core PRIVATE -Wshadow -Wconversion -Wno-sign-conversion)

# tallyscope_sources(<library> <name>...): adds the pair name.h and name.cpp of the calling folder to a library. A name
# that ends in .h or .cpp stands for that file alone. Headers are installed.
function(tallyscope_sources library)
  foreach(name IN LISTS ARGN)
    if(NOT name MATCHES "\\.(h|cpp)$")
      tallyscope_sources(${library} ${name}.h ${name}.cpp)
    elseif(name MATCHES "\\.h$")
      target_sources(${library} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
        FILES ${CMAKE_CURRENT_SOURCE_DIR}/${name})
    else()
      target_sources(${library} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${name})
    endif()
  endforeach()
endfunction()

# tallyscope_test(<folder> [WINDOW | REAL_WINDOW] SOURCES ... [LIBRARIES ...]): one test binary, run in the C locale and
# again in one with a decimal comma. WINDOW tests run on Qt's offscreen platform, and again at scale 2; REAL_WINDOW tests
# run under a virtual X server.
function(tallyscope_test folder)
  cmake_parse_arguments(ARG "WINDOW;REAL_WINDOW" "" "SOURCES;LIBRARIES" ${ARGN})
  set(target ${folder}_tests)
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE ${ARG_LIBRARIES} tallyscope_core GTest::gtest)
  set(data "TALLYSCOPE_TEST_DATA=${CMAKE_CURRENT_SOURCE_DIR};TALLYSCOPE_EXAMPLES=${PROJECT_SOURCE_DIR}/examples")
  if(ARG_REAL_WINDOW)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/window_main.cpp)
    find_program(XVFB_RUN xvfb-run REQUIRED)
    add_test(NAME ${folder} COMMAND ${XVFB_RUN} -a -s "-screen 0 1600x1200x24" $<TARGET_FILE:${target}>)
    set_tests_properties(${folder} PROPERTIES TIMEOUT 240 ENVIRONMENT "QT_QPA_PLATFORM=xcb;${data}")
    return()
  endif()
  if(ARG_WINDOW)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/window_main.cpp)
    list(APPEND data "QT_QPA_PLATFORM=offscreen")
    add_test(NAME ${folder}.scale2 COMMAND ${target})
    set_tests_properties(${folder}.scale2 PROPERTIES TIMEOUT 240 ENVIRONMENT "${data};QT_SCALE_FACTOR=2")
  else()
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/core_main.cpp)
  endif()
  add_test(NAME ${folder} COMMAND ${target})
  add_test(NAME ${folder}.comma COMMAND ${target})
  set_tests_properties(${folder} PROPERTIES TIMEOUT 240 ENVIRONMENT "${data}")
  set_tests_properties(${folder}.comma PROPERTIES TIMEOUT 240 ENVIRONMENT "${data};TALLYSCOPE_LOCALE=de_DE.UTF-8")
endfunction()
