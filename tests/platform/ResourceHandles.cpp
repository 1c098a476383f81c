// The resources of the files that are open: how they are found and read.

#include <limits>

#include "platform/ResourceVerbs.h"

namespace {

class ResourceHandles : public ResourceTest {
  protected:
    // Opens a new file with a fork.
    SInt16 OpenFork(std::string const& fork) { return Open(WriteFork("file", fork)); }
    SInt16 OpenFork(std::vector<BuiltResource> const& resources) { return Open(Write("file", resources)); }
};

Handle Get(std::string const& type, int number) {
    return Get1Resource(Code(type), static_cast<SInt16>(number));
}

// The same without reading it.
Handle GetUnread(std::string const& type, int number) {
    SetResLoad(false);
    Handle const resource = Get(type, number);
    OSErr const error = ResError();
    SetResLoad(true);
    EXPECT_EQ(noErr, error);
    return resource;
}

// What is asked of a handle of no resource.
void ExpectNone(Handle handle) {
    EXPECT_EQ(0, GetMaxResourceSize(handle));
    EXPECT_EQ(resNotFound, ResError());
    EXPECT_EQ((Got{resNotFound, ""}), ReadPart(handle, 0, 1));
    EXPECT_EQ((Got{resNotFound, ""}), ReadPart(handle, -1, -1));
}

constexpr unsigned kCompressed = 1;
std::string const kSignature = "\xA8\x9F\x65\x72";

}  // namespace

// ---- Finding

TEST_F(ResourceHandles, LeadToTheBytes) {
    OpenFork({{"vers", 1, "one"}, {"vers", -2, "another"}, {"STR ", 1, "text"}});
    EXPECT_EQ("one", std::string(*Get("vers", 1), 3));
    EXPECT_EQ("another", std::string(*Get("vers", -2), 7));
    EXPECT_EQ("text", std::string(*Get("STR ", 1), 4));
}

TEST_F(ResourceHandles, AreNullForWhatThereIsNot) {
    OpenFork({{"vers", 1, "one"}});
    EXPECT_EQ(nullptr, Get("vers", 2));
    EXPECT_EQ(resNotFound, ResError());
    EXPECT_EQ(nullptr, Get("STR ", 1));
    EXPECT_EQ(noErr, ResError()) << "there is none of the type";
}

TEST_F(ResourceHandles, AreThoseOfTheCurrentFileAlone) {
    OpenNew("first", "one");
    OpenFork({{"STR ", 1, "text"}});
    EXPECT_EQ(nullptr, Get("vers", 1));
    EXPECT_EQ(noErr, ResError());
    UseResFile(0);
    EXPECT_EQ(nullptr, Get("STR ", 1));
    EXPECT_EQ(resFNotFound, ResError());
}

TEST_F(ResourceHandles, AreTheSameEachTime) {
    SInt16 const file = OpenFork({{"vers", 1, "one"}, {"vers", 2, "two"}, {"STR ", 1, "text"}});
    Handle const resource = Get("vers", 1);
    Ptr const bytes = *resource;
    EXPECT_NE(resource, Get("vers", 2));
    EXPECT_NE(resource, Get("STR ", 1));
    OpenNew("other", "one");
    EXPECT_NE(resource, Get("vers", 1)) << "of another file";
    UseResFile(file);
    EXPECT_EQ(resource, Get("vers", 1));
    EXPECT_EQ(bytes, *resource) << "it is not read again";
}

TEST_F(ResourceHandles, AreEmptyWithoutLoading) {
    OpenFork({{"vers", 1, "one"}});
    SetResLoad(false);
    Handle const resource = Get("vers", 1);
    ASSERT_NE(nullptr, resource);
    EXPECT_EQ(noErr, ResError());
    EXPECT_EQ(nullptr, *resource);
    EXPECT_EQ((Got{noErr, "ne"}), ReadPart(resource, 1, 2));
    EXPECT_EQ(nullptr, *resource) << "reading a part does not load it";
    EXPECT_EQ(resource, Get("vers", 1));
    EXPECT_EQ(nullptr, *resource);
}

TEST_F(ResourceHandles, AreFilledOnceLoadingIsWanted) {
    OpenFork({{"vers", 1, "one"}});
    Handle const resource = GetUnread("vers", 1);
    EXPECT_EQ(nullptr, *resource);
    EXPECT_EQ(resource, Get("vers", 1));
    ASSERT_NE(nullptr, *resource);
    EXPECT_EQ("one", std::string(*resource, 3));
    EXPECT_EQ(resource, GetUnread("vers", 1));
    EXPECT_NE(nullptr, *resource) << "what is in memory stays there";
}

TEST_F(ResourceHandles, AnyNumberButZeroTurnsLoadingOn) {
    OpenFork({{"vers", 1, "one"}, {"vers", 2, "two"}});
    SetResLoad(false);
    EXPECT_EQ(nullptr, *Get("vers", 1));
    SetResLoad(2);
    EXPECT_NE(nullptr, *Get("vers", 2));
}

TEST_F(ResourceHandles, MissingResourcesAreMissingWithoutLoadingToo) {
    OpenFork({{"vers", 1, "one"}});
    SetResLoad(false);
    EXPECT_EQ(nullptr, Get("vers", 2));
    EXPECT_EQ(resNotFound, ResError());
    EXPECT_EQ(nullptr, Get("STR ", 2));
    EXPECT_EQ(noErr, ResError());
}

TEST_F(ResourceHandles, OfNoBytesLeadSomewhereAllTheSame) {
    OpenFork({{"vers", 1, ""}});
    Handle const resource = Get("vers", 1);
    ASSERT_NE(nullptr, resource);
    EXPECT_NE(nullptr, *resource);
    EXPECT_EQ(0, GetMaxResourceSize(resource));
    EXPECT_EQ(noErr, ResError());
    EXPECT_EQ((Got{noErr, ""}), ReadPart(resource, 0, 0));
    EXPECT_EQ((Got{inputOutOfBounds, ""}), ReadPart(resource, 0, 1));
}

// ---- Sizes and parts

TEST_F(ResourceHandles, HaveAsManyBytesAsThereIsRoomFor) {
    BuiltFork const fork = BuildFork({{"vers", 1, "one"}, {"vers", 2, "number 2"}});
    OpenFork(fork.With(fork.resources[0], 1, 4).bytes);
    EXPECT_EQ(3, GetMaxResourceSize(Get("vers", 1))) << "whatever its stored length is";
    EXPECT_EQ(noErr, ResError());
    EXPECT_EQ(8, GetMaxResourceSize(GetUnread("vers", 2)));
    EXPECT_EQ("o", WholeOf(Get("vers", 1)));
}

TEST_F(ResourceHandles, PartsAreReadWithinTheResource) {
    OpenFork({{"vers", 1, "abcdef"}, {"vers", 2, "behind"}});
    for (Handle const resource : {GetUnread("vers", 1), Get("vers", 1)}) {
        EXPECT_EQ((Got{noErr, "abcdef"}), ReadPart(resource, 0, 6));
        EXPECT_EQ((Got{noErr, "a"}), ReadPart(resource, 0, 1));
        EXPECT_EQ((Got{noErr, "f"}), ReadPart(resource, 5, 1));
        EXPECT_EQ((Got{noErr, "cd"}), ReadPart(resource, 2, 2));
        EXPECT_EQ((Got{noErr, ""}), ReadPart(resource, 3, 0));
        EXPECT_EQ((Got{noErr, ""}), ReadPart(resource, 6, 0)) << "nothing from its end on";
    }
}

TEST_F(ResourceHandles, PartsThatReachBehindTheEndAreCut) {
    OpenFork({{"vers", 1, "abcdef"}, {"vers", 2, "behind"}});
    Handle const resource = Get("vers", 1);
    EXPECT_EQ((Got{inputOutOfBounds, "abcdef"}), ReadPart(resource, 0, 7));
    EXPECT_EQ((Got{inputOutOfBounds, "ef"}), ReadPart(resource, 4, 100));
    EXPECT_EQ((Got{inputOutOfBounds, ""}), ReadPart(resource, 6, 1));
    EXPECT_EQ((Got{inputOutOfBounds, ""}), ReadPart(resource, 7, 0));
    constexpr SInt32 most = std::numeric_limits<SInt32>::max();
    EXPECT_EQ((Got{inputOutOfBounds, ""}), ReadPart(resource, most, 1));
}

TEST_F(ResourceHandles, PartsAreNeitherNegativeNorNowhere) {
    OpenFork({{"vers", 1, "abcdef"}});
    Handle const resource = Get("vers", 1);
    constexpr SInt32 least = std::numeric_limits<SInt32>::min();
    EXPECT_EQ((Got{inputOutOfBounds, ""}), ReadPart(resource, -1, 1));
    EXPECT_EQ((Got{inputOutOfBounds, ""}), ReadPart(resource, least, 1));
    EXPECT_EQ((Got{inputOutOfBounds, ""}), ReadPart(resource, 0, -1));
    EXPECT_EQ((Got{inputOutOfBounds, ""}), ReadPart(resource, 0, least));
    ReadPartialResource(resource, 0, nullptr, 1);
    EXPECT_EQ(paramErr, ResError());
    ReadPartialResource(resource, 0, nullptr, 0);
    EXPECT_EQ(noErr, ResError());
}

// What was loaded is the caller's to write to.
TEST_F(ResourceHandles, PartsAreThoseOfTheFile) {
    OpenFork({{"vers", 1, "abcdef"}});
    Handle const resource = Get("vers", 1);
    **resource = 'x';
    EXPECT_EQ((Got{noErr, "ab"}), ReadPart(resource, 0, 2));
    EXPECT_EQ('x', **Get("vers", 1));
}

TEST_F(ResourceHandles, AreReadOfFilesThatAreNotCurrent) {
    OpenNew("first", "one");
    Handle const resource = Get("vers", 1);
    OpenNew("second", "number 2");
    EXPECT_EQ("one", WholeOf(resource));
    EXPECT_EQ(3, GetMaxResourceSize(resource));
    UseResFile(0);
    EXPECT_EQ("one", WholeOf(resource));
}

// ---- What is no handle

TEST_F(ResourceHandles, OfNothingAreRefused) {
    OpenFork({{"vers", 1, "one"}});
    Handle const resource = Get("vers", 1);
    ExpectNone(nullptr);
    Ptr own = nullptr;
    ExpectNone(&own);
    ExpectNone(resource + 1);
    ExpectNone(reinterpret_cast<Handle>(*resource));
    ExpectNone(reinterpret_cast<Handle>(1));
}

TEST_F(ResourceHandles, EndWithTheirFile) {
    SInt16 const file = OpenNew("file", "one");
    SInt16 const other = OpenNew("other", "another");
    Handle const kept = Get("vers", 1);
    UseResFile(file);
    Handle const loaded = Get("vers", 1);
    CloseResFile(file);
    ExpectNone(loaded);
    EXPECT_EQ("another", WholeOf(kept));
    CloseResFile(other);
    ExpectNone(kept);
}

// ---- What cannot be read

TEST_F(ResourceHandles, OfBytesThatAreNotThereAreNull) {
    BuiltFork const fork = BuildFork({{"vers", 1, "one"}});
    OpenFork(fork.With(fork.resources[0], 4, 4).bytes);
    EXPECT_EQ(nullptr, Get("vers", 1));
    EXPECT_EQ(eofErr, ResError());
    Handle const resource = GetUnread("vers", 1);
    ASSERT_NE(nullptr, resource);
    EXPECT_EQ(3, GetMaxResourceSize(resource));
    EXPECT_EQ((Got{eofErr, ""}), ReadPart(resource, 0, 1));
}

TEST_F(ResourceHandles, OfResourcesBehindTheDataAreNull) {
    BuiltFork const fork = BuildFork({{"vers", 1, "one"}});
    OpenFork(fork.With(fork.references[0] + kResourceOffset, 0xFFFFFF, 3).bytes);
    EXPECT_EQ(nullptr, Get("vers", 1));
    EXPECT_EQ(eofErr, ResError());
    EXPECT_EQ(0, GetMaxResourceSize(GetUnread("vers", 1)));
}

TEST_F(ResourceHandles, OfCompressedResourcesAreNull) {
    OpenFork({{"vers", 1, kSignature + "more", kCompressed},
              {"vers", 2, kSignature, kCompressed},
              {"vers", 4, "text that was decompressed", kCompressed},
              {"vers", 5, kSignature + "more", 0xFE},
              {"vers", 3, kSignature.substr(0, 3), kCompressed}});
    for (int const number : {1, 2}) {
        EXPECT_EQ(nullptr, Get("vers", number));
        EXPECT_EQ(CantDecompress, ResError()) << number;
        Handle const resource = GetUnread("vers", number);
        EXPECT_LE(4, GetMaxResourceSize(resource));
        EXPECT_EQ((Got{CantDecompress, ""}), ReadPart(resource, 0, 4)) << number;
    }
    EXPECT_EQ(kSignature.substr(0, 3), Resource("vers", 3));
    EXPECT_EQ("text that was decompressed", Resource("vers", 4));
    EXPECT_EQ(kSignature + "more", Resource("vers", 5));
}

TEST_F(ResourceHandles, AreLoadedUpTo16Mebibytes) {
    constexpr std::size_t most = std::size_t{16} << 20;
    for (std::size_t const size : {most, most + 1}) {
        // The map is in front: the offset of what lies behind data of this size would have no room.
        std::string const map = BuildFork({{"vers", 1, ""}}).bytes.substr(256 + 4);
        std::string const header = BigEndian(16 + map.size(), 4) + BigEndian(16, 4) + BigEndian(size + 4, 4) +
                                   BigEndian(map.size(), 4);
        std::string const bytes = std::string(size - 3, '-') + "end";
        SInt16 const file = OpenFork(header + map + BigEndian(size, 4) + bytes);
        Handle const unread = GetUnread("vers", 1);
        EXPECT_EQ(static_cast<SInt32>(size), GetMaxResourceSize(unread));
        EXPECT_EQ((Got{noErr, "end"}), ReadPart(unread, static_cast<SInt32>(size) - 3, 3));
        Handle const loaded = Get("vers", 1);
        if (size == most) {
            ASSERT_NE(nullptr, loaded);
            EXPECT_EQ("end", std::string(*loaded + size - 3, 3));
        } else {
            EXPECT_EQ(nullptr, loaded);
            EXPECT_EQ(memFullErr, ResError());
        }
        CloseResFile(file);
    }
}

TEST_F(ResourceHandles, OfAFileThatHasShrunk) {
    BuiltFork const fork = BuildFork({{"vers", 1, "one"}, {"vers", 2, "two"}});
    OpenFork(fork.bytes);
    Handle const loaded = Get("vers", 1);
    Handle const unread = GetUnread("vers", 2);
    std::string const companion = here.Path("._file");
    std::uintmax_t const before = std::filesystem::file_size(companion) - fork.bytes.size();
    std::filesystem::resize_file(companion, before + fork.resources[1] + 4 + 2);
    EXPECT_EQ("one", std::string(*loaded, 3));
    EXPECT_EQ("one", WholeOf(loaded));
    EXPECT_EQ(3, GetMaxResourceSize(unread)) << "by the map";
    EXPECT_EQ((Got{noErr, "tw"}), ReadPart(unread, 0, 2));
    EXPECT_EQ(eofErr, ReadPart(unread, 0, 3).error);
    EXPECT_EQ(nullptr, Get("vers", 2));
    EXPECT_EQ(eofErr, ResError());
    std::filesystem::resize_file(companion, 0);
    EXPECT_EQ((Got{eofErr, ""}), ReadPart(loaded, 0, 1));
    EXPECT_EQ("one", std::string(*loaded, 3));
}

TEST_F(ResourceHandles, AreNotReadWhenTheHostSaysStop) {
    OpenFork({{"vers", 1, "one"}});
    Handle const unread = GetUnread("vers", 1);
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    EXPECT_EQ((Got{userCanceledErr, ""}), ReadPart(unread, 0, 1));
    EXPECT_EQ(nullptr, Get("vers", 1));
    EXPECT_EQ(userCanceledErr, ResError());
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ("one", WholeOf(Get("vers", 1)));
}
