// The versions that files hold: which resource is asked, what its bytes mean, and what is left behind.

#include "versions/VersionResource.h"

#include <sys/stat.h>

#include <array>

#include "filesystem/Asking.h"
#include "platform/ResourceVerbs.h"
#include "support/Unprivileged.h"

namespace {

class VersionResources : public ResourceTest {
  protected:
    VersionResources() { ClearFileCaches(nullptr); }

    // The version of a resource: its text; else "none", or the platform's error. Whatever comes of it, the
    // resource files are as before.
    std::string Version(std::string const& path, integer number = 1) const {
        file const object = FileAt(path);
        SInt16 const before = CurResFile();
        std::ptrdiff_t const files = OpenFiles();
        std::string const answer = Answer([&] { return versionRes_of_file(number, {}, object); });
        EXPECT_EQ(before, CurResFile());
        EXPECT_EQ(files, OpenFiles()) << "nothing is left open";
        return answer;
    }
    template <class Question>
    static std::string Answer(Question const& question) {
        try {
            return VersionToString(question());
        } catch (NoSuchObject const&) {
            return "none";
        } catch (OSError const& error) {
            return "error " + std::to_string(error.Code());
        }
    }
    // That of a new file whose resource 1 has these bytes.
    MacVersion Decoded(std::array<unsigned, 4> const& bytes) const {
        std::string text;
        for (unsigned const byte : bytes) text += static_cast<char>(byte);
        return version_of_file({}, FileAt(Write("file", {{"vers", 1, text}})));
    }
    // With one resource of each number; its minor revision tells which it is.
    std::string WriteWith(std::vector<int> const& numbers) const {
        std::vector<BuiltResource> resources;
        for (int const number : numbers) {
            char const minor = static_cast<char>(resources.size() << 4);
            resources.push_back({"vers", number, std::string("\x01") + minor + "\x80" + '\0'});
        }
        return Write("file", resources);
    }
};

std::string const kBytes = std::string("\x01\x23\x60\x12", 4);  // 1.2.3b18
std::string const kWhole = kBytes + std::string("\0\0", 2) + "\x05" + "short" + "\x04" + "long";

}  // namespace

// ---- What the bytes mean

TEST_F(VersionResources, AreDecoded) {
    MacVersion const version = Decoded({0x01, 0x23, 0x60, 0x12});
    EXPECT_EQ(1, version.major);
    EXPECT_EQ(2, version.minor);
    EXPECT_EQ(3, version.bugrev);
    EXPECT_EQ(kBeta, version.stage);
    EXPECT_EQ(18, version.nonrel);
    EXPECT_EQ("", version.text);
    EXPECT_EQ("1.2.3b18", VersionToString(version));
}

TEST_F(VersionResources, MajorRevisionHasTwoDecimalDigits) {
    for (auto const& [byte, number] : {std::pair{0x00u, 0},
                                       {0x01u, 1},
                                       {0x09u, 9},
                                       {0x10u, 10},
                                       {0x42u, 42},
                                       {0x99u, 99},
                                       {0x0Fu, 15},
                                       {0xA0u, 100},
                                       {0xFFu, 165}})
        EXPECT_EQ(number, Decoded({byte, 0, 0x80, 0}).major) << byte;
}

TEST_F(VersionResources, MinorAndBugRevisionHaveFourBitsEach) {
    for (unsigned byte = 0; byte < 256; byte += 15) {
        MacVersion const version = Decoded({0, byte, 0x80, 0});
        EXPECT_EQ(byte / 16, version.minor) << byte;
        EXPECT_EQ(byte % 16, version.bugrev) << byte;
    }
}

TEST_F(VersionResources, StageAndNumberAreTakenAsTheyAre) {
    for (unsigned const byte : {0x00u, 0x20u, 0x40u, 0x60u, 0x80u, 0xA0u, 0x17u, 0xFFu})
        EXPECT_EQ(byte, Decoded({1, 0, byte, 0}).stage) << byte;
    for (unsigned const byte : {0u, 9u, 0x10u, 0x99u, 0xFFu})
        EXPECT_EQ(byte, Decoded({1, 0, 0x60, byte}).nonrel) << byte << ", a plain binary number";
}

TEST_F(VersionResources, WhatFollowsIsNotRead) {
    EXPECT_EQ("1.2.3b18", Version(Write("whole", {{"vers", 1, kWhole}})));
    EXPECT_EQ("1.2.3b18", Version(Write("long", {{"vers", 1, kBytes + std::string(1 << 20, 'x')}})));
    EXPECT_EQ("1.2.3b18", Version(Write("short", {{"vers", 1, kBytes}})));
}

// ---- Which resource

TEST_F(VersionResources, OneIsTheFilesOwn) {
    std::string const path = WriteWith({2, 1, 0});
    EXPECT_EQ("1.1", VersionToString(version_of_file({}, FileAt(path))));
    EXPECT_EQ("1.0", VersionToString(numbered_version_of_file(2, {}, FileAt(path))));
    EXPECT_EQ("1.2", VersionToString(numbered_version_of_file(0, {}, FileAt(path))));
}

TEST_F(VersionResources, NumbersHaveSixteenBitsWithASign) {
    std::string const path = WriteWith({-32768, 32767, -1, 40000 - 65536, 0});
    EXPECT_EQ("1.0", Version(path, -32768));
    EXPECT_EQ("1.1", Version(path, 32767));
    EXPECT_EQ("1.2", Version(path, -1));
    EXPECT_EQ("1.3", Version(path, 40000 - 65536));
    for (integer const number :
         {32768LL, -32769LL, 40000LL, 65535LL, 65536LL, -65536LL, 1LL << 32,
          std::numeric_limits<long long>::max(), std::numeric_limits<long long>::min()})
        EXPECT_EQ("none", Version(path, number)) << number;
}

TEST_F(VersionResources, AreOfTheTypeAlone) {
    EXPECT_EQ("none", Version(Write("file", {{"VERS", 1, kBytes}, {"STR ", 1, kBytes}})));
    EXPECT_EQ("1.2.3b18", Version(Write("file", {{"VERS", 1, "none"}, {"vers", 1, kBytes}})));
}

TEST_F(VersionResources, OfLinksAreThoseOfTheirFiles) {
    Write("file", {{"vers", 1, kBytes}});
    EXPECT_EQ("1.2.3b18", Version(here.Link("link", "file")));
}

TEST_F(VersionResources, InAttributesAreFoundToo) {
    std::string const path = here.Write("file");
    here.SetAttribute("file", "user.com.apple.ResourceFork", BuildFork({{"vers", 1, kBytes}}).bytes);
    EXPECT_EQ("1.2.3b18", Version(path));
}

// ---- What has none

TEST_F(VersionResources, FilesWithoutOneHaveNone) {
    EXPECT_EQ("none", Version(here.Write("no fork")));
    EXPECT_EQ("none", Version(WriteFork("empty fork", std::string{})));
    EXPECT_EQ("none", Version(WriteFork("placeholder", BuildFork({}).bytes)));
    EXPECT_EQ("none", Version(WriteFork("no fork at all", "no fork at all")));
    EXPECT_EQ("none", Version(Write("others", {{"STR ", 1, "text"}})));
    std::string const path = Write("another number", {{"vers", 2, kBytes}});
    EXPECT_EQ("none", Version(path));
    EXPECT_EQ("1.2.3b18", Version(path, 2));
}

TEST_F(VersionResources, ThatMayNotBeReadAreNone) {
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    std::string const path = Write("file", {{"vers", 1, kBytes}});
    ASSERT_EQ(0, chmod(here.Path("._file").c_str(), 0));
    Unprivileged const nobody;
    EXPECT_EQ("none", Version(path));
}

TEST_F(VersionResources, ShorterThanFourBytesAreNone) {
    for (std::size_t size = 0; size < 4; ++size) {
        BuiltResource const cut{"vers", 1, kBytes.substr(0, size)};
        EXPECT_EQ("none", Version(Write("last", {cut}))) << size;
        EXPECT_EQ("none", Version(Write("first", {cut, {"vers", 2, kBytes}}))) << size;
    }
}

TEST_F(VersionResources, WithLessStoredThanThereIsRoomForAreNone) {
    BuiltFork const fork = BuildFork({{"vers", 1, kWhole}, {"vers", 2, kBytes}});
    EXPECT_EQ("none", Version(WriteFork("three", fork.With(fork.resources[0], 3, 4).bytes)));
    EXPECT_EQ("1.2.3b18", Version(WriteFork("four", fork.With(fork.resources[0], 4, 4).bytes)));
}

TEST_F(VersionResources, WithLessRoomThanIsStoredAreNone) {
    BuiltFork const fork = BuildFork({{"vers", 1, kWhole}, {"vers", 2, kBytes}});
    auto const second = fork.references[1] + kResourceOffset;
    EXPECT_EQ("1.2.3b18", Version(WriteFork("four", fork.With(second, 8, 3).bytes)));
    EXPECT_EQ("none", Version(WriteFork("three", fork.With(second, 7, 3).bytes)));
}

TEST_F(VersionResources, ThatEndBehindTheDataAreNone) {
    BuiltFork const fork = BuildFork({{"vers", 1, kBytes}});
    EXPECT_EQ("none", Version(WriteFork("length", fork.With(fork.resources[0], 5, 4).bytes)));
    EXPECT_EQ("none",
              Version(WriteFork("offset", fork.With(fork.references[0] + kResourceOffset, 99, 3).bytes)));
}

TEST_F(VersionResources, ThatAreCompressedAreNone) {
    EXPECT_EQ("none", Version(Write("file", {{"vers", 1, "\xA8\x9F\x65\x72", 1}})));
}

// ---- Failures

TEST_F(VersionResources, MapsThatMakeNoSenseAreNone) {
    BuiltFork const fork = BuildFork({{"vers", 1, kBytes}});
    EXPECT_EQ("none", Version(WriteFork("types", fork.With(fork.typeList, 4711, 2).bytes)));
    EXPECT_EQ("none",
              Version(WriteFork("list", fork.With(fork.types[0] + kReferenceCount, 0xFFFF, 2).bytes)));
}

// A file that is gone has no location from which it could be opened.
TEST_F(VersionResources, OfAFileThatIsGoneAreItsFailure) {
    file const object = FileAt(Write("file", {{"vers", 1, kBytes}}));
    std::filesystem::remove(here.Path("file"));
    EXPECT_THROW(version_of_file({}, object), FailedToGetFileItem);
    EXPECT_EQ("none", Answer([&] { return versionRes_of_file(40000, {}, object); }));
}

// ---- What is left behind

TEST_F(VersionResources, LeaveTheCurrentFileAndLoadingAsTheyAre) {
    BuiltFork const fork = BuildFork({{"vers", 1, kBytes}});
    std::vector<std::string> const paths = {
        WriteFork("good", fork.bytes),
        here.Write("no fork"),
        WriteFork("no map", "no map"),
        Write("no version", {{"STR ", 1, "text"}}),
        Write("no such number", {{"vers", 2, kBytes}}),
        Write("too short", {{"vers", 1, ""}}),
        WriteFork("spoilt", fork.With(fork.types[0] + kReferenceCount, 0xFFFF, 2).bytes)};
    SInt16 const first = Open(Write("first", {{"STR ", 1, "first"}}));
    SInt16 const second = Open(Write("second", {{"STR ", 1, "second"}}));
    for (SInt16 const current : {first, second, SInt16{0}}) {
        for (std::string const& path : paths) {
            UseResFile(current);
            Version(path);  // which looks at what it leaves
            UseResFile(first);
            Handle const resource = Get1Resource(Code("STR "), 1);
            ASSERT_NE(nullptr, resource) << path;
            EXPECT_NE(nullptr, *resource) << path << ": loading is on";
            CloseResFile(first);
            EXPECT_EQ(first, Open(here.Path("first"))) << path << ": no other number is in use";
        }
    }
}

TEST_F(VersionResources, OfNumbersOutOfRangeOpenNothing) {
    SInt16 const current = OpenNew("first", "one");
    EXPECT_EQ("none", Version(Write("file", {{"vers", 1, kBytes}}), 32768));
    EXPECT_EQ(current, CurResFile());
    EXPECT_EQ("one", Resource("vers", 1));
}
