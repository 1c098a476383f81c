#include "files/FolderEntries.h"

#include <dirent.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "foundation/PathStyles.h"

namespace Platform {

namespace {

constexpr std::size_t kReadBytes = 32768;
constexpr std::size_t kLongestEntry = 280;  // a name of 255 bytes, in whole words

}  // namespace

int FolderEntries::Read(int folder, bool reopened) {
    if (reopened && lseek(folder, position, SEEK_SET) < 0) return errno;
    std::array<char, kReadBytes> buffer;
    std::size_t used = 0;
    while (!atEnd && buffer.size() - used >= kLongestEntry) {
        ssize_t const got = getdents64(folder, buffer.data() + used, buffer.size() - used);
        if (got < 0 && used == 0) return errno;
        if (got < 0) break;  // the next read will tell
        atEnd = got == 0;
        used += static_cast<std::size_t>(got);
    }
    bytes.assign(buffer.data(), used);
    taken = 0;
    return 0;
}

bool FolderEntries::TakeAny(FolderEntry& entry) {
    if (taken == bytes.size()) return false;
    dirent64 header;
    char const* const from = bytes.data() + taken;
    std::memcpy(&header, from, offsetof(dirent64, d_name));
    entry = {from + offsetof(dirent64, d_name), header.d_ino, header.d_type};
    taken += header.d_reclen;
    position = header.d_off;
    return true;
}

bool FolderEntries::Take(FolderEntry& entry) {
    while (TakeAny(entry)) {
        if (!IsDots(entry.name)) return true;
    }
    return false;
}

}  // namespace Platform
