#pragma once

// Verbs of the tests of forks.

#include <Platform/Items.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "platform/Items.h"

/// What came of a read: its code, and the bytes of which it told.
struct Got {
    OSErr error;
    std::string bytes;
    bool operator==(Got const&) const = default;
};
inline void PrintTo(Got const& got, std::ostream* out) {
    *out << got.error << " " << testing::PrintToString(got.bytes);
}

/// A test with a folder of its own. The forks that it opens are closed at its end.
class ForkTest : public testing::Test {
  protected:
    ~ForkTest() override {
        PlatformSetCheckIn(nullptr);
        for (SInt16 const number : opened) FSCloseFork(number);
    }

    OSErr TryToOpen(FSRef const& reference, SInt8 permission = fsRdPerm) {
        SInt16 number = kNone;
        OSErr const error = FSOpenFork(&reference, 0, nullptr, permission, &number);
        if (error == noErr)
            opened.push_back(number);
        else
            EXPECT_EQ(kNone, number) << "a failure leaves the number alone";
        return error;
    }
    OSErr TryToOpen(std::string const& path, SInt8 permission = fsRdPerm) {
        return TryToOpen(ReferenceTo(path), permission);
    }
    SInt16 Open(FSRef const& reference) {
        EXPECT_EQ(noErr, TryToOpen(reference));
        return opened.empty() ? kNone : opened.back();
    }
    SInt16 Open(std::string const& path) { return Open(ReferenceTo(path)); }
    SInt16 OpenNew(std::string_view bytes) { return Open(here.Write("file", bytes)); }

    static Got Read(SInt16 number, UInt16 mode, SInt64 offset, ByteCount count) {
        std::string buffer(count, '?');
        ByteCount actual = 0x5A5A;
        OSErr const error = FSReadFork(number, mode, offset, count, buffer.data(), &actual);
        EXPECT_LE(actual, count);
        EXPECT_EQ(std::string::npos, buffer.find_first_not_of('?', actual))
            << "nothing lies behind the bytes";
        return {error, buffer.substr(0, actual)};
    }
    static Got ReadAtMark(SInt16 number, ByteCount count) { return Read(number, fsAtMark, 0, count); }
    static Got ReadFrom(SInt64 start, SInt16 number, ByteCount count) {
        return Read(number, fsFromStart, start, count);
    }
    /// All there is from the start on.
    static std::string Whole(SInt16 number) {
        Got const got = ReadFrom(0, number, 1 << 20);
        EXPECT_EQ(eofErr, got.error);
        return got.bytes;
    }
    static SInt64 SizeOf(SInt16 number) {
        SInt64 size = -1;
        EXPECT_EQ(noErr, FSGetForkSize(number, &size));
        return size;
    }

    static constexpr SInt16 kNone = -77;
    TemporaryFolder const here;

  private:
    std::vector<SInt16> opened;
};

/// How many files the process has open, among them those that the platform keeps open for itself.
inline std::ptrdiff_t OpenFiles() {
    ReferenceTo("/");
    std::filesystem::directory_iterator const files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}
