#include "files/WholeFile.h"

#include <Carbon/MacErrors.h>
#include <CoreFoundation/CFURLAccess.h>
#include <Platform/Items.h>

#include "files/FileFailure.h"
#include "files/OpenFork.h"
#include "foundation/Held.h"
#include "foundation/Url.h"

namespace Platform {

namespace {

// The data fork of the file that a URL leads to, open while this lives.
class OpenFile {
  public:
    OSErr Open(CFURLRef url) {
        FSRef reference;
        OSErr const error = PlatformGetItem(url, kFSCatInfoNone, &reference, nullptr);
        return error != noErr ? error : OpenForkOf(reference, ForkKind::Data, fork);
    }
    ~OpenFile() { LetGo(fork); }

    OpenFork fork;
};

OSErr ReadBytes(OpenFork const& fork, SInt64 most, Held<__CFData>& data) {
    // A pipe, socket or device can be opened, but has no bytes anywhere.
    if (!fork.bytes.file && !fork.bytes.memory) return notAFileErr;
    SInt64 size;
    OSErr error = CountBytes(fork, size);
    if (error != noErr) return error;
    if (size > most) return fileBoundsErr;
    data.reset(NewData(static_cast<std::size_t>(size)));
    data->origin = fork.path;
    std::size_t actual = 0;
    error = ReadBytes(fork, 0, data->Bytes(), actual);
    data->ShortenTo(actual);
    return error;
}

SInt32 AccessError(OSErr error) {
    switch (error) {
        case fnfErr:
        case dirNFErr:
        case nsvErr:
            return kCFURLResourceNotFoundError;
        case permErr:
        case afpAccessDenied:
            return kCFURLResourceAccessViolationError;
        case userCanceledErr:
        case volOffLinErr:
            return kCFURLTimeoutError;
        default:
            return kCFURLUnknownError;
    }
}

}  // namespace

__CFData* ReadWholeFile(CFURLRef url, OSErr& error, SInt64 most) {
    OpenFile file;
    error = file.Open(url);
    if (error != noErr) return nullptr;
    Held<__CFData> data;
    error = NoteFileFailure(ReadBytes(file.fork, most, data), file.fork.path);
    return error == noErr ? data.release() : nullptr;
}

OSErr ReadFileBeginning(CFURLRef url, std::span<UInt8> to, std::size_t& actual) {
    actual = 0;
    OpenFile file;
    if (OSErr const error = file.Open(url); error != noErr) return error;
    return NoteFileFailure(ReadBytes(file.fork, 0, to, actual), file.fork.path);
}

}  // namespace Platform

Boolean CFURLCreateDataAndPropertiesFromResource(CFAllocatorRef, CFURLRef url, CFDataRef* resourceData,
                                                 CFDictionaryRef* properties, CFArrayRef desiredProperties,
                                                 SInt32* errorCode) {
    SInt32 code = kCFURLUnknownError;
    if (properties != nullptr) *properties = nullptr;
    bool const isRead = Platform::Guarded(false, [&] {
        if (desiredProperties != nullptr) {
            code = kCFURLUnknownPropertyKeyError;
            return false;
        }
        OSErr error;
        __CFData const* const data = Platform::ReadWholeFile(url, error);
        code = error == noErr ? 0 : Platform::AccessError(error);
        if (data == nullptr) return false;
        if (resourceData != nullptr) {
            *resourceData = data;
        } else {
            data->Release();
        }
        return true;
    });
    if (errorCode != nullptr) *errorCode = isRead ? 0 : code;
    return isRead;
}
