# How every target of the project is built. The rules that matter:
# - symbols are hidden unless exported by name: thousands of exported ones cost milliseconds at every start;
# - libraries find one another relative to themselves, so the tree can be moved or installed;
# - every library has the form of an inspector library (InspectorLibraries.cmake).

include(${CMAKE_CURRENT_LIST_DIR}/InspectorLibraries.cmake)

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)

# Warnings, sanitizers and what else concerns every target of ours. The objects of a library are compiled as the library
# is: without GNU-unique symbols.
function(zelq_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  # A frame wider than the guard below an evaluation's stack touches every page on its way down.
  target_compile_options(${target} PRIVATE -fstack-clash-protection)
  if(ZELQ_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>)
  if(ZELQ_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all
                                             -fno-omit-frame-pointer)
    target_compile_definitions(${target} PRIVATE ZELQ_ADDRESS_SANITIZER) # compilers name it differently
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
  target_link_options(${target} PRIVATE -Wl,--as-needed)
endfunction()

# A shared library called <name>.dylib in lib/<folder>; the search path leads back to lib/.
function(zelq_library name folder)
  add_library(${name} SHARED ${ARGN})
  zelq_options(${name})
  zelq_dylib(${name})
  set_target_properties(${name} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${folder})
  if(folder STREQUAL "")
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
  else()
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/..")
  endif()
  if(NOT ZELQ_SANITIZE) # the sanitizers' own symbols come from the program
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()
