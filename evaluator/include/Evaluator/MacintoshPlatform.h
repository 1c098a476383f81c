#pragma once

// Files and folders as inspectors see them: locations, what the catalog says of them, and the look-ups.
//
// A location is a URL: absolute, without "." and "..", in POSIX form. It says where something is, not that it
// is there. Names are the POSIX names: bytes, usually UTF-8, that compare byte for byte; what is not UTF-8
// survives by the rule of CoreFoundation/CFString.h. Symbolic links at the end of a location are described by
// what they lead to and keep their own names; Carbon/Files.h tells the whole rule.
//
// None of these functions may be called from two threads on the same object at once.

#include <Carbon/Files.h>
#include <Carbon/Folders.h>
#include <CoreFoundation/CFURL.h>

#include <cstdint>
#include <string>
#include <vector>

#include "Evaluator/CoreFoundationHolders.h"
#include "Evaluator/Exceptions.h"
#include "Evaluator/Export.h"
#include "Evaluator/Time.h"

/// The encoding of a UStringRef.
struct UTF8 {};

/// Characters in an encoding: a span of bytes. Does not own them.
template <class Encoding>
class UStringRef {
  public:
    constexpr UStringRef(unsigned char const* characters, unsigned long size)
        : from(characters), length(size) {}
    constexpr unsigned char const* begin() const { return from; }
    constexpr unsigned char const* end() const { return from + length; }
    constexpr unsigned long Size() const { return length; }

  private:
    unsigned char const* from;
    unsigned long length;
};

/// Whether two names are the same, unit for unit.
EVALUATOR_API bool operator==(HFSUniStr255 const& left, HFSUniStr255 const& right);

/// A reference to the item at a URL, and its FSSpec. Throw FailedToGetFileItem when there is none.
EVALUATOR_API FSRef MakeFSRef(CFURLRef url);
EVALUATOR_API FSSpec MakeFSSpec(CFURLRef url);
/// The location of a referenced item. Throws FailedToGetFileItem for a stale reference.
EVALUATOR_API AutoCFURL MakeURL(FSRef const& reference);

namespace MacintoshPlatform {

/// Where an item is, or could be. Owns its URL; copies share it.
class EVALUATOR_API FileLocation {
  public:
    /// Nowhere: the URL is null, and nothing but assignment, Set and Exists may be asked.
    FileLocation() = default;
    /// Takes over a URL that the caller owned.
    explicit FileLocation(CFURLRef owned) : url(owned) {}
    explicit FileLocation(AutoCFURL location) : url(std::move(location)) {}

    /// Makes it the location of `name` in the folder at `parent`; nothing is looked up. Throws
    /// DirectoryNotFoundError for a null parent and FileNotFoundError for an empty name.
    void Set(CFURLRef parent, HFSUniStr255 const& name);
    /// The location of the folder that holds the item; a link is in the folder where it stands. Throws
    /// FailedToGetFileItem for the root, which has none.
    AutoCFURL ParentURL() const;
    /// The last component; "/" for the root.
    HFSUniStr255 Name() const;
    /// The item's Finder type and creator, read anew; 0 for a folder and where there is no metadata. Throw
    /// FailedToGetFileItem when there is no item.
    OSType Type() const;
    OSType CreatorType() const;
    /// Whether there is an item now.
    bool Exists() const;

    AutoCFURL url;
};

/// Whether two locations are the same place, or lead to the same item.
EVALUATOR_API bool operator==(FileLocation const& left, FileLocation const& right);

/// What the catalog says of an item. Bytes: it may be copied as such, and owns nothing.
class EVALUATOR_API MacFileInfo {
  public:
    /// No information.
    MacFileInfo() = default;
    /// Looks the item at a location up, with the fields kFields of the catalog.
    explicit MacFileInfo(FileLocation const& location);
    /// What was learned of an item with these fields.
    MacFileInfo(FSRef const& itsReference, FSCatalogInfo const& itsCatalog)
        : valid(1), reference(itsReference), catalog(itsCatalog) {}

    /// The fields of the catalog that a file's inspectors tell of.
    static constexpr FSCatalogInfoBitmap kFields = kFSCatInfoNodeFlags | kFSCatInfoVolume | kFSCatInfoNodeID |
                                                   kFSCatInfoCreateDate | kFSCatInfoContentMod |
                                                   kFSCatInfoBackupDate | kFSCatInfoFinderInfo |
                                                   kFSCatInfoDataSizes | kFSCatInfoRsrcSizes;

    /// Whether the item is a folder. Requires `valid`, as what follows.
    bool IsFolder() const { return (catalog.nodeFlags & kFSNodeIsDirectoryMask) != 0; }
    /// The Finder flags; they lie at the same place for files and folders.
    std::uint16_t FinderFlags() const;

    /// Non-zero when the information was obtained.
    std::uint32_t valid = 0;
    /// Why it was not: the platform's code, such as -43 for an item that does not exist.
    std::int32_t status = 0;
    FSRef reference{};
    FSCatalogInfo catalog{};
};

/// Whether the information is of the same item: by device and inode. A link that was described by its target
/// counts as the target.
EVALUATOR_API bool operator==(MacFileInfo const& left, MacFileInfo const& right);

/// An item: its location, and what the catalog said when it was looked up.
class EVALUATOR_API FileItem : public FileLocation {
  public:
    FileItem() = default;
    /// Looks the item up; `info.valid` is zero when there is none.
    explicit FileItem(FileLocation const& location) : FileLocation(location), info(location) {}
    FileItem(FileLocation location, MacFileInfo const& known)
        : FileLocation(std::move(location)), info(known) {}
    /// With what was learned of it already.
    FileItem(FileLocation location, FSRef const& reference, FSCatalogInfo const& catalog)
        : FileLocation(std::move(location)), info(reference, catalog) {}

    /// The information. Throws FailedToGetFileItem where there is none.
    MacFileInfo const& Info() const {
        if (info.valid == 0) throw FailedToGetFileItem(info.status);
        return info;
    }

    MacFileInfo info;
};

/// The items of a folder, one at a time: the state of an enumeration. Companion files that hold metadata are
/// no items; Carbon/Files.h (FSGetCatalogInfoBulk) tells the whole rule. Begins at its end.
class EVALUATOR_API FileLoop {
  public:
    FileLoop();
    ~FileLoop();
    FileLoop(FileLoop const&) = delete;
    FileLoop& operator=(FileLoop const&) = delete;

    /// Begins with the first item of the folder, whatever came before; at the end when it has none. Throws
    /// DirectoryNotFoundError when there is no such folder, FilePermissionError when it may not be read, and
    /// what ThrowRealOSError does for any other code.
    void Start(FileLocation const& location);
    /// Goes on to the next item, or to the end, where it stays. Throws as Start does, and is at the end then.
    FileLoop& operator++();

    bool IsAtEnd() const { return atEnd != 0; }
    /// The item at hand; there is one except at the end. One that could not be looked at has no information.
    /// Lent until the next step.
    FileItem const& Item() const { return buffer[current]; }

  private:
    void GoTo(std::size_t item);
    void ReadItems();
    void End();

    AutoCFURL folder;
    std::uint32_t atEnd = 1;
    std::vector<FileItem> buffer;  // items with their FSRefs, as they were read at one time
    std::size_t current = 0;       // the one at hand
    FSIterator iterator = nullptr;
    bool isLastRead = false;  // the buffer has the last items
};

/// Whether two items are equal: by their information, or where either has none, by their locations.
EVALUATOR_API bool operator==(FileItem const& left, FileItem const& right);

/// The Carbon form of a name; `encoding` is that of the bytes. UTF-8 (0x08000100) and the volume encoding
/// (255) take any bytes. Throws IllegalFileName for an empty name, ".", "..", a name with '/' or NUL and
/// bytes that are not of the encoding, and IllegalFileNameLength for more than 255 bytes.
EVALUATOR_API HFSUniStr255 ExactFileName(UStringRef<UTF8> name, unsigned long encoding);

/// The location that a path leads to. In POSIX style the path is bytes, whatever the encoding, and starts at
/// the working directory if it does not begin with '/'. In HFS style it is text of the encoding and begins
/// with the name of a mounted volume. "." and ".." (in HFS style each ':' beyond one) are resolved against
/// the disk; all else is kept as it is written. The folder that holds the last component must exist, the
/// component itself only if the path's end demands a folder. Throws MakeFileLocationFailed for every path
/// that leads nowhere, whatever the reason.
EVALUATOR_API FileLocation MakeFileLocation(char const* path, unsigned long length, unsigned long encoding,
                                            CFURLPathStyle style);
/// The same from a folder; `path` ends with a NUL. A POSIX path that begins with '/' starts at the root. An
/// HFS path starts at the folder, with or without ':' in front.
EVALUATOR_API FileLocation MakeRelativeFileLocation(FileLocation const& base, char const* path,
                                                    unsigned long encoding, CFURLPathStyle style);
/// The location that an FSSpec names; there need not be an item. Throws MakeFileLocationFailed when its
/// folder is not known or is gone.
EVALUATOR_API FileLocation MakeFileLocation(FSSpec const& fsSpec);
/// The special folder of a type in a domain, as FSFindFolder finds it; `create` changes nothing. Throws
/// CannotCreateSpecialFolder when there is none, and what ThrowRealOSError does for any other code, such as
/// that of mistakes in the administrator's table.
EVALUATOR_API FileLocation MakeFileLocation(OSType type, SInt16 domain, bool create);

/// The bytes of a name.
EVALUATOR_API std::string MakeUTF8String(HFSUniStr255 const& name);
/// Whether the name's bytes end with those of `suffix`, which ends with a NUL. Every name ends with nothing.
EVALUATOR_API bool HasSuffix(HFSUniStr255 const& name, char const* suffix);

/// The platform's time, as one number of 1/65536 s since 1904, in microseconds since 1970 and back. Both keep
/// what 64 bits can of the precision; the all-zero time is midnight of 1 January 1904.
EVALUATOR_API Instant FileTimeToInstant(UTCDateTime time);
EVALUATOR_API UTCDateTime InstantToFileTime(Instant instant);

}  // namespace MacintoshPlatform
