# The inspectors of what is in a file, relative to inspectors/.
set(INSPECTORS_CONTENT_SOURCES
  content/ByteSearch.cpp
  content/Content.cpp
  content/ExclusionList.cpp
  content/FileLineLoop.cpp
  content/FileLines.cpp
  content/FileReading.cpp
  content/Sections.cpp
)
