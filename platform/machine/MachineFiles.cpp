#include "machine/MachineFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "files/Descriptor.h"
#include "foundation/TextLines.h"
#include "machine/Environment.h"

namespace Platform {

int ReadBeginning(std::string const& path, std::size_t most, std::string& text) {
    int const number = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (number < 0) return errno;
    Descriptor const file(number);
    std::string bytes;
    std::size_t length = 0;
    while (length < most) {
        if (length == bytes.size()) bytes.resize(std::min(most, std::max(2 * length, kMostOfFact)));
        ssize_t const actual = read(number, bytes.data() + length, bytes.size() - length);
        if (actual < 0 && errno == EINTR) continue;
        if (actual < 0) return errno;
        if (actual == 0) break;
        length += static_cast<std::size_t>(actual);
    }
    bytes.resize(length);
    text = std::move(bytes);
    return 0;
}

int ReadFact(std::string_view path, std::string& text, std::size_t most) {
    return ReadBeginning(MachinePath(path), most, text);
}

std::string FactLine(std::string_view path) {
    std::string text;
    ReadFact(path, text);
    return std::string(FirstLine(text));
}

int ListFacts(std::string_view path, std::vector<std::string>& names) {
    names.clear();
    std::unique_ptr<DIR, int (*)(DIR*)> const folder(opendir(MachinePath(path).c_str()), closedir);
    if (!folder) return errno;
    for (;;) {
        errno = 0;
        dirent const* const entry = readdir(folder.get());
        if (entry == nullptr) break;
        std::string_view const name = entry->d_name;
        if (name != "." && name != "..") names.emplace_back(name);
    }
    int const error = errno;
    if (error != 0) names.clear();
    std::sort(names.begin(), names.end());
    return error;
}

}  // namespace Platform
