# Property lists, preferences and bundles, relative to inspectors/.
set(INSPECTORS_PLIST_SOURCES
  plist/Arrays.cpp
  plist/Bundles.cpp
  plist/Dictionaries.cpp
  plist/DictionaryEntries.cpp
  plist/PlatformHolders.cpp
  plist/PlatformValues.cpp
  plist/Preferences.cpp
  plist/Values.cpp
)
