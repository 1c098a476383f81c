#pragma once

// What the file system says of an item, and the catalog information made of it.

#include <Carbon/Files.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cstdint>
#include <string>

#include "files/MacMetadata.h"

namespace Platform {

/// How an item is described whose last component is a symbolic link.
enum class LinkRule : std::uint8_t {
    Follow,  // by what it leads to; by itself when that cannot be reached
    Listed,  // the same, but a link to a folder by itself: a listing does not enter it
    Itself,  // by itself
};

/// Where an item is and how it is to be described.
struct Location {
    std::string path;  // plain
    LinkRule rule = LinkRule::Follow;
};

/// An item that was looked at once, by one statx(2), or two for a link.
struct Item {
    struct statx status;        // of what describes the item
    bool isLink = false;        // the item's last component is a link
    bool isLinkItself = false;  // and the status is that of the link

    bool IsFolder() const { return S_ISDIR(status.stx_mode); }
    dev_t Device() const { return makedev(status.stx_dev_major, status.stx_dev_minor); }
};

/// Looks at the item at a location; a result code.
OSErr Inspect(Location const& location, Item& item);

/// What FillCatalogInfo may skip because the caller knows it.
struct CatalogOptions {
    Companions companions = Companions::LookFor;
};

/// Fills the fields of `whichInfo` of an item that was looked at; the others become zero. A field of which
/// nothing can be learned any more, because the item has just gone, is zero too. errFSBadInfoBitmap for bits
/// without meaning.
OSErr FillCatalogInfo(Location const& location, Item const& item, FSCatalogInfoBitmap whichInfo,
                      CatalogOptions options, FSCatalogInfo& info);

/// The number by which FSSpecs and catalog entries name the folder that holds the item at a path; 1
/// for the root.
UInt32 ParentNumber(std::string const& path);
/// The number of the volume that an item is on; 0 when it is not listed.
FSVolumeRefNum VolumeOf(Item const& item);

}  // namespace Platform
