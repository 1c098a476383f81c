#include "files/FolderEntries.h"

#include <dirent.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <vector>

#include "foundation/PathStyles.h"

namespace Platform {

namespace {

constexpr std::size_t kReadBytes = 32768;
constexpr std::size_t kLongestEntry = 280;  // a name of 255 bytes, in whole words

// One entry as the kernel writes it: a dirent64, which has no alignment of its own here.
class Entry {
  public:
    explicit Entry(char const* bytes) : from(bytes) {}
    std::uint64_t Inode() const { return Field<std::uint64_t>(offsetof(dirent64, d_ino)); }
    std::int64_t PositionBehind() const { return Field<std::int64_t>(offsetof(dirent64, d_off)); }
    std::size_t Size() const { return Field<unsigned short>(offsetof(dirent64, d_reclen)); }
    unsigned char Type() const { return Field<unsigned char>(offsetof(dirent64, d_type)); }
    char const* Name() const { return from + offsetof(dirent64, d_name); }

  private:
    template <class Number>
    Number Field(std::size_t offset) const {
        Number number;
        std::memcpy(&number, from + offset, sizeof number);
        return number;
    }
    char const* from;
};

bool AnyDotted(char const* entries, std::size_t size, bool (*holds)(std::string_view)) {
    for (char const* const end = entries + size; entries != end;) {
        Entry const entry(entries);
        if (*entry.Name() == '.' && !IsDots(entry.Name()) && holds(entry.Name())) return true;
        entries += entry.Size();
    }
    return false;
}

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

int FolderEntries::LookAhead(int folder, bool (*holds)(std::string_view), bool& any) const {
    any = AnyDotted(bytes.data() + taken, bytes.size() - taken, holds);
    if (any || atEnd) return 0;
    off_t const here = lseek(folder, 0, SEEK_CUR);
    std::vector<char> buffer(8 * kReadBytes);  // nothing is kept of it
    ssize_t got = 1;
    while (!any && (got = getdents64(folder, buffer.data(), buffer.size())) > 0)
        any = AnyDotted(buffer.data(), static_cast<std::size_t>(got), holds);
    if (got < 0) return errno;
    return lseek(folder, here, SEEK_SET) < 0 ? errno : 0;
}

void FolderEntries::SkipDots() {
    while (!IsEmpty()) {
        Entry const next(bytes.data() + taken);
        if (*next.Name() != '.' || !IsDots(next.Name())) return;
        position = next.PositionBehind();
        taken += next.Size();
    }
}

bool FolderEntries::Take(FolderEntry& entry) {
    if (IsEmpty()) return false;
    Entry const next(bytes.data() + taken);
    entry = {next.Name(), next.Inode(), next.Type()};
    position = next.PositionBehind();
    taken += next.Size();
    SkipDots();
    return true;
}

}  // namespace Platform
