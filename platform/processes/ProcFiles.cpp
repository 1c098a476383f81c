#include "processes/ProcFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include "files/SlowPaths.h"
#include "foundation/PathStyles.h"
#include "machine/Environment.h"
#include "machine/MachineFiles.h"

namespace Platform {

namespace {

constexpr std::string_view kDeleted = " (deleted)";

// ---- Reading

std::string FileOf(pid_t pid, std::string_view name) {
    return MachinePath("proc/" + std::to_string(pid) + "/" + std::string(name));
}

// Why a file of a process cannot be read: because there is no such process for us, unless the machine lacks
// something.
int Reason(int error) {
    bool const isWant = error == EMFILE || error == ENFILE || error == ENOMEM;
    return isWant ? error : ESRCH;
}

// Reads a small file. What is wanted of any comes at its beginning: what may be longer, such as the groups of
// a process, stands behind it.
int ReadText(std::string const& path, std::string& text) {
    int const error = ReadBeginning(path, kMostOfFact, text);
    return error != 0 ? Reason(error) : 0;
}

int ReadStatus(pid_t pid, ProcessStatus& status) {
    std::string text;
    if (int const error = ReadText(FileOf(pid, "status"), text); error != 0) return error;
    auto const parsed = ParseStatus(text);
    if (!parsed) return ESRCH;
    status = *parsed;
    return 0;
}

int ReadLink(std::string const& path, std::string& target) {
    std::array<char, PATH_MAX + 1> buffer;
    ssize_t const length = readlink(path.c_str(), buffer.data(), buffer.size());
    if (length < 0) return Reason(errno);
    target.assign(buffer.data(), static_cast<std::size_t>(length));
    return 0;
}

// ---- Executable files

// Looks at an item as it is known to the kernel by now; false where it cannot be.
bool Look(std::string const& path, struct statx& status) {
    constexpr int flags = AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
    return statx(AT_FDCWD, path.c_str(), flags, STATX_INO, &status) == 0;
}

bool LeadsTo(std::string const& path, struct statx const& file) {
    struct statx found;
    return Look(path, found) && found.stx_ino == file.stx_ino && found.stx_dev_major == file.stx_dev_major &&
           found.stx_dev_minor == file.stx_dev_minor;
}

// Where a file that the process runs is when it is not at its path here, because the process is in another
// mount namespace: below the root folder of the process. Where the root of this process is a folder of the
// system's, the path begins with that folder, which is no part of the place. Empty when it is not found.
std::string PlaceBelowItsRoot(ProcessFacts const& facts, struct statx const& file) {
    std::string_view rest = facts.executable;
    for (; !rest.empty(); rest.remove_prefix(std::min(rest.find('/', 1), rest.size()))) {
        std::string place = FileOf(facts.process.pid, std::string("root").append(rest));
        if (LeadsTo(place, file)) return place;
    }
    return {};
}

// The place that a deleted file had: below the root folder of the process when it sees something else there
// than we do.
std::string PlaceOfDeleted(pid_t pid, std::string const& path) {
    std::string place = FileOf(pid, "root" + path);
    struct statx ours, its;
    bool const isHere = Look(path, ours), isThere = Look(place, its);
    bool const isSame = isThere ? LeadsTo(path, its) : !isHere;
    return isSame ? path : place;
}

}  // namespace

int ReadStat(pid_t pid, ProcessStat& stat) {
    std::string text;
    if (int const error = ReadText(FileOf(pid, "stat"), text); error != 0) return error;
    auto const parsed = ParseStat(text);
    if (!parsed) return ESRCH;
    stat = *parsed;
    return 0;
}

// The start is read first and last: in between another process might have come to the id.
int ReadFacts(pid_t pid, ProcessFacts& facts) {
    ProcessStatus status;
    if (int const error = ReadStatus(pid, status); error != 0) return error;
    if (status.process != pid || status.user != getuid()) return ESRCH;
    ProcessStat before, after;
    if (int const error = ReadStat(pid, before); error != 0) return error;
    std::string executable;
    if (int const error = ReadLink(FileOf(pid, "exe"), executable); error != 0) return error;
    if (int const error = ReadStat(pid, after); error != 0) return error;
    if (before.start != after.start || after.HasEnded() || !executable.starts_with('/')) return ESRCH;
    facts = {{pid, after.start}, after, std::move(executable)};
    return 0;
}

bool IsProcess(pid_t pid) {
    ProcessStatus status;
    return ReadStatus(pid, status) == 0 && status.process == pid;
}

std::optional<pid_t> OwnProcessId() {
    std::string target;
    if (ReadLink(MachinePath("proc/self"), target) != 0) return std::nullopt;
    return ProcessIdOf(LastComponent(target));
}

std::string PlaceOfExecutable(ProcessFacts const& facts) {
    std::string const& path = facts.executable;
    pid_t const pid = facts.process.pid;
    std::string const former = path.substr(0, path.size() - (path.ends_with(kDeleted) ? kDeleted.size() : 0));
    if (SlowMountBehind(former, LinkRule::Follow)) return former;  // and whether it was deleted is not asked
    struct statx file;
    bool const isKnown = Look(FileOf(pid, "exe"), file);
    if (!isKnown || LeadsTo(path, file)) return isKnown ? path : former;
    if (std::string place = PlaceBelowItsRoot(facts, file); !place.empty()) return place;
    if (former != path) return PlaceOfDeleted(pid, former);
    // Its file system was unmounted: no path leads to it, and what is at its path is another file.
    return JoinPaths(FileOf(pid, "exe"), LastComponent(path));
}

}  // namespace Platform
