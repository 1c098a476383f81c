#include "files/Patience.h"

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <new>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "files/CheckIn.h"
#include "foundation/CutText.h"

namespace Platform {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kBetweenCheckIns{20};
constexpr milliseconds kBriefly{200};

// One piece of work. Shared by the thread that waits and the one that works; `mutex` of the helpers guards
// what is not atomic.
struct Call {
    SlowMount mount;
    PatientWork work;
    bool isDone = false;
    OSErr result = noErr;
    std::atomic<bool> isGivenUp{false};
    std::atomic<UInt32> items{0};  // looked at and not yet told to the host
};
using SharedCall = std::shared_ptr<Call>;

// A thread that is started while one of these lives leaves signals to the program's own threads.
class SignalsBlocked {
  public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    SignalsBlocked(SignalsBlocked const&) = delete;
    SignalsBlocked& operator=(SignalsBlocked const&) = delete;

  private:
    sigset_t before;
};

class Helpers {
  public:
    // They outlive every thread that may still come back at the end.
    static Helpers& Shared() {
        static Helpers& helpers = *new Helpers;
        return helpers;
    }

    /// Has a helper begin with the call; a result code.
    OSErr Begin(SharedCall const& call) {
        std::lock_guard const lock(mutex);
        if (overdue.contains(call->mount.id)) return volOffLinErr;
        if (!isOneIdle) return StartThread(call);
        isOneIdle = false;
        next = call;
        hasNext.notify_one();
        return noErr;
    }

    /// Whether the call has come back within the time.
    bool Await(Call const& call, milliseconds time) {
        std::unique_lock lock(mutex);
        return isDone.wait_for(lock, time, [&] { return call.isDone; });
    }

    /// Gives up a call for a reason; a call that has come back meanwhile keeps its result.
    OSErr GiveUp(Call& call, OSErr reason) {
        std::lock_guard const lock(mutex);
        if (call.isDone) return call.result;
        call.isGivenUp = true;
        overdue.insert(call.mount.id);
        return reason;
    }

  private:
    OSErr StartThread(SharedCall const& call) {
        SignalsBlocked const blocked;
        try {
            std::thread([this, call] { Run(call); }).detach();
            return noErr;
        } catch (std::system_error const&) {
            return memFullErr;
        }
    }

    void Run(SharedCall call) noexcept {
        do {
            OSErr const result = Work(*call);
            call->work = nullptr;  // what it owns goes before anybody learns that it is done
            Finish(*call, result);
            call = AwaitNext();
        } while (call);
    }

    static OSErr Work(Call& call) {
        CheckInElsewhere const checkIn([&](UInt32 items) {
            call.items += items;
            return !call.isGivenUp;
        });
        try {
            return call.work();
        } catch (std::bad_alloc const&) {
            return memFullErr;
        }
    }

    void Finish(Call& call, OSErr result) {
        std::lock_guard const lock(mutex);
        call.result = result;
        call.isDone = true;
        if (call.isGivenUp) overdue.erase(overdue.find(call.mount.id));
        isDone.notify_all();
    }

    // The next call for this thread; null when another one waits already.
    SharedCall AwaitNext() {
        std::unique_lock lock(mutex);
        if (isOneIdle || next) return nullptr;
        isOneIdle = true;
        hasNext.wait(lock, [&] { return next != nullptr; });
        return std::exchange(next, nullptr);
    }

    std::mutex mutex;
    std::condition_variable isDone;
    std::condition_variable hasNext;
    std::multiset<std::uint64_t> overdue;  // ids of the mounts of calls that were given up
    bool isOneIdle = false;
    SharedCall next;  // for the thread that was idle
};

// How the last call of this thread that was given up ended, and the mount.
struct Failure {
    OSErr code = noErr;
    std::string mountPoint;
    bool isNoted = false;
};
thread_local Failure lastFailure;

std::atomic<UInt32> volumePatience{5000};

OSErr Await(Call& call, std::optional<milliseconds> patience) {
    auto const begun = Clock::now();
    Helpers& helpers = Helpers::Shared();
    for (;;) {
        milliseconds slice = kBetweenCheckIns;
        if (patience) {
            auto const passed = std::chrono::duration_cast<milliseconds>(Clock::now() - begun);
            if (passed >= *patience) return helpers.GiveUp(call, volOffLinErr);
            slice = std::min(slice, *patience - passed);
        }
        if (helpers.Await(call, slice)) return call.result;
        if (!MayGoOn(call.items.exchange(0))) return helpers.GiveUp(call, userCanceledErr);
    }
}

}  // namespace

OSErr CallPatiently(SlowMount const& mount, std::optional<milliseconds> patience, PatientWork work) {
    if (CheckInElsewhere::IsInUse()) return work();
    if (!MayGoOn(0)) return userCanceledErr;
    auto const call = std::make_shared<Call>();
    call->mount = mount;
    call->work = std::move(work);
    OSErr error = Helpers::Shared().Begin(call);
    if (error == noErr) error = Await(*call, patience);
    if (UInt32 const untold = call->items.exchange(0); untold != 0) MayGoOn(untold);
    if (error == userCanceledErr || error == volOffLinErr) lastFailure = {error, mount.mountPoint, false};
    return error;
}

OSErr CallServer(Server server, milliseconds patience, PatientWork work) {
    constexpr std::uint64_t highest = ~std::uint64_t{0} - 1;  // no mount has an id as high
    Failure const before = lastFailure;
    OSErr const error =
        CallPatiently({highest - static_cast<std::uint64_t>(server), {}}, patience, std::move(work));
    lastFailure = before;
    return error;
}

OSErr CallBriefly(SlowMount const& mount, PatientWork work) {
    constexpr milliseconds patience = kBriefly;
    Failure const before = lastFailure;
    OSErr const error = CallPatiently(mount, patience, std::move(work));
    if (error == volOffLinErr) lastFailure = before;
    return error;
}

void LetGoPatiently(SlowMount const& mount, SharedDescriptor file) {
    if (CheckInElsewhere::IsInUse()) return;
    // Whoever lets go of this last closes the file: not this thread, unless it is closed already.
    auto const held = std::make_shared<SharedDescriptor>(std::move(file));
    auto const call = std::make_shared<Call>();
    call->mount = mount;
    call->work = [held] {
        held->reset();
        return OSErr{noErr};
    };
    Helpers& helpers = Helpers::Shared();
    bool const isClosed = helpers.Begin(call) == noErr &&
                          (helpers.Await(*call, kBriefly) || helpers.GiveUp(*call, volOffLinErr) == noErr);
    if (!isClosed) new std::shared_ptr<SharedDescriptor>(held);
}

milliseconds VolumePatience() { return milliseconds(volumePatience.load()); }

void ForgetUnresponsiveMount() { lastFailure = {}; }

}  // namespace Platform

OSErr PlatformUnresponsiveMount(char* buffer, UInt32 size) {
    auto const& [code, mountPoint, isNoted] = Platform::lastFailure;
    Platform::CopyCut(mountPoint, buffer, size);
    return code;
}

void PlatformNoteUnresponsiveMount() { Platform::lastFailure.isNoted = true; }

Boolean PlatformHasUnnotedMount() {
    return Platform::lastFailure.code != noErr && !Platform::lastFailure.isNoted;
}

UInt32 PlatformSetVolumePatience(UInt32 milliseconds) {
    return Platform::volumePatience.exchange(milliseconds);
}
