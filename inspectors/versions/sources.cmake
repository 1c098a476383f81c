# Versions, relative to inspectors/.
set(INSPECTORS_VERSIONS_SOURCES
  versions/Country.cpp
  versions/Stage.cpp
  versions/TextToVersion.cpp
  versions/Version.cpp
  versions/VersionAutomaton.cpp
  versions/VersionLanguage.cpp
  versions/VersionLexer.cpp
  versions/VersionParser.cpp
  versions/VersionResource.cpp
)

# The parser's engine is a template; having it all in each of its callers makes it a tenth faster.
set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/VersionParser.cpp PROPERTIES COMPILE_OPTIONS "$<$<CONFIG:Release>:-O3>")
