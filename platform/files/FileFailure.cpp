#include "files/FileFailure.h"

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <string>

#include "files/SettingsFailure.h"
#include "foundation/CutText.h"
#include "propertylists/PropertyListFailure.h"

namespace Platform {

namespace {

struct Failure {
    OSErr code = noErr;
    Path file;
};
thread_local Failure last;

}  // namespace

OSErr NoteFileFailure(OSErr code, Path const& file) {
    if (code != noErr && code != eofErr && code != userCanceledErr) last = {code, file};
    return code;
}

void ForgetFileFailure() {
    last = {};
    ForgetPropertyListFailure();
    ForgetSettingsFailure();
}

}  // namespace Platform

OSErr PlatformFileFailure(char* buffer, UInt32 size) {
    auto const& [code, file] = Platform::last;
    Platform::CopyCut(file.IsNone() ? std::string() : file.Text(), buffer, size);
    return code;
}

void PlatformForgetFileFailure() { Platform::ForgetFileFailure(); }
