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
thread_local Path lastSound;

}  // namespace

void NotePropertyListFailure(Path const& file, std::string const& reason) { last = {file, reason}; }

void NotePropertyList(Path const& file) { lastSound = file; }

void ForgetPropertyListFailure() {
    last = {};
    lastSound = {};
}

}  // namespace Platform

Boolean PlatformPropertyListFailure(char* file, UInt32 fileSize, char* reason, UInt32 reasonSize) {
    bool const isFailure = !Platform::last.reason.empty();
    Platform::Path const& path = isFailure ? Platform::last.file : Platform::lastSound;
    Platform::CopyCut(path.IsNone() ? std::string() : path.Text(), file, fileSize);
    Platform::CopyCut(Platform::last.reason, reason, reasonSize);
    return isFailure;
}
