# SPDX-License-Identifier: MIT
# Sources of one target are compiled several at a time, as one, since most of a source's time goes into the headers of Qt
# and of the tests. Unnamed namespaces then are one: a source that has a name of its neighbours' is compiled alone. The
# debug build compiles each alone, and finds includes that are missing.
option(TALLYSCOPE_UNITY "Compile the sources of a target several at a time" ON)

# tallyscope_unity(<target> <source>...): of the calling folder. What a source declares is told by the start of its lines,
# as the style has them.
function(tallyscope_unity target)
  if(NOT TALLYSCOPE_UNITY)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  get_target_property(taken ${target} tallyscope_names)
  foreach(source IN LISTS ARGN)
    get_filename_component(source ${source} ABSOLUTE)
    file(READ ${source} text)
    string(REGEX REPLACE "[][;\\\\]" "@" text "${text}")
    string(REGEX REPLACE "\n(namespace|using namespace) " "\n " text "${text}")
    string(REGEX MATCHALL "\n(struct|class|enum|enum class|using) [A-Za-z0-9_]+" types "${text}")
    string(REGEX REPLACE "\n(struct|class|enum|using) " "\n " text "${text}")
    string(REGEX MATCHALL "\n[A-Za-z][^\n(={@]*[ *&][A-Za-z0-9_]+@* ?[(={@]" others "${text}")
    set(names)
    foreach(line IN LISTS types others)
      string(REGEX REPLACE ".*[ *&]([A-Za-z0-9_]+)[@ ({=]*$" "\\1" name "${line}")
      if(name IN_LIST taken)
        set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
        set(names)
        break()
      endif()
      list(APPEND names ${name})
    endforeach()
    list(APPEND taken ${names})
  endforeach()
  set_target_properties(${target} PROPERTIES tallyscope_names "${taken}")
endfunction()
