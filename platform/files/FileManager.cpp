// The File Manager's functions on references and paths: the edge of the interface, in terms of Lookup.h and
// Catalog.h.

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>
#include <CoreFoundation/CFURL.h>
#include <Platform/Items.h>

#include <cstring>

#include "files/Errors.h"
#include "files/FileSpecs.h"
#include "files/Locations.h"
#include "files/Lookup.h"
#include "foundation/Object.h"
#include "foundation/PathStyles.h"
#include "foundation/TextCodec.h"
#include "foundation/Url.h"

using namespace Platform;

namespace {

OSErr MakeParentReference(FoundItem const& found, FSRef& parentRef) {
    parentRef = FSRef{};
    Path const path = found.location.path.Folder();
    if (path.IsNone()) return noErr;
    FoundItem parent;
    OSErr const error = FindItem(path, LinkRule::Follow, parent);
    if (error == noErr) parentRef = MakeReference(parent);
    return error;
}

OSErr GetCatalogInfo(FSRef const& ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                     HFSUniStr255* outName, FSSpec* fsSpec, FSRef* parentRef) {
    FoundItem found;
    if (OSErr const error = FindReferenced(ref, found); error != noErr) return error;
    if (catalogInfo != nullptr) {
        OSErr const error = FillCatalogInfo(found, whichInfo, *catalogInfo);
        if (error != noErr) return error;
    }
    if (outName != nullptr) *outName = CarbonName(found.location.path.Name());
    if (fsSpec != nullptr) {
        if (OSErr const error = MakeSpec(found, *fsSpec); error != noErr) return error;
    }
    return parentRef != nullptr ? MakeParentReference(found, *parentRef) : OSErr{noErr};
}

OSErr MakeReferenceToPath(std::string_view path, LinkRule rule, FSRef& ref, Boolean* isDirectory) {
    FoundItem found;
    if (OSErr const error = FindItemOfText(path, rule, found); error != noErr) return error;
    ref = MakeReference(found);
    if (isDirectory != nullptr) *isDirectory = found.item.IsFolder();
    return noErr;
}

OSErr FindNamed(FSRef const& parentRef, std::u16string_view text, FoundItem& found) {
    auto const name = FileNameOfText(text);
    if (!name) return bdNamErr;
    if (OSErr const error = CheckName(*name); error != noErr) return error;
    FoundItem parent;
    if (OSErr const error = FindReferenced(parentRef, parent); error != noErr) return error;
    if (!parent.item.IsFolder()) return dirNFErr;
    return FindItem(parent.location.path.Child(*name), LinkRule::Follow, found);
}

// The location without dots; the URL's folder, or the item itself where it must be one, has to exist.
OSErr ResolveURL(CFURLRef url, CFURLRef& result) {
    Path resolved;
    bool mustBeFolder = false;
    int const failure = ResolvePath(url->ResolvedPath().Text(), resolved, mustBeFolder);
    if (failure != 0) return ErrorOfErrno(failure);
    mustBeFolder |= url->directory;
    FoundItem found;
    OSErr const error = FindItem(resolved, LinkRule::Follow, found);
    if (error == noErr) {
        if (mustBeFolder && !found.item.IsFolder()) return dirNFErr;
        result = NewURL(resolved, found.item.IsFolder());
        return noErr;
    }
    if (error != fnfErr || mustBeFolder) return error;
    FoundItem folder;
    if (OSErr const reason = FindItem(resolved.Folder(), LinkRule::Follow, folder); reason != noErr)
        return reason;
    if (!folder.item.IsFolder()) return fnfErr;  // a link that leads nowhere
    result = NewURL(resolved, false);
    return noErr;
}

}  // namespace

OSErr FSGetCatalogInfo(FSRef const* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpec* fsSpec, FSRef* parentRef) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (ref == nullptr) return paramErr;
        return GetCatalogInfo(*ref, whichInfo, catalogInfo, outName, fsSpec, parentRef);
    });
}

OSErr FSMakeFSRefUnicode(FSRef const* parentRef, UniCharCount nameLength, UniChar const* name, TextEncoding,
                         FSRef* newRef) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (parentRef == nullptr || newRef == nullptr || (name == nullptr && nameLength != 0))
            return paramErr;
        FoundItem found;
        OSErr const error = FindNamed(*parentRef, std::u16string(name, name + nameLength), found);
        if (error == noErr) *newRef = MakeReference(found);
        return error;
    });
}

OSErr FSCompareFSRefs(FSRef const* ref1, FSRef const* ref2) {
    if (ref1 == nullptr || ref2 == nullptr) return paramErr;
    auto const first = ReferenceTable::IdentityIn(*ref1);
    auto const second = ReferenceTable::IdentityIn(*ref2);
    if (!first || !second) return errFSBadFSRef;
    return first->IsSameItem(*second) ? OSErr{noErr} : OSErr{errFSRefsDifferent};
}

OSStatus FSPathMakeRef(UInt8 const* path, FSRef* ref, Boolean* isDirectory) {
    return FSPathMakeRefWithOptions(path, kFSPathMakeRefDefaultOptions, ref, isDirectory);
}

OSStatus FSPathMakeRefWithOptions(UInt8 const* path, OptionBits options, FSRef* ref, Boolean* isDirectory) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        bool const knownOptions = (options & ~OptionBits{kFSPathMakeRefDoNotFollowLeafSymlink}) == 0;
        if (path == nullptr || ref == nullptr || !knownOptions) return paramErr;
        LinkRule const rule = options == kFSPathMakeRefDefaultOptions ? LinkRule::Follow : LinkRule::Itself;
        return MakeReferenceToPath(reinterpret_cast<char const*>(path), rule, *ref, isDirectory);
    });
}

OSStatus FSRefMakePath(FSRef const* ref, UInt8* path, UInt32 maxPathSize) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (ref == nullptr || path == nullptr) return paramErr;
        auto const remembered = ReferenceTable::Shared().Find(*ref);
        if (!remembered) return errFSBadFSRef;
        std::string const whole = remembered->location.path.Text();
        if (whole.size() >= maxPathSize) return errFSNameTooLong;
        std::memcpy(path, whole.c_str(), whole.size() + 1);
        return noErr;
    });
}

Boolean CFURLGetFSRef(CFURLRef url, FSRef* reference) {
    return PlatformGetItem(url, kFSCatInfoNone, reference, nullptr) == noErr;
}

CFURLRef CFURLCreateFromFSRef(CFAllocatorRef, FSRef const* reference) {
    return Guarded<CFURLRef>(nullptr, [&]() -> CFURLRef {
        auto remembered = ReferenceTable::Shared().Find(*reference);
        if (!remembered) return nullptr;
        Location& location = remembered->location;
        return NewURL(std::move(location.path), remembered->isFolder, nullptr, location.rule);
    });
}

OSErr PlatformGetItem(CFURLRef url, FSCatalogInfoBitmap whichInfo, FSRef* ref, FSCatalogInfo* info) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (url == nullptr || ref == nullptr) return paramErr;
        FoundItem found;
        Path const path = url->ResolvedPath();
        OSErr error = path.IsPlain() ? FindItem(path, url->rule, found)
                                     : FindItemOfText(path.Text(), LinkRule::Follow, found);
        if (error != noErr) return error;
        if (url->directory && !found.item.IsFolder()) return dirNFErr;
        if (info != nullptr) error = FillCatalogInfo(found, whichInfo, *info);
        if (error == noErr) *ref = MakeReference(found);
        return error;
    });
}

CFURLRef PlatformCreateResolvedURL(CFURLRef url, OSErr* error) {
    OSErr reason = memFullErr;
    CFURLRef const result = Guarded<CFURLRef>(nullptr, [&] {
        CFURLRef resolved = nullptr;
        reason = ResolveURL(url, resolved);
        return resolved;
    });
    if (error != nullptr) *error = reason;
    return result;
}
