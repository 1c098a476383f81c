# How an inspector library is built. Part of the installed package, and used by the project itself.

# Gives a library the form that the evaluator loads:
# - its file is NAME.dylib, with mode 0755 whatever the umask: the evaluator refuses one that others may write;
# - symbols are hidden unless exported by name, so that two libraries never meet in one another's;
# - no GNU-unique symbols: one would keep the library mapped for ever after its unloading;
# - a large frame touches every page on its way down, so that it meets the guard below the evaluation's stack.
function(zelq_dylib target)
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX ".dylib"
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>
    -fstack-clash-protection)
  add_custom_command(TARGET ${target} POST_BUILD COMMAND chmod 0755 $<TARGET_FILE:${target}>)
endfunction()

# zelq_add_inspectors(NAME SOURCES…): an inspector library NAME.dylib. Installed into lib/Inspectors beside the
# evaluator it is loaded with the others.
function(zelq_add_inspectors name)
  add_library(${name} MODULE ${ARGN})
  zelq_dylib(${name})
  set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/..")
  target_link_libraries(${name} PRIVATE zelq::Evaluator)
endfunction()
