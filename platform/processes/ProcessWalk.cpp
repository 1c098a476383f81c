#include "processes/ProcessWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>

#include "machine/Environment.h"
#include "processes/ProcTexts.h"

namespace Platform {

int ProcessWalk::Next(pid_t last, std::optional<pid_t>& next) {
    next.reset();
    std::string const path = MachinePath("proc");
    if (!GoesOnFrom(last, path)) {
        if (int const error = Open(path); error != 0) return error;
    }
    for (;;) {
        if (ahead.empty()) {
            int const error = Fill();
            if (error != 0 || ahead.empty()) {
                Close();
                return error;
            }
        }
        pid_t const pid = ahead.back();
        ahead.pop_back();
        if (pid <= last) continue;
        next = given = pid;
        return 0;
    }
}

bool ProcessWalk::GoesOnFrom(pid_t last, std::string const& path) const {
    return folder >= 0 && last == given && last != 0 && owner == getpid() && path == folderPath;
}

int ProcessWalk::Open(std::string const& path) {
    Close();
    folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) return errno;
    struct statfs system;
    isKernels = fstatfs(folder, &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
    folderPath = path;
    owner = getpid();
    return 0;
}

void ProcessWalk::Close() {
    if (folder >= 0) close(folder);
    folder = -1;
    ahead.clear();
    given = 0;
}

// Reads the next ids, if there are any: a few of the kernel's, but all of a folder that was recorded, which
// are in any order.
int ProcessWalk::Fill() {
    bool atEnd = false;
    while (!atEnd && (ahead.empty() || !isKernels)) {
        if (int const error = ReadSome(atEnd); error != 0) return error;
    }
    std::sort(ahead.begin(), ahead.end(), std::greater());
    return 0;
}

int ProcessWalk::ReadSome(bool& atEnd) {
    // Small, so that what is read is still true when it is given; enough for a name of 255 bytes.
    alignas(dirent64) char bytes[512];
    long const length = syscall(SYS_getdents64, folder, bytes, sizeof bytes);
    if (length < 0) return errno;
    atEnd = length == 0;
    for (long at = 0; at < length;) {
        auto const* const entry = reinterpret_cast<dirent64 const*>(bytes + at);
        if (auto const pid = ProcessIdOf(entry->d_name)) ahead.push_back(*pid);
        at += entry->d_reclen;
    }
    return 0;
}

}  // namespace Platform
