# Property lists, relative to inspectors/.
set(INSPECTORS_PLIST_SOURCES
  plist/Arrays.cpp
  plist/Dictionaries.cpp
  plist/DictionaryEntries.cpp
  plist/PlatformHolders.cpp
  plist/PlatformValues.cpp
  plist/Values.cpp
)
