#include "versions/VersionResource.h"

#include <Carbon/MacErrors.h>
#include <Carbon/Resources.h>

#include <algorithm>
#include <array>

#include "Evaluator/Exceptions.h"

namespace {

constexpr ResType kVersionResource = 0x76657273;  // 'vers'

// Resources are found but not read while this lives.
class WithoutLoading {
  public:
    WithoutLoading() { SetResLoad(false); }
    ~WithoutLoading() { SetResLoad(true); }
    WithoutLoading(WithoutLoading const&) = delete;
    WithoutLoading& operator=(WithoutLoading const&) = delete;
};

// A file's resource fork, open for reading. The resource file that was current is so again at the end.
class OpenResources {
  public:
    explicit OpenResources(FSRef const& reference) : formerlyCurrent(CurResFile()) {
        WithoutLoading const state;
        number = FSOpenResFile(&reference, fsRdPerm);
        if (ResError() != noErr) throw NoSuchObject();
    }
    ~OpenResources() {
        CloseResFile(number);
        UseResFile(formerlyCurrent);
    }
    OpenResources(OpenResources const&) = delete;
    OpenResources& operator=(OpenResources const&) = delete;

    // Throws NoSuchObject when there is none, OSError when that cannot be told.
    Handle Find(SInt16 identifier) const {
        WithoutLoading const state;
        Handle const resource = Get1Resource(kVersionResource, identifier);
        OSErr const error = ResError();
        if (resource != nullptr) return resource;
        if (error != noErr && error != resNotFound) throw OSError(error);
        throw NoSuchObject();
    }

  private:
    SInt16 const formerlyCurrent;
    SInt16 number;
};

using Front = std::array<UInt8, 4>;

// The first bytes of a resource that is not in memory.
Front ReadFront(Handle resource) {
    Front front;
    if (GetMaxResourceSize(resource) < static_cast<SInt32>(front.size())) throw NoSuchObject();
    ReadPartialResource(resource, 0, front.data(), front.size());
    if (ResError() != noErr) throw NoSuchObject();
    return front;
}

MacVersion Decode(Front const& bytes) {
    MacVersion version;
    version.major = static_cast<std::uint16_t>((bytes[0] >> 4) * 10 + (bytes[0] & 0x0F));
    version.minor = bytes[1] >> 4;
    version.bugrev = bytes[1] & 0x0F;
    version.stage = bytes[2];
    version.nonrel = bytes[3];
    return version;
}

}  // namespace

MacVersion versionRes_of_file(integer const& number, Of, file const& object) {
    constexpr long long least = -32768, most = 32767;
    if (number < least || number > most) throw NoSuchObject();
    OpenResources const resources(MakeFSRef(object.url));
    return Decode(ReadFront(resources.Find(static_cast<SInt16>(number))));
}

MacVersion numbered_version_of_file(integer const& number, Of, file const& object) {
    return versionRes_of_file(number, {}, object);
}

MacVersion version_of_file(Of, file const& object) { return versionRes_of_file(1, {}, object); }
