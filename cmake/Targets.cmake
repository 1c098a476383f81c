# How every target of the project is built. The rules that matter:
# - symbols are hidden unless exported by name: thousands of exported ones cost milliseconds at every start;
# - no GNU-unique symbols: one would keep an inspector library mapped for ever after its unloading;
# - libraries find one another relative to themselves, so the tree can be moved or installed;
# - library files have mode 0755 whatever the umask: the evaluator refuses one that others may write.

include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fno-gnu-unique ZELQ_HAS_NO_GNU_UNIQUE)

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)

# 0755, in the words of install().
set(ZELQ_LIBRARY_MODE OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# Warnings, sanitizers and the flags above, for one target of ours.
function(zelq_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  # A frame wider than the guard below an evaluation's stack touches every page on its way down.
  target_compile_options(${target} PRIVATE -fstack-clash-protection)
  if(ZELQ_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(ZELQ_HAS_NO_GNU_UNIQUE)
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
  endif()
  if(ZELQ_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all
                                             -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
  target_link_options(${target} PRIVATE -Wl,--as-needed)
endfunction()

# A shared library called <name>.dylib in lib/<folder>; the search path leads back to lib/.
function(zelq_library name folder)
  add_library(${name} SHARED ${ARGN})
  zelq_options(${name})
  set_target_properties(${name} PROPERTIES PREFIX "" SUFFIX ".dylib"
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${folder})
  if(folder STREQUAL "")
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
  else()
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/..")
  endif()
  if(NOT ZELQ_SANITIZE) # the sanitizers' own symbols come from the program
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  add_custom_command(TARGET ${name} POST_BUILD COMMAND chmod 0755 $<TARGET_FILE:${name}>)
endfunction()
