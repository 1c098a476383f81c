# The system inspectors, relative to inspectors/. To be included where the library is defined: the properties of a
# source file hold in that directory only.
set(INSPECTORS_SYSTEM_SOURCES
  system/Applications.cpp
  system/Components.cpp
  system/EnableableFiles.cpp
  system/Gestalt.cpp
  system/Processes.cpp
  system/SoundVolumes.cpp
  system/SpecialFolders.cpp
  system/SpecialItems.cpp
  system/IPAddresses.cpp
  system/InternetConfig.cpp
  system/ScsiBuses.cpp
  system/ScsiDevices.cpp
  system/TimeAndDate.cpp
  system/TimeAndDateRelations.cpp
  system/Usb.cpp
  system/Volumes.cpp
)
# These relations must really recurse, at every level of optimisation; the file says why.
set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/TimeAndDateRelations.cpp PROPERTIES
  COMPILE_OPTIONS "-fno-optimize-sibling-calls;-fno-lto")
