// The Resource Manager: the chain of open resource files and their handles.

#include <Carbon/MacErrors.h>
#include <Carbon/Resources.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "files/FileFailure.h"
#include "files/OpenFork.h"
#include "files/References.h"
#include "files/ResourceFork.h"
#include "foundation/Object.h"

using namespace Platform;

namespace {

constexpr SInt16 kNoFile = 0;
constexpr std::size_t kMostFiles = 32767;
constexpr std::uint32_t kMostLoaded = std::uint32_t{16} << 20;
constexpr UInt8 kCompressed = 0x01;  // an attribute of resources
constexpr std::uint32_t kCompressedSignature = 0xA89F6572;

// A resource that was asked for. Its handle is the address of `master`.
struct Resource {
    Ptr master = nullptr;
    ResourceReference reference{};
    std::vector<char> bytes;
};

class ResourceFile {
  public:
    ResourceFile() = default;
    ResourceFile(ResourceFile const&) = delete;
    ResourceFile& operator=(ResourceFile const&) = delete;
    ~ResourceFile() {
        try {
            LetGo(fork);
        } catch (std::bad_alloc const&) {
            // it is closed there and then
        }
    }

    OSErr Open(FSRef const& reference) {
        if (OSErr const error = OpenForkOf(reference, ForkKind::Resource, fork); error != noErr) return error;
        SInt64 size = 0;
        OSErr error = CountBytes(fork, size);
        if (error == noErr) {
            error =
                resources.Open(static_cast<std::uint64_t>(size),
                               [this](std::uint64_t from, std::span<UInt8> to) { return Read(from, to); });
        }
        return NoteFileFailure(error, fork.path);
    }

    // The handle is null when there is no such resource.
    OSErr Find(ResType type, SInt16 number, bool load, Handle& handle) {
        bool hasType = false;
        auto const found = resources.Find(type, number, hasType);
        if (!found) return hasType ? OSErr{resNotFound} : OSErr{noErr};
        Resource& resource = handles[{type, number}];
        resource.reference = *found;
        OSErr const error = load && resource.master == nullptr ? Load(resource) : OSErr{noErr};
        if (error == noErr) handle = &resource.master;
        return error;
    }

    // Null for a handle of another file, or none.
    Resource const* ResourceOf(Handle handle) const {
        auto const found = std::find_if(handles.begin(), handles.end(),
                                        [=](auto const& entry) { return &entry.second.master == handle; });
        return found == handles.end() ? nullptr : &found->second;
    }

    std::uint32_t MostBytes(Resource const& resource) const {
        return resources.MostBytes(resource.reference);
    }

    OSErr ReadPart(Resource const& resource, std::uint32_t offset, std::span<UInt8> to) const {
        std::uint32_t size = 0;
        if (OSErr const error = Measure(resource, size); error != noErr) return error;
        if (offset > size) return inputOutOfBounds;
        std::span<UInt8> const there = to.first(std::min<std::size_t>(to.size(), size - offset));
        OSErr const error = resources.Read(resource.reference, offset, there);
        return error == noErr && there.size() < to.size() ? OSErr{inputOutOfBounds} : error;
    }

  private:
    OSErr Read(std::uint64_t from, std::span<UInt8> to) const {
        std::size_t actual = 0;
        OSErr const error = ReadBytes(fork, static_cast<SInt64>(from), to, actual);
        return error == noErr && actual < to.size() ? OSErr{eofErr} : error;
    }

    // How many bytes a resource has, in the form in which they are of use.
    OSErr Measure(Resource const& resource, std::uint32_t& size) const {
        if (OSErr const error = resources.CountBytes(resource.reference, size); error != noErr) return error;
        std::array<UInt8, 4> signature;
        if ((resource.reference.attributes & kCompressed) == 0 || size < signature.size()) return noErr;
        OSErr const error = resources.Read(resource.reference, 0, signature);
        if (error != noErr) return error;
        return BigEndian32(signature.data()) == kCompressedSignature ? OSErr{CantDecompress} : OSErr{noErr};
    }

    OSErr Load(Resource& resource) const {
        std::uint32_t size = 0;
        if (OSErr const error = Measure(resource, size); error != noErr) return error;
        if (size > kMostLoaded) return memFullErr;
        std::vector<char> bytes(std::size_t{size} + 1);  // so that there is an address for no bytes
        OSErr const error = resources.Read(resource.reference, 0,
                                           {reinterpret_cast<UInt8*>(bytes.data()), std::size_t{size}});
        if (error != noErr) return error;
        resource.bytes = std::move(bytes);
        resource.master = resource.bytes.data();
        return noErr;
    }

    OpenFork fork;
    ResourceFork resources;
    std::map<std::pair<ResType, SInt16>, Resource> handles;
};

// What the Resource Manager remembers. Its calls take turns.
class ResourceManager {
  public:
    static ResourceManager& Shared() {
        static ResourceManager& manager = *new ResourceManager;
        return manager;
    }

    std::mutex mutex;
    OSErr error = noErr;  // of the last call
    bool load = true;
    SInt16 current = kNoFile;

    OSErr Open(FSRef const& reference) {
        auto const identity = ReferenceTable::IdentityIn(reference);
        if (!identity) return NoteFileFailure(errFSBadFSRef, Path());
        auto const same = std::find_if(chain.begin(), chain.end(), [&](OpenFile const& open) {
            return open.identity.IsSameItem(*identity);
        });
        if (same != chain.end()) {
            current = same->number;
            return noErr;
        }
        if (chain.size() == kMostFiles) return tmfoErr;
        auto file = std::make_unique<ResourceFile>();
        if (OSErr const reason = file->Open(reference); reason != noErr) return reason;
        SInt16 const number = FreeNumber();
        chain.push_back({number, *identity, std::move(file)});
        current = number;
        return noErr;
    }

    OSErr Use(SInt16 number) {
        if (number != kNoFile && Find(number) == nullptr) return resFNotFound;
        current = number;
        return noErr;
    }

    OSErr Close(SInt16 number) {
        auto const closing = std::find_if(chain.begin(), chain.end(),
                                          [=](OpenFile const& open) { return open.number == number; });
        if (closing == chain.end()) return resFNotFound;
        if (current == number) current = closing == chain.begin() ? kNoFile : std::prev(closing)->number;
        chain.erase(closing);
        return noErr;
    }

    OSErr Get(ResType type, SInt16 identifier, Handle& handle) {
        ResourceFile* const file = Find(current);
        return file == nullptr ? OSErr{resFNotFound} : file->Find(type, identifier, load, handle);
    }

    OSErr MeasureMost(Handle handle, SInt32& most) const {
        constexpr std::uint32_t largest = std::numeric_limits<SInt32>::max();
        auto const [file, resource] = FindHandle(handle);
        if (resource == nullptr) return resNotFound;
        most = static_cast<SInt32>(std::min(file->MostBytes(*resource), largest));
        return noErr;
    }

    OSErr Read(Handle handle, SInt32 offset, void* buffer, SInt32 count) const {
        auto const [file, resource] = FindHandle(handle);
        if (resource == nullptr) return resNotFound;
        if (offset < 0 || count < 0) return inputOutOfBounds;
        if (buffer == nullptr && count != 0) return paramErr;
        return file->ReadPart(*resource, static_cast<std::uint32_t>(offset),
                              {static_cast<UInt8*>(buffer), static_cast<std::size_t>(count)});
    }

  private:
    struct OpenFile {
        SInt16 number;
        Identity identity;
        std::unique_ptr<ResourceFile> file;
    };

    ResourceFile* Find(SInt16 number) const {
        auto const found = std::find_if(chain.begin(), chain.end(),
                                        [=](OpenFile const& open) { return open.number == number; });
        return found == chain.end() ? nullptr : found->file.get();
    }

    // Both null when it is no handle of a resource.
    std::pair<ResourceFile const*, Resource const*> FindHandle(Handle handle) const {
        for (OpenFile const& open : chain) {
            Resource const* const resource = open.file->ResourceOf(handle);
            if (resource != nullptr) return {open.file.get(), resource};
        }
        return {nullptr, nullptr};
    }

    // The least number that no file has. Requires: there is one.
    SInt16 FreeNumber() const {
        std::vector<bool> isTaken(chain.size() + 1);  // by numbers less 1
        for (OpenFile const& open : chain) {
            auto const place = static_cast<std::size_t>(open.number - 1);
            if (place < isTaken.size()) isTaken[place] = true;
        }
        auto const place = std::find(isTaken.begin(), isTaken.end(), false) - isTaken.begin();
        return static_cast<SInt16>(place + 1);
    }

    std::vector<OpenFile> chain;  // in the order in which they were opened
};

// Does the work of a call, and remembers how it ended.
template <class Work>
void Call(Work const& work) {
    ResourceManager& manager = ResourceManager::Shared();
    std::scoped_lock const turn(manager.mutex);
    manager.error = Guarded<OSErr>(memFullErr, [&] { return work(manager); });
}

}  // namespace

OSErr ResError() {
    ResourceManager& manager = ResourceManager::Shared();
    std::scoped_lock const turn(manager.mutex);
    return manager.error;
}

SInt16 CurResFile() {
    SInt16 number = kNoFile;
    Call([&](ResourceManager& manager) {
        number = manager.current;
        return OSErr{noErr};
    });
    return number;
}

void UseResFile(SInt16 refNum) {
    Call([=](ResourceManager& manager) { return manager.Use(refNum); });
}

void SetResLoad(Boolean load) {
    Call([=](ResourceManager& manager) {
        manager.load = load != 0;
        return OSErr{noErr};
    });
}

SInt16 FSOpenResFile(FSRef const* ref, SInt8 permission) {
    SInt16 number = -1;
    Call([&](ResourceManager& manager) -> OSErr {
        if (ref == nullptr || permission < fsCurPerm || permission > fsRdWrShPerm) return paramErr;
        if (permission > fsRdPerm) return permErr;
        OSErr const error = manager.Open(*ref);
        if (error == noErr) number = manager.current;
        return error;
    });
    return number;
}

void CloseResFile(SInt16 refNum) {
    Call([=](ResourceManager& manager) { return manager.Close(refNum); });
}

Handle Get1Resource(ResType theType, SInt16 theID) {
    Handle handle = nullptr;
    Call([&](ResourceManager& manager) { return manager.Get(theType, theID, handle); });
    return handle;
}

SInt32 GetMaxResourceSize(Handle theResource) {
    SInt32 most = 0;
    Call([&](ResourceManager& manager) { return manager.MeasureMost(theResource, most); });
    return most;
}

void ReadPartialResource(Handle theResource, SInt32 offset, void* buffer, SInt32 count) {
    Call([=](ResourceManager& manager) { return manager.Read(theResource, offset, buffer, count); });
}
