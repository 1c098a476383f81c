#include "files/FolderFailures.h"

#include "Evaluator/CoreFoundationHolders.h"

namespace Evaluator {

namespace {

constexpr std::size_t kMostShown = 1000;

struct Failure {
    std::int32_t number = 0;
    AutoCFURL folder;
};
thread_local Failure last;

}  // namespace

std::int32_t NoteFolderFailure(CFURLRef folder) {
    last.folder = AutoCFURL(Duplicate(folder));
    last.number = last.number == INT32_MAX ? 1 : last.number + 1;
    return last.number;
}

std::string FolderOfFailure(std::int32_t number) {
    if (number == 0 || number != last.number) return {};
    AutoCFString const path(CFURLCopyFileSystemPath(last.folder, kCFURLPOSIXPathStyle));
    if (path == nullptr) return {};
    std::string bytes(static_cast<std::size_t>(CFStringGetMaximumSizeOfFileSystemRepresentation(path)), '\0');
    CFStringGetFileSystemRepresentation(path, bytes.data(), static_cast<CFIndex>(bytes.size()));
    bytes.resize(bytes.find('\0'));
    return bytes.size() <= kMostShown ? bytes : "…" + bytes.substr(bytes.size() - kMostShown);
}

}  // namespace Evaluator
