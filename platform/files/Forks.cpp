// The File Manager's functions on forks: their numbers and their marks.

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <memory>
#include <mutex>
#include <span>
#include <utility>
#include <vector>

#include "files/FileFailure.h"
#include "files/OpenFork.h"
#include "foundation/Object.h"
#include "foundation/Threads.h"

using namespace Platform;

namespace {

struct Fork : OpenFork {
    SInt64 mark = 0;
};
using SharedFork = std::shared_ptr<Fork>;

// The open forks by their numbers. Safe from any thread.
class Forks {
  public:
    static Forks& Shared() {
        static Forks& forks = *new Forks;
        return forks;
    }

    /// The number of a fork that is added; 0 when there is none left.
    SInt16 Add(SharedFork fork) {
        QuickLock const lock(mutex);
        if (freePlaces.empty()) {
            if (forks.size() == kMost) return 0;
            forks.push_back(nullptr);
            freePlaces.reserve(forks.size());  // closing needs no memory
            freePlaces.push_back(forks.size() - 1);
        }
        std::size_t const place = freePlaces.back();
        freePlaces.pop_back();
        forks[place] = std::move(fork);
        return static_cast<SInt16>(place + 1);
    }

    /// Null when there is none of that number.
    SharedFork Find(SInt16 number) {
        QuickLock const lock(mutex);
        return IsPlace(number) ? forks[PlaceOf(number)] : nullptr;
    }

    SharedFork Remove(SInt16 number) {
        QuickLock const lock(mutex);
        if (!IsPlace(number) || !forks[PlaceOf(number)]) return nullptr;
        freePlaces.push_back(PlaceOf(number));
        return std::exchange(forks[PlaceOf(number)], nullptr);
    }

  private:
    static constexpr std::size_t kMost = 32767;

    static std::size_t PlaceOf(SInt16 number) { return static_cast<std::size_t>(number) - 1; }
    bool IsPlace(SInt16 number) const { return number > 0 && PlaceOf(number) < forks.size(); }

    std::mutex mutex;
    std::vector<SharedFork> forks;  // null where a number is free
    std::vector<std::size_t> freePlaces;
};

// Where a position is from the start of a fork.
OSErr Locate(Fork const& fork, UInt16 mode, SInt64 offset, SInt64& position) {
    constexpr unsigned known = fsFromMark | pleaseCacheMask | noCacheMask | rdVerifyMask;
    if ((mode & ~known) != 0) return errFSBadPosMode;
    SInt64 base = 0;
    switch (mode & fsFromMark) {
        case fsAtMark:
            offset = 0;
            base = fork.mark;
            break;
        case fsFromLEOF: {
            OSErr const error = CountBytes(fork, base);
            if (error != noErr) return error;
            break;
        }
        case fsFromMark:
            base = fork.mark;
            break;
        default:
            break;
    }
    bool const fits = !__builtin_add_overflow(base, offset, &position);
    return fits && position >= 0 ? OSErr{noErr} : OSErr{posErr};
}

OSErr Read(Fork& fork, SInt64 from, std::span<UInt8> to, std::size_t& actual) {
    OSErr const error = ReadBytes(fork, from, to, actual);
    fork.mark = from + static_cast<SInt64>(actual);
    if (error != noErr) return error;
    return actual < to.size() ? OSErr{eofErr} : OSErr{noErr};
}

OSErr OpenWithNumber(FSRef const& ref, SInt16& number) {
    auto const fork = std::make_shared<Fork>();
    if (OSErr const error = OpenForkOf(ref, ForkKind::Data, *fork); error != noErr) return error;
    number = Forks::Shared().Add(fork);
    if (number != 0) return noErr;
    LetGo(*fork);
    return NoteFileFailure(tmfoErr, fork->path);
}

OSErr CheckForkName(UniCharCount length, UniChar const* name) {
    if (length == 0) return noErr;
    return name == nullptr || length > 255 ? OSErr{errFSBadForkName} : OSErr{errFSForkNotFound};
}

}  // namespace

OSErr FSGetDataForkName(HFSUniStr255* dataForkName) {
    if (dataForkName == nullptr) return paramErr;
    dataForkName->length = 0;
    return noErr;
}

OSErr FSOpenFork(FSRef const* ref, UniCharCount forkNameLength, UniChar const* forkName, SInt8 permissions,
                 SInt16* forkRefNum) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (ref == nullptr || forkRefNum == nullptr) return paramErr;
        if (permissions < fsCurPerm || permissions > fsRdWrShPerm) return paramErr;
        if (OSErr const error = CheckForkName(forkNameLength, forkName); error != noErr) return error;
        if (permissions > fsRdPerm) return permErr;
        SInt16 number = 0;
        OSErr const error = OpenWithNumber(*ref, number);
        if (error == noErr) *forkRefNum = number;
        return error;
    });
}

OSErr FSReadFork(SInt16 forkRefNum, UInt16 positionMode, SInt64 positionOffset, ByteCount requestCount,
                 void* buffer, ByteCount* actualCount) {
    std::size_t actual = 0;
    OSErr const error = Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        SharedFork const fork = Forks::Shared().Find(forkRefNum);
        if (!fork) return rfNumErr;
        SInt64 from = 0;
        if (OSErr const reason = Locate(*fork, positionMode, positionOffset, from); reason != noErr)
            return reason;
        if (requestCount != 0 && buffer == nullptr) return errFSBadBuffer;
        return NoteFileFailure(Read(*fork, from, {static_cast<UInt8*>(buffer), requestCount}, actual),
                               fork->path);
    });
    if (actualCount != nullptr) *actualCount = actual;
    return error;
}

OSErr FSSetForkPosition(SInt16 forkRefNum, UInt16 positionMode, SInt64 positionOffset) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        SharedFork const fork = Forks::Shared().Find(forkRefNum);
        if (!fork) return rfNumErr;
        SInt64 position = 0;
        OSErr const error = Locate(*fork, positionMode, positionOffset, position);
        if (error == noErr) fork->mark = position;
        return error;
    });
}

OSErr FSGetForkSize(SInt16 forkRefNum, SInt64* forkSize) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (forkSize == nullptr) return paramErr;
        SharedFork const fork = Forks::Shared().Find(forkRefNum);
        if (!fork) return rfNumErr;
        return NoteFileFailure(CountBytes(*fork, *forkSize), fork->path);
    });
}

OSErr FSCloseFork(SInt16 forkRefNum) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        SharedFork const fork = Forks::Shared().Remove(forkRefNum);
        if (!fork) return rfNumErr;
        LetGo(*fork);
        return noErr;
    });
}
