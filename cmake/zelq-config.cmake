# find_package(zelq): the target zelq::Evaluator, for programs that ask, and zelq_add_inspectors, for libraries that
# answer.
include(${CMAKE_CURRENT_LIST_DIR}/zelq-targets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/InspectorLibraries.cmake)
