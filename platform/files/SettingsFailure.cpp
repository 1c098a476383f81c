#include "files/SettingsFailure.h"

#include <Platform/Items.h>

#include "foundation/CutText.h"

namespace Platform {

namespace {

struct Failure {
    std::string file;
    std::string reason;
};
thread_local Failure last;

}  // namespace

void NoteSettingsFailure(std::string const& file, std::string const& reason) { last = {file, reason}; }

void ForgetSettingsFailure() { last = {}; }

}  // namespace Platform

Boolean PlatformSettingsFailure(char* file, UInt32 fileSize, char* reason, UInt32 reasonSize) {
    Platform::CopyCut(Platform::last.file, file, fileSize);
    Platform::CopyCut(Platform::last.reason, reason, reasonSize);
    return !Platform::last.reason.empty();
}
