#include "files/ExtendedAttributes.h"

#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace Platform {

namespace {

#ifdef SYS_listxattrat
constexpr long kListxattrat = SYS_listxattrat;
#else
constexpr long kListxattrat = 465;  // of every architecture; the C library does not know it yet
#endif

// Kernels before 6.13 do not have the call, and a sandbox may forbid what it does not know.
bool HasListxattrat() {
    static bool const has = syscall(kListxattrat, AT_FDCWD, "/", 0u, nullptr, std::size_t{0}) >= 0 ||
                            (errno != ENOSYS && errno != EPERM);
    return has;
}

// A path for the calls that take no folder.
std::string PathOf(Place place) {
    if (place.folder == AT_FDCWD) return place.path;
    return "/proc/self/fd/" + std::to_string(place.folder) + "/" + place.path;
}

}  // namespace

bool ExtendedAttributes::MayExist(Place file) {
    constexpr char const* ofEachKind[] = {"user.com.apple.FinderInfo", "osx.com.apple.FinderInfo", "hfs.type",
                                          "com.apple.FinderInfo"};
    std::string const path = PathOf(file);
    return std::any_of(std::begin(ofEachKind), std::end(ofEachKind), [&](char const* name) {
        return getxattr(path.c_str(), name, nullptr, 0) >= 0 || errno != ENOTSUP;
    });
}

void ExtendedAttributes::List() {
    constexpr std::size_t mostBytes = 65536;  // the kernel's limit of a list
    ssize_t size = Ask(few.data(), few.size());
    char const* list = few.data();
    if (size < 0 && errno == ERANGE) {
        many.resize(mostBytes);
        size = Ask(many.data(), many.size());
        list = many.data();
    }
    if (size > 0) names = {list, static_cast<std::size_t>(size)};
}

ssize_t ExtendedAttributes::Ask(char* list, std::size_t size) const {
    if (HasListxattrat()) return syscall(kListxattrat, place.folder, place.path, 0u, list, size);
    return listxattr(PathOf(place).c_str(), list, size);
}

bool ExtendedAttributes::Has(std::string_view wanted) const {
    std::string_view rest = names;
    while (!rest.empty()) {
        std::string_view const name = rest.substr(0, rest.find('\0'));
        if (name == wanted) return true;
        rest.remove_prefix(std::min(name.size() + 1, rest.size()));
    }
    return false;
}

std::vector<unsigned char> ExtendedAttributes::Value(std::string_view name, std::size_t most) const {
    std::vector<unsigned char> value(most);
    ssize_t const size =
        getxattr(PathOf(place).c_str(), std::string(name).c_str(), value.data(), value.size());
    value.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return value;
}

std::optional<std::uint64_t> ExtendedAttributes::Size(std::string_view name) const {
    ssize_t const size = getxattr(PathOf(place).c_str(), std::string(name).c_str(), nullptr, 0);
    if (size < 0) return std::nullopt;
    return static_cast<std::uint64_t>(size);
}

}  // namespace Platform
