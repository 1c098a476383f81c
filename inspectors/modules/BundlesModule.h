#pragma once

#include "frame/Adapters.h"
#include "plist/Bundles.h"

/// Bundles of folders and by their identifiers, and what is known of them.
class BundlesModule {
    TypeRecord<Bundle> type{"bundle"};
    Property<folder, Bundle> ofFolder{"bundle", "bundles", "folder", "bundle", bundle_of};
    NamedGlobalProperty<Bundle> ofIdentifier{"bundle", "bundles", "bundle", bundle_named};
    Property<Bundle, MacVersion> version{"version", "versions", "bundle", "version", version_of};
    Property<Bundle, MacVersion> bundleVersion{"bundle version", "bundle versions", "bundle", "version",
                                               bundle_version_of};
    Property<Bundle, file_type> typeOfBundle{"type", "types", "bundle", "file type", type_of};
    Property<Bundle, file_signature> creator{"creator", "creators", "bundle", "file signature", creator_of};
    Property<Bundle, OSXDictionary> globalDictionary{"global dictionary", "global dictionaries", "bundle",
                                                     "dictionary", global_dictionary_of};
    Property<Bundle, OSXDictionary> localDictionary{"local dictionary", "local dictionaries", "bundle",
                                                    "dictionary", local_dictionary_of};
};
