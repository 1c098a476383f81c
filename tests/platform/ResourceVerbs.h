#pragma once

// Verbs of the tests of resource files.

#include <Carbon/Carbon.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/ForkVerbs.h"
#include "platform/ResourceForkBuilder.h"

inline ResType Code(std::string const& type) {
    ResType code = 0;
    for (char const c : type) code = code << 8 | static_cast<unsigned char>(c);
    return code;
}

/// Bytes of a resource, with the code that tells how reading them ended. They must not have a '?' at their
/// end.
inline Got ReadPart(Handle resource, SInt32 offset, SInt32 count) {
    auto const most = static_cast<std::size_t>(std::max(count, SInt32{0}));
    std::string buffer(most + 16, '?');
    ReadPartialResource(resource, offset, buffer.data(), count);
    OSErr const error = ResError();
    buffer.resize(buffer.find_last_not_of('?') + 1);
    EXPECT_LE(buffer.size(), most) << "nothing lies behind the bytes";
    return {error, buffer};
}

/// All bytes of a resource.
inline std::string WholeOf(Handle resource) {
    Got const got = ReadPart(resource, 0, 65536);
    return got.error == inputOutOfBounds ? got.bytes : "error " + std::to_string(got.error);
}

/// A test with a folder of its own. The resource files that it opens are closed at its end.
class ResourceTest : public ForkTest {
  protected:
    ~ResourceTest() override {
        PlatformSetCheckIn(nullptr);
        SetResLoad(true);
        for (SInt16 const number : opened) CloseResFile(number);
        EXPECT_EQ(0, CurResFile()) << "nothing is left open";
    }

    /// Makes a file with a fork in its companion.
    std::string WriteFork(std::string const& name, std::string const& fork) const {
        WriteCompanion("._" + name, fork);
        return here.Write(name);
    }
    std::string Write(std::string const& name, std::vector<BuiltResource> const& resources) const {
        return WriteFork(name, BuildFork(resources).bytes);
    }
    void WriteCompanion(std::string const& path, std::string const& fork) const {
        here.Write(path, AppleDoubleImage({{9, FinderInformation("TEXTttxt")}, {2, fork}}));
    }
    /// Makes one whose resource 'vers' 1 is the text, and opens it.
    SInt16 OpenNew(std::string const& name, std::string const& text) {
        return Open(Write(name, {{"vers", 1, text}}));
    }

    OSErr TryToOpen(FSRef const& reference, SInt8 permission = fsRdPerm) {
        SInt16 const before = CurResFile();
        SInt16 const number = FSOpenResFile(&reference, permission);
        OSErr const error = ResError();
        if (error == noErr) {
            EXPECT_LT(0, number);
            opened.push_back(number);
        } else {
            EXPECT_EQ(-1, number);
        }
        EXPECT_EQ(error == noErr ? number : before, CurResFile());
        return error;
    }
    OSErr TryToOpen(std::string const& path, SInt8 permission = fsRdPerm) {
        return TryToOpen(ReferenceTo(path), permission);
    }
    SInt16 Open(FSRef const& reference) {
        EXPECT_EQ(noErr, TryToOpen(reference));
        return CurResFile();
    }
    SInt16 Open(std::string const& path) { return Open(ReferenceTo(path)); }

    /// The bytes of a resource of the current file; else why there are none.
    static std::string Resource(std::string const& type, int number) {
        Handle const resource = Get1Resource(Code(type), static_cast<SInt16>(number));
        if (resource == nullptr) return "error " + std::to_string(ResError());
        return WholeOf(resource);
    }
    /// The resource of 'vers' 1 of a file, which is open for so long.
    std::string VersionOf(std::string const& path) {
        if (OSErr const error = TryToOpen(path); error != noErr) return "error " + std::to_string(error);
        std::string text = Resource("vers", 1);
        CloseResFile(CurResFile());
        return text;
    }

  private:
    std::vector<SInt16> opened;
};
