#pragma once

// What the file system says of an item, and the catalog information made of it.

#include <Carbon/Files.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cstdint>
#include <optional>

#include "files/Location.h"
#include "files/Locations.h"

namespace Platform {

/// An item that was looked at once, by one statx(2), or two for a link.
struct Item {
    struct statx status;        // of what describes the item
    bool isLink = false;        // the item's last component is a link
    bool isLinkItself = false;  // and the status is that of the link

    bool IsFolder() const { return S_ISDIR(status.stx_mode); }
    dev_t Device() const { return makedev(status.stx_dev_major, status.stx_dev_minor); }
};

/// An item that was found, and where.
struct FoundItem {
    Location location;
    Item item;
};

/// Looks at the item at a location; a result code.
OSErr Inspect(Location const& location, Item& item);
/// The same at a place in a folder that is being listed: the check-in function is not asked, and nothing is
/// mounted.
OSErr InspectListed(Place place, LinkRule rule, Item& item);

/// What a listing of a folder has shown of all its items, and so spares the look-ups for each of them.
struct Listing {
    bool companions = true;     // there may be companion files beside them
    std::uint64_t mountId = 0;  // a mount, and the number of its volume
    FSVolumeRefNum volume = 0;
    bool attributes = true;  // files on it may have extended attributes;
    bool wasProbed = false;  // this was found out
};

/// Whether all bits of a mask name catalog information.
bool IsCatalogInfo(FSCatalogInfoBitmap whichInfo);
/// Fills the fields of `whichInfo` of an item that was looked at; the others become zero. A field of which
/// nothing can be learned any more, because the item has just gone, is zero too. errFSBadInfoBitmap for bits
/// without meaning.
OSErr FillCatalogInfo(FoundItem const& found, FSCatalogInfoBitmap whichInfo, FSCatalogInfo& info);
/// The same for an item of a listing, which is added to by what is learned of it.
OSErr FillCatalogInfo(FoundItem const& found, Place place, FSCatalogInfoBitmap whichInfo, Listing& listing,
                      FSCatalogInfo& info);

/// The number by which FSSpecs and catalog entries name the folder that holds the item at a path; 1
/// for the root.
UInt32 ParentNumber(Path const& path);
/// The number of the volume that an item is on; 0 when it is not listed.
FSVolumeRefNum VolumeOf(Item const& item);

}  // namespace Platform
