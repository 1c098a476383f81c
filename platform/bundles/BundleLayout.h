#pragma once

// Where a bundle has its parts.

#include <Carbon/Files.h>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// What of interest lies in a folder.
struct BundleMarks {
    /// The names, in whatever case, of Info-macos.plist, Info.plist and Info-gnustep.plist; empty where there
    /// is none.
    std::array<std::string, 3> information;
    bool hasPackageInfo = false;
    /// Whether there are folders, or links, of these names.
    bool hasContents = false, hasResources = false, hasSupportFiles = false, hasVersions = false;

    /// Takes note of an entry of the folder.
    void Note(std::string_view name, unsigned char type);
};

/// The parts of a bundle, by their paths below its folder.
struct BundleLayout {
    std::string information;  // the information dictionary; empty where there is none
    std::string packageInfo;  // PkgInfo; empty where there is none
    std::string resources;    // the folder of the localised folders; empty: the bundle's own

    bool operator==(BundleLayout const&) const = default;
};

/// Tells what lies in a folder, by its path below the bundle's; a result code.
using LookIntoFolder = std::function<OSErr(std::string_view below, BundleMarks& marks)>;

/// Finds the layout of the bundle whose folder has that name; empty for a folder that is none. A result code.
OSErr FindBundleLayout(std::string_view name, LookIntoFolder const& look,
                       std::optional<BundleLayout>& layout);

/// What lies in the folder at a plain path, on the disk; nothing where there is none, or where it cannot be
/// read, which is noted for PlatformFileFailure. Waits patiently.
OSErr LookIntoFolderAt(std::string const& path, BundleMarks& marks);

}  // namespace Platform
