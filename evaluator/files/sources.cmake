# The host's files and locations, relative to evaluator/.
set(EVALUATOR_FILES_SOURCES
  files/CoreFoundationHolders.cpp
  files/FileInfo.cpp
  files/FileLocation.cpp
  files/FileLoop.cpp
  files/FileNames.cpp
  files/FileTimes.cpp
  files/FolderFailures.cpp)
