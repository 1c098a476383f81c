// The File Manager's functions on references and paths: the edge of the interface, in terms of Lookup.h and
// Catalog.h.

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>
#include <CoreFoundation/CFURL.h>
#include <Platform/Items.h>

#include <cstring>
#include <optional>
#include <string>

#include "files/Errors.h"
#include "files/FileFailure.h"
#include "files/FileSpecs.h"
#include "files/Locations.h"
#include "files/Lookup.h"
#include "files/SlowPaths.h"
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

// What is told of an item; empty what is not wanted.
struct Told {
    std::optional<FSCatalogInfo> info;
    std::optional<HFSUniStr255> name;
    std::optional<FSSpec> spec;
    std::optional<FSRef> parent;
};

OSErr Tell(FSRef const& ref, FSCatalogInfoBitmap whichInfo, Told& told) {
    FoundItem found;
    if (OSErr const error = FindReferenced(ref, found); error != noErr) return error;
    if (told.info) {
        if (OSErr const error = FillCatalogInfo(found, whichInfo, *told.info); error != noErr) return error;
    }
    if (told.name) told.name = CarbonName(found.location.path.Name());
    if (told.spec) {
        if (OSErr const error = MakeSpec(found, *told.spec); error != noErr) return error;
    }
    return told.parent ? MakeParentReference(found, *told.parent) : OSErr{noErr};
}

template <class Output>
std::optional<Output> Wanted(Output const* output) {
    return output != nullptr ? std::optional<Output>(Output{}) : std::nullopt;
}
template <class Output>
void Give(std::optional<Output> const& told, Output* output) {
    if (told) *output = *told;
}

struct Referenced {
    FSRef ref{};
    bool isFolder = false;
};

OSErr MakeReferenceToPath(std::string const& path, LinkRule rule, Referenced& result) {
    FoundItem found;
    if (OSErr const error = FindItemOfText(path, rule, found); error != noErr) return error;
    result = {MakeReference(found), found.item.IsFolder()};
    return noErr;
}

OSErr MakeReferenceToNamed(FSRef const& parentRef, std::string const& name, FSRef& ref) {
    FoundItem parent, found;
    if (OSErr const error = FindReferenced(parentRef, parent); error != noErr) return error;
    if (!parent.item.IsFolder()) return dirNFErr;
    OSErr const error = FindItem(parent.location.path.Child(name), LinkRule::Follow, found);
    if (error == noErr) ref = MakeReference(found);
    return error;
}

// A location without dots.
struct Resolved {
    Path path;
    bool isFolder = false;
};

// The folder, or the item itself where it must be one, has to exist.
OSErr Resolve(std::string const& path, bool mustBeFolder, Resolved& resolved) {
    bool wantsFolder = false;
    if (int const failure = ResolvePath(path, resolved.path, wantsFolder); failure != 0)
        return ErrorOfErrno(failure);
    mustBeFolder |= wantsFolder;
    FoundItem found;
    OSErr const error = FindItem(resolved.path, LinkRule::Follow, found);
    resolved.isFolder = error == noErr && found.item.IsFolder();
    if (error == noErr) return mustBeFolder && !resolved.isFolder ? OSErr{dirNFErr} : OSErr{noErr};
    if (error != fnfErr || mustBeFolder) return error;
    FoundItem folder;
    if (OSErr const reason = FindItem(resolved.path.Folder(), LinkRule::Follow, folder); reason != noErr)
        return reason;
    return folder.item.IsFolder() ? OSErr{noErr} : OSErr{fnfErr};  // a link that leads nowhere
}

OSErr ResolveURL(CFURLRef url, CFURLRef& result) {
    Resolved resolved;
    std::string const path = url->ResolvedPath().Text();
    OSErr const error = Reach(SlowMountBehind(path, LinkRule::Follow), resolved,
                              [path, mustBeFolder = url->directory](Resolved& location) {
                                  return Resolve(path, mustBeFolder, location);
                              });
    if (error == noErr) result = NewURL(resolved.path, resolved.isFolder);
    return error;
}

// A location that may still have dots; then it is described by what a link at its end leads to.
OSErr FindLocated(Location const& location, FoundItem& found) {
    return location.path.IsPlain() ? FindItem(location.path, location.rule, found)
                                   : FindItemOfText(location.path.Text(), LinkRule::Follow, found);
}

struct Gotten {
    FSRef ref{};
    FSCatalogInfo info{};
};

OSErr GetItem(Location const& location, bool mustBeFolder, std::optional<FSCatalogInfoBitmap> whichInfo,
              Gotten& gotten) {
    FoundItem found;
    OSErr error = FindLocated(location, found);
    if (error != noErr) return error;
    if (mustBeFolder && !found.item.IsFolder()) return dirNFErr;
    if (whichInfo) error = FillCatalogInfo(found, *whichInfo, gotten.info);
    if (error == noErr) gotten.ref = MakeReference(found);
    return error;
}

}  // namespace

OSErr FSGetCatalogInfo(FSRef const* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpec* fsSpec, FSRef* parentRef) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (ref == nullptr) return paramErr;
        Told told{Wanted(catalogInfo), Wanted(outName), Wanted(fsSpec), Wanted(parentRef)};
        OSErr const error = Reach(SlowMountBehind(*ref), told, [asked = *ref, whichInfo](Told& result) {
            return Tell(asked, whichInfo, result);
        });
        if (error != noErr) return error;
        Give(told.info, catalogInfo);
        Give(told.name, outName);
        Give(told.spec, fsSpec);
        Give(told.parent, parentRef);
        return noErr;
    });
}

OSErr FSMakeFSRefUnicode(FSRef const* parentRef, UniCharCount nameLength, UniChar const* name, TextEncoding,
                         FSRef* newRef) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (parentRef == nullptr || newRef == nullptr || (name == nullptr && nameLength != 0))
            return paramErr;
        auto const bytes = FileNameOfText(std::u16string(name, name + nameLength));
        if (!bytes) return bdNamErr;
        if (OSErr const error = CheckName(*bytes); error != noErr) return error;
        return Reach(SlowMountBehind(*parentRef, *bytes), *newRef,
                     [parent = *parentRef, child = *bytes](FSRef& ref) {
                         return MakeReferenceToNamed(parent, child, ref);
                     });
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
        std::string const text(reinterpret_cast<char const*>(path));
        Referenced result;
        OSErr const error = Reach(SlowMountBehind(text, rule), result, [text, rule](Referenced& referenced) {
            return MakeReferenceToPath(text, rule, referenced);
        });
        if (error != noErr) return error;
        *ref = result.ref;
        if (isDirectory != nullptr) *isDirectory = result.isFolder;
        return noErr;
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
        Location const location{url->ResolvedPath(), url->rule};
        auto const wanted = info != nullptr ? std::optional(whichInfo) : std::nullopt;
        Gotten gotten;
        OSErr const error = Reach(SlowMountBehind(location), gotten,
                                  [location, mustBeFolder = url->directory, wanted](Gotten& result) {
                                      return GetItem(location, mustBeFolder, wanted, result);
                                  });
        if (error != noErr) return NoteFileFailure(error, location.path);
        *ref = gotten.ref;
        if (info != nullptr) *info = gotten.info;
        return noErr;
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
