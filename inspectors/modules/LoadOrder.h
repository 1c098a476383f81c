#pragma once

// The modules of the library, in the order in which they register. A module names types of others freely,
// earlier and later ones, so the order carries no meaning of its own; it is the contract's, and what lists
// registrations shows it.

#include <cstddef>

#include "modules/AncestorsModule.h"
#include "modules/ApplicationsModule.h"
#include "modules/ArchieServersModule.h"
#include "modules/ArrayValuesModule.h"
#include "modules/ArraysModule.h"
#include "modules/BundlesModule.h"
#include "modules/ComponentIterationModule.h"
#include "modules/ComponentsModule.h"
#include "modules/CountryModule.h"
#include "modules/DescendantsModule.h"
#include "modules/DictionariesModule.h"
#include "modules/DictionaryEntriesModule.h"
#include "modules/DictionaryIterationModule.h"
#include "modules/DomainsModule.h"
#include "modules/EnableableFilesModule.h"
#include "modules/FileAttributesModule.h"
#include "modules/FileContentModule.h"
#include "modules/FileLinesModule.h"
#include "modules/FileSectionsModule.h"
#include "modules/FileSignaturesModule.h"
#include "modules/FileSystemObjectsModule.h"
#include "modules/FileTypesModule.h"
#include "modules/FilesModule.h"
#include "modules/FoldersModule.h"
#include "modules/GestaltModule.h"
#include "modules/GestaltSelectorsModule.h"
#include "modules/IPAddressCastsModule.h"
#include "modules/IPAddressesModule.h"
#include "modules/InternetConfigModule.h"
#include "modules/InternetServiceIterationModule.h"
#include "modules/InternetServicesModule.h"
#include "modules/PreferencesModule.h"
#include "modules/ProcessesModule.h"
#include "modules/PropertyListValuesModule.h"
#include "modules/ScsiIterationModule.h"
#include "modules/ScsiModule.h"
#include "modules/SoundVolumeModule.h"
#include "modules/SpecialFoldersModule.h"
#include "modules/SpecialItemsModule.h"
#include "modules/StageModule.h"
#include "modules/StereoVolumeModule.h"
#include "modules/TimeAndDateModule.h"
#include "modules/UsbModule.h"
#include "modules/VersionsModule.h"
#include "modules/VolumeIterationModule.h"
#include "modules/VolumesModule.h"

namespace Inspectors {

/// Constructs modules one after the other, and so registers them; destroys them in the opposite order.
template <class... Modules>
struct ModuleList {
    static constexpr std::size_t kCount = 0;
};
template <class First, class... Others>
struct ModuleList<First, Others...> {
    static constexpr std::size_t kCount = 1 + sizeof...(Others);
    [[no_unique_address]] First first;
    [[no_unique_address]] ModuleList<Others...> others;
};

using LoadOrder = ModuleList<        //
    ComponentsModule,                // 1
    ComponentIterationModule,        // 2
    BundlesModule,                   // 3
    ArraysModule,                    // 4
    ArrayValuesModule,               // 5
    DictionariesModule,              // 6
    DictionaryEntriesModule,         // 7
    DictionaryIterationModule,       // 8
    PreferencesModule,               // 9
    PropertyListValuesModule,        // 10
    TimeAndDateModule,               // 11
    ApplicationsModule,              // 12
    EnableableFilesModule,           // 13
    FileAttributesModule,            // 14
    VolumeIterationModule,           // 15
    VolumesModule,                   // 16
    GestaltModule,                   // 17
    ArchieServersModule,             // 18
    InternetServicesModule,          // 19
    InternetServiceIterationModule,  // 20
    InternetConfigModule,            // 21
    IPAddressCastsModule,            // 22
    ScsiModule,                      // 23
    ScsiIterationModule,             // 24
    UsbModule,                       // 25
    CountryModule,                   // 26
    VersionsModule,                  // 27
    StageModule,                     // 28
    FilesModule,                     // 29
    FileSignaturesModule,            // 30
    FileSystemObjectsModule,         // 31
    FileTypesModule,                 // 32
    FoldersModule,                   // 33
    GestaltSelectorsModule,          // 34
    IPAddressesModule,               // 35
    SoundVolumeModule,               // 36
    SpecialFoldersModule,            // 37
    SpecialItemsModule,              // 38
    StereoVolumeModule,              // 39
    FileLinesModule,                 // 40
    ProcessesModule,                 // 41
    DomainsModule,                   // 42
    FileSectionsModule,              // 43
    FileContentModule,               // 44
    DescendantsModule,               // 45
    AncestorsModule                  // 46
    >;
static_assert(LoadOrder::kCount == 46);

}  // namespace Inspectors
