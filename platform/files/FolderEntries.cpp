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
    SkipDots();
    return 0;
}

// The entry at hand, the position behind it, and its bytes.
FolderEntry FolderEntries::Next(std::int64_t& behind, std::size_t& size) const {
    dirent64 header;
    char const* const from = bytes.data() + taken;
    std::memcpy(&header, from, offsetof(dirent64, d_name));
    behind = header.d_off;
    size = header.d_reclen;
    return {from + offsetof(dirent64, d_name), header.d_ino, header.d_type};
}

void FolderEntries::SkipDots() {
    while (!IsEmpty()) {
        std::int64_t behind;
        std::size_t size;
        if (!IsDots(Next(behind, size).name)) return;
        position = behind;
        taken += size;
    }
}

bool FolderEntries::Take(FolderEntry& entry) {
    if (IsEmpty()) return false;
    std::size_t size;
    entry = Next(position, size);
    taken += size;
    SkipDots();
    return true;
}

}  // namespace Platform
