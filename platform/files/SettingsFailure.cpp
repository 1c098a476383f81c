#include "files/SettingsFailure.h"

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include "foundation/CutText.h"

namespace Platform {

namespace {

struct Failure {
    std::string file;
    std::string reason;
};
thread_local Failure last;

std::string WhyUnreadable(OSErr error) {
    if (error == permErr || error == afpAccessDenied) return "it may not be read";
    if (error == fileBoundsErr) return "it is too large: property lists may have 256 MiB, others 4 MiB";
    if (error == tmfoErr) return "too many files are open";
    return error == notAFileErr ? "it is no file" : "it cannot be read";
}

}  // namespace

void NoteSettingsFailure(std::string const& file, std::string const& reason) { last = {file, reason}; }

void NoteFailure(std::string const& reason) { NoteSettingsFailure({}, reason); }

OSErr NoteUnreadableSettings(std::string const& file, OSErr error) {
    NoteSettingsFailure(file, WhyUnreadable(error));
    return error;
}

void ForgetSettingsFailure() { last = {}; }

}  // namespace Platform

Boolean PlatformSettingsFailure(char* file, UInt32 fileSize, char* reason, UInt32 reasonSize) {
    Platform::CopyCut(Platform::last.file, file, fileSize);
    Platform::CopyCut(Platform::last.reason, reason, reasonSize);
    return !Platform::last.reason.empty();
}
