#include "files/FileSpecs.h"

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <optional>

#include "files/FolderEntries.h"
#include "files/MountTable.h"
#include "files/SlowPaths.h"
#include "foundation/Held.h"
#include "foundation/MacRoman.h"
#include "foundation/Object.h"
#include "foundation/PathStyles.h"
#include "foundation/TextCodec.h"
#include "foundation/Url.h"

namespace Platform {

namespace {

constexpr std::size_t kLongestSpecName = 31;
constexpr std::size_t kLongestExtension = 6;  // kept behind the number, with its dot

// Instead of a volume, in the FSSpec of a place where no item need be. What is remembered under its number is
// the whole path.
constexpr FSVolumeRefNum kPlaces = -1;

std::string MacRomanOf(std::u16string_view text, char replacement) {
    std::string bytes;
    for (char16_t const unit : text) bytes += static_cast<char>(ToMacRoman(unit).value_or(replacement));
    return bytes;
}

// The file name that Mac Roman bytes write.
std::string FileNameOfMacRoman(std::string_view bytes) {
    std::u16string text;
    for (char const byte : bytes) text += FromMacRoman(static_cast<unsigned char>(byte));
    return FileNameOfText(text).value_or(std::string());
}

std::string_view Extension(std::string_view name) {
    std::size_t const dot = name.rfind('.');
    bool const isShort = dot != std::string_view::npos && dot != 0 && name.size() - dot <= kLongestExtension;
    return isShort ? name.substr(dot) : std::string_view();
}

// Whether an FSSpec can have the name itself, which is `bytes` in Mac Roman.
bool IsSpecName(std::string_view name, std::string_view bytes) {
    return bytes.size() <= kLongestSpecName && FileNameOfMacRoman(bytes) == name;
}

// The entry of a folder that a mangled name was made of.
std::optional<std::string> UnmangledName(Path const& folder, std::string_view mangled) {
    std::optional<std::string> found;
    ForEachEntry(SystemPath(folder).Get(), [&](FolderEntry const& entry) {
        if (!found && SpecName(entry.name, static_cast<UInt32>(entry.inode)) == mangled) found = entry.name;
    });
    return found;
}

// Whether the folder at the path is still the one that the numbers were made of.
bool IsStillThere(Path const& path, FSVolumeRefNum volume, SInt32 number) {
    FoundItem found;
    if (FindItem(path, LinkRule::Follow, found) != noErr || !found.item.IsFolder()) return false;
    return static_cast<SInt32>(found.item.status.stx_ino) == number && VolumeOf(found.item) == volume;
}

// The folder that an FSSpec means.
struct SpecifiedFolder {
    Path path;
    bool isItem = false;        // it is the specified item itself, whatever name is given: a volume's root
    bool isRemembered = false;  // it was there
};

// Looks at no disk.
OSErr LocateFolder(FSVolumeRefNum volume, SInt32 number, SpecifiedFolder& folder) {
    if (auto remembered = FolderTable::Shared().Find(volume, number)) {
        folder.path = std::move(*remembered);
        folder.isRemembered = true;
        return noErr;
    }
    if (number != fsRtParID && number != fsRtDirID) return dirNFErr;
    for (Volume const& listed : MountTable::Shared().Volumes()) {
        if (listed.number != volume) continue;
        folder = {Path(listed.mountPoint), number == fsRtParID, false};
        return noErr;
    }
    return nsvErr;
}

std::string_view NameIn(Str63 const& name) {
    return {reinterpret_cast<char const*>(name) + 1, std::min<std::size_t>(name[0], sizeof(Str63) - 1)};
}

// The path of a place that was handed out. One that comes from elsewhere may have the same numbers, but
// hardly the name.
std::optional<Path> PlaceOf(FSSpec const& spec) {
    if (spec.vRefNum != kPlaces) return std::nullopt;
    auto place = FolderTable::Shared().Find(kPlaces, spec.parID);
    if (place && SpecName(LastComponent(place->Text()), 0) != NameIn(spec.name)) place.reset();
    return place;
}

OSErr FindIn(SpecifiedFolder const& folder, FSSpec const& spec, FoundItem& found) {
    if (folder.isRemembered && !IsStillThere(folder.path, spec.vRefNum, spec.parID)) return dirNFErr;
    std::string_view const name = NameIn(spec.name);
    if (folder.isItem || name.empty() || name == "/") return FindItem(folder.path, LinkRule::Follow, found);
    std::string const fileName = FileNameOfMacRoman(name);
    if (CheckName(fileName) != noErr) return bdNamErr;
    OSErr const error = FindItem(folder.path.Child(fileName), LinkRule::Follow, found);
    if (error != fnfErr || name.find('#') == std::string_view::npos) return error;
    auto const unmangled = UnmangledName(folder.path, name);
    return unmangled ? FindItem(folder.path.Child(*unmangled), LinkRule::Follow, found) : OSErr{fnfErr};
}

OSErr FindSpecified(FSSpec const& spec, FoundItem& found) {
    if (auto const place = PlaceOf(spec))
        return Reach(SlowMountBehind(place->Text(), LinkRule::Follow), found,
                     [place](FoundItem& result) { return FindItem(*place, LinkRule::Follow, result); });
    SpecifiedFolder folder;
    if (OSErr const error = LocateFolder(spec.vRefNum, spec.parID, folder); error != noErr) return error;
    std::string const path = JoinPaths(folder.path.Text(), FileNameOfMacRoman(NameIn(spec.name)));
    return Reach(SlowMountBehind(path, LinkRule::Follow), found,
                 [folder, spec](FoundItem& result) { return FindIn(folder, spec, result); });
}

// The URL of the place that an FSSpec names, where there is no such item. A result code: that of its folder.
OSErr LocateMissing(FSSpec const& spec, Held<__CFURL const>& url) {
    SpecifiedFolder folder;
    if (OSErr const error = LocateFolder(spec.vRefNum, spec.parID, folder); error != noErr) return error;
    std::string const name = FileNameOfMacRoman(NameIn(spec.name));
    if (CheckName(name) != noErr) return bdNamErr;
    url.reset(NewURL(folder.path.Child(name), false));
    return noErr;
}

OSErr LocateSpecified(FSSpec const& spec, Held<__CFURL const>& url) {
    if (auto const place = PlaceOf(spec)) {
        url.reset(NewURL(*place, false));
        return noErr;
    }
    FoundItem found;
    OSErr const error = FindSpecified(spec, found);
    if (error == fnfErr) return LocateMissing(spec, url);
    if (error == noErr) url.reset(NewURL(found.location.path, found.item.IsFolder()));
    return error;
}

void CopyName(std::string_view name, Str63& to) {
    to[0] = static_cast<unsigned char>(name.size());
    std::memcpy(to + 1, name.data(), name.size());
}

}  // namespace

std::string SpecName(std::string_view name, UInt32 inode) {
    std::u16string const text = TextOfFileName(name);
    std::string const bytes = MacRomanOf(text, '?');
    if (IsSpecName(name, bytes)) return bytes;
    std::string_view const extension = Extension(bytes);
    char number[16];
    auto const digits = static_cast<std::size_t>(std::snprintf(number, sizeof number, "#%X", inode));
    std::size_t const stem = bytes.size() - extension.size();
    std::string result = bytes.substr(0, std::min(stem, kLongestSpecName - digits - extension.size()));
    return result.append(number).append(extension);
}

OSErr MakeSpec(FoundItem const& found, FSSpec& spec) {
    spec = FSSpec{};
    Path const& path = found.location.path;
    CopyName(SpecName(path.Name(), static_cast<UInt32>(found.item.status.stx_ino)), spec.name);
    Path const folder = path.Folder();
    if (folder.IsNone()) {
        spec.vRefNum = VolumeOf(found.item);
        spec.parID = fsRtParID;
        return noErr;
    }
    FoundItem parent;
    if (OSErr const error = FindItem(folder, LinkRule::Follow, parent); error != noErr) return error;
    // The folder's volume, not the item's: numbers are those of one file system, and another may be mounted
    // on the item, or a link may lead to it.
    spec.vRefNum = VolumeOf(parent.item);
    spec.parID = static_cast<SInt32>(parent.item.status.stx_ino);
    FolderTable::Shared().Remember(spec.vRefNum, spec.parID, folder);
    return noErr;
}

FSSpec MakeSpecOfPlace(std::string_view path) {
    FSSpec spec;
    FoundItem found;
    std::string_view const name = LastComponent(path);
    // A mangled name may be that of several links to one file.
    bool const isPlain =
        IsSpecName(name, MacRomanOf(TextOfFileName(name), '?')) && !SlowMountBehind(path, LinkRule::Follow);
    if (isPlain && FindItemOfText(path, LinkRule::Follow, found) == noErr && MakeSpec(found, spec) == noErr)
        return spec;
    static std::atomic<SInt32> number = 16;  // the first ones are those of roots
    spec = FSSpec{kPlaces, number++, {}};
    CopyName(SpecName(LastComponent(path), 0), spec.name);
    FolderTable::Shared().Remember(spec.vRefNum, spec.parID, Path(path));
    return spec;
}

}  // namespace Platform

using namespace Platform;

OSErr FSpMakeFSRef(FSSpec const* spec, FSRef* newRef) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (spec == nullptr || newRef == nullptr) return paramErr;
        FoundItem found;
        OSErr const error = FindSpecified(*spec, found);
        if (error == noErr) *newRef = MakeReference(found);
        return error;
    });
}

CFURLRef PlatformCreateSpecURL(FSSpec const* spec, OSErr* error) {
    return Guarded<CFURLRef>(nullptr, [&] {
        Held<__CFURL const> url;
        OSErr const result = spec != nullptr ? LocateSpecified(*spec, url) : OSErr{paramErr};
        if (error != nullptr) *error = result;
        return url.release();
    });
}

OSErr FSMakeFSSpec(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, FSSpec* spec) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (spec == nullptr || fileName == nullptr) return paramErr;
        std::string_view const name(reinterpret_cast<char const*>(fileName) + 1, fileName[0]);
        bool const isName = name.empty() || CheckName(name) == noErr;
        if (!isName || name.size() >= sizeof(Str63)) return bdNamErr;
        FSSpec result{vRefNum, dirID, {}};
        CopyName(name, result.name);
        FoundItem found;
        OSErr const error = FindSpecified(result, found);
        if (error == noErr || error == fnfErr) *spec = result;
        return error;
    });
}
