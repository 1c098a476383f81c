# The file system inspectors, relative to inspectors/.
set(INSPECTORS_FILESYSTEM_SOURCES
  filesystem/Ancestors.cpp
  filesystem/Descendants.cpp
  filesystem/Enumeration.cpp
  filesystem/Attributes.cpp
  filesystem/File.cpp
  filesystem/FileCodes.cpp
  filesystem/FileSystemObject.cpp
  filesystem/Folder.cpp
)
