#include "propertylists/PropertyListFailure.h"

#include <Platform/Items.h>

#include "foundation/CutText.h"

namespace Platform {

namespace {

struct Failure {
    Path file;
    std::string reason;
};
thread_local Failure last;

}  // namespace

void NotePropertyListFailure(Path const& file, std::string const& reason) { last = {file, reason}; }

void ForgetPropertyListFailure() { last = {}; }

}  // namespace Platform

Boolean PlatformPropertyListFailure(char* file, UInt32 fileSize, char* reason, UInt32 reasonSize) {
    auto const& failure = Platform::last;
    Platform::CopyCut(failure.file.IsNone() ? std::string() : failure.file.Text(), file, fileSize);
    Platform::CopyCut(failure.reason, reason, reasonSize);
    return !failure.reason.empty();
}
