#include "propertylists/PropertyListFailure.h"

#include <Platform/Items.h>

#include "foundation/CutText.h"

namespace Platform {

namespace {

struct Failure {
    Path file;
    std::string reason;
};
thread_local Failure first;
thread_local Path lastSound;

}  // namespace

void NotePropertyListFailure(Path const& file, std::string const& reason) {
    if (first.reason.empty()) first = {file, reason};
}

void NotePropertyList(Path const& file) { lastSound = file; }

void ForgetPropertyListFailure() {
    first = {};
    lastSound = {};
}

}  // namespace Platform

Boolean PlatformPropertyListFailure(char* file, UInt32 fileSize, char* reason, UInt32 reasonSize) {
    bool const isFailure = !Platform::first.reason.empty();
    Platform::Path const& path = isFailure ? Platform::first.file : Platform::lastSound;
    Platform::CopyCut(path.IsNone() ? std::string() : path.Text(), file, fileSize);
    Platform::CopyCut(Platform::first.reason, reason, reasonSize);
    return isFailure;
}
