// The calls of Carbon/Processes.h.

#include <Carbon/MacErrors.h>
#include <Carbon/Processes.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <optional>

#include "files/CheckIn.h"
#include "files/Errors.h"
#include "files/FileSpecs.h"
#include "foundation/Object.h"
#include "processes/ProcFiles.h"
#include "processes/ProcessWalk.h"
#include "processes/SerialNumber.h"

using namespace Platform;

namespace {

constexpr ProcessSerialNumber kNone{0, kNoProcess};

bool IsConstant(ProcessSerialNumber const& psn, UInt32 constant) { return NumberIn(psn) == constant; }

OSErr ErrorOf(int number) {
    bool const isMissing = number == ESRCH || number == ENOENT || number == ENOTDIR;
    return isMissing ? OSErr{procNotFound} : ErrorOfErrno(number);
}

// ---- Who is meant

OSErr IdentifyOwn(ProcessIdentity& process) {
    auto const pid = OwnProcessId();
    ProcessStat stat;
    if (!pid) return procNotFound;
    if (int const error = ReadStat(*pid, stat); error != 0) return ErrorOf(error);
    process = {*pid, stat.start};
    return noErr;
}

OSErr Identify(ProcessSerialNumber const& psn, ProcessIdentity& process) {
    if (IsConstant(psn, kCurrentProcess)) return IdentifyOwn(process);
    auto const identity = IdentityIn(psn);
    if (!identity) return procNotFound;
    process = *identity;
    return noErr;
}

// Whether the process runs, whoever's it is.
OSErr CheckRuns(ProcessSerialNumber const* psn) {
    if (psn == nullptr) return paramErr;
    ProcessIdentity process;
    if (OSErr const error = Identify(*psn, process); error != noErr) return error;
    ProcessStat stat;
    if (int const error = ReadStat(process.pid, stat); error != 0) return ErrorOf(error);
    return stat.start == process.start && !stat.HasEnded() ? OSErr{noErr} : OSErr{procNotFound};
}

// ---- What is known of it

// The processes of this thread's walk.
thread_local ProcessWalk walk;
// The one that it came to last: it may end before it is asked about.
thread_local ProcessFacts lastOfWalk;

OSErr GetNext(ProcessIdentity const& last, ProcessSerialNumber& psn) {
    std::optional<pid_t> pid = last.pid;
    for (;;) {
        if (int const error = walk.Next(*pid, pid); error != 0) return ErrorOf(error);
        if (!pid) return procNotFound;
        if (!MayGoOn(0)) return userCanceledErr;  // there may be many that are not this user's
        int const error = ReadFacts(*pid, lastOfWalk);
        if (error == 0) break;
        if (error != ESRCH) return ErrorOf(error);
    }
    psn = SerialNumberOf(lastOfWalk.process);
    return noErr;
}

OSErr GetFacts(ProcessIdentity const& process, ProcessFacts& facts) {
    int const error = ReadFacts(process.pid, facts);
    if (error == 0 && facts.process == process) return noErr;
    if (error != 0 && error != ESRCH) return ErrorOf(error);
    if (lastOfWalk.process != process) return procNotFound;
    facts = lastOfWalk;
    return noErr;
}

ProcessSerialNumber LauncherOf(ProcessFacts const& facts) {
    ProcessStat parent;
    pid_t const pid = facts.stat.parent;
    if (pid == 0 || ReadStat(pid, parent) != 0) return kNone;
    return SerialNumberOf({pid, parent.start});
}

UInt32 Saturated(std::uint64_t number) {
    return static_cast<UInt32>(std::min<std::uint64_t>(number, std::numeric_limits<UInt32>::max()));
}

// The platform's ticks, 60 of a second, of the system's.
UInt32 TicksOf(std::uint64_t clockTicks) {
    static auto const perSecond = static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
    std::uint64_t const seconds = clockTicks / perSecond;
    return Saturated(seconds * 60 + clockTicks % perSecond * 60 / perSecond);
}

void Describe(ProcessFacts const& facts, ProcessInfoRec& info) {
    if (info.processName != nullptr || info.processAppSpec != nullptr) {
        FSSpec const spec = MakeSpecOfPlace(PlaceOfExecutable(facts));
        if (info.processName != nullptr) std::memcpy(info.processName, spec.name, spec.name[0] + 1u);
        if (info.processAppSpec != nullptr) *info.processAppSpec = spec;
    }
    info.processNumber = SerialNumberOf(facts.process);
    info.processType = FourCharCode{'A' << 24 | 'P' << 16 | 'P' << 8 | 'L'};
    info.processSignature = FourCharCode{'?' << 24 | '?' << 16 | '?' << 8 | '?'};
    info.processMode = 0;
    info.processLocation = nullptr;
    info.processSize = Saturated(facts.stat.size);
    info.processFreeMem = 0;
    info.processLauncher = LauncherOf(facts);
    info.processLaunchDate = TicksOf(facts.stat.start);
    info.processActiveTime = TicksOf(facts.stat.active);
}

}  // namespace

OSErr GetNextProcess(ProcessSerialNumber* psn) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (psn == nullptr) return paramErr;
        ProcessIdentity last;  // before the first one
        OSErr error = noErr;
        if (IsConstant(*psn, kCurrentProcess)) {
            error = IdentifyOwn(last);
        } else if (!IsConstant(*psn, kNoProcess)) {
            auto const identity = IdentityIn(*psn);
            if (!identity) return paramErr;
            last = *identity;
        }
        if (error == noErr) error = GetNext(last, *psn);
        if (error == procNotFound) *psn = kNone;
        return error;
    });
}

OSErr GetProcessInformation(ProcessSerialNumber const* psn, ProcessInfoRec* info) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (psn == nullptr || info == nullptr || info->processInfoLength != sizeof(ProcessInfoRec))
            return paramErr;
        ProcessIdentity process;
        ProcessFacts facts;
        OSErr error = Identify(*psn, process);
        if (error == noErr) error = GetFacts(process, facts);
        if (error == noErr) Describe(facts, *info);
        return error;
    });
}

OSErr GetProcessForPID(pid_t pid, ProcessSerialNumber* psn) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (psn == nullptr) return paramErr;
        ProcessFacts facts;
        if (int const error = ReadFacts(pid, facts); error != 0) return ErrorOf(error);
        *psn = SerialNumberOf(facts.process);
        return noErr;
    });
}

OSErr GetProcessPID(ProcessSerialNumber const* psn, pid_t* pid) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (psn == nullptr || pid == nullptr) return paramErr;
        ProcessIdentity process;
        if (OSErr const error = Identify(*psn, process); error != noErr) return error;
        ProcessStat stat;
        int const error = ReadStat(process.pid, stat);
        if (error != 0 && error != ESRCH) return ErrorOf(error);
        if (error == 0 && stat.start != process.start && IsProcess(process.pid)) return procNotFound;
        *pid = process.pid;
        return noErr;
    });
}

OSErr GetCurrentProcess(ProcessSerialNumber* psn) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (psn == nullptr) return paramErr;
        ProcessIdentity process;
        OSErr const error = IdentifyOwn(process);
        if (error == noErr) *psn = SerialNumberOf(process);
        return error;
    });
}

OSErr GetFrontProcess(ProcessSerialNumber* psn) {
    if (psn == nullptr) return paramErr;
    *psn = kNone;
    return procNotFound;
}

OSErr SameProcess(ProcessSerialNumber const* psn1, ProcessSerialNumber const* psn2, Boolean* result) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (psn1 == nullptr || psn2 == nullptr || result == nullptr) return paramErr;
        ProcessIdentity one, other;
        OSErr error = Identify(*psn1, one);
        if (error == noErr) error = Identify(*psn2, other);
        if (error == noErr) *result = one == other;
        return error;
    });
}

OSErr WakeUpProcess(ProcessSerialNumber const* psn) {
    return Guarded<OSErr>(memFullErr, [&] { return CheckRuns(psn); });
}

OSErr SetFrontProcess(ProcessSerialNumber const* psn) {
    return Guarded<OSErr>(memFullErr, [&] {
        OSErr const error = CheckRuns(psn);
        return error == noErr ? OSErr{appIsDaemon} : error;
    });
}
