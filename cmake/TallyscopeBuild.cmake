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
  if(TALLYSCOPE_SANITIZE MATCHES thread AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    add_compile_options(-Wno-tsan)  # it doesn't see fences; ours orders a last look at a count before a change
  endif()
endif()

if(TALLYSCOPE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)  # the fuzzers see which ways a run took
endif()

include(TallyscopeUnity)
include(TallyscopeFolders)
include(TallyscopeTest)
