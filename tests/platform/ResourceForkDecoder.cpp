// The decoder of resource forks, on good and bad bytes.

#include "files/ResourceFork.h"

#include <Carbon/MacErrors.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/ResourceForkBuilder.h"

using Platform::ByteRange;
using Platform::ResourceFork;
using Platform::ResourceReference;

namespace {

ResType Code(std::string const& type) {
    return Platform::BigEndian32(reinterpret_cast<unsigned char const*>(type.data()));
}

// A fork in memory of exactly its size. It fails the test when anything outside of the header, the data and
// the map is asked for, and counts how often it is asked.
class Image {
  public:
    explicit Image(std::string const& fork) : bytes(fork.begin(), fork.end()) {}
    explicit Image(BuiltFork const& fork) : Image(fork.bytes) {}
    Image(Image const&) = delete;
    Image& operator=(Image const&) = delete;

    OSErr Open() {
        return opened.Open(bytes.size(),
                           [this](std::uint64_t offset, std::span<UInt8> to) { return Read(offset, to); });
    }
    ResourceFork const& Fork() const { return opened; }

    // What is found: the place of a resource, or why there is none.
    std::string Find(std::string const& type, int number) const {
        bool hasType = true;
        auto const found = opened.Find(Code(type), static_cast<SInt16>(number), hasType);
        if (found) return "at " + std::to_string(found->dataOffset) + (hasType ? "" : " of no type");
        return hasType ? "no number" : "no type";
    }
    // The bytes of a resource that is there, or the code with which counting or reading them fails.
    std::string BytesOf(std::string const& type, int number) const {
        std::uint32_t count = 0;
        ResourceReference const resource = Reference(type, number);
        OSErr error = opened.CountBytes(resource, count);
        std::string text(error == noErr ? count : 0, '?');
        if (error == noErr) error = ReadTo(text, resource, 0);
        return error == noErr ? text : "error " + std::to_string(error);
    }
    OSErr ReadTo(std::string& text, ResourceReference const& resource, std::uint32_t offset) const {
        return opened.Read(resource, offset, {reinterpret_cast<UInt8*>(text.data()), text.size()});
    }
    std::uint32_t MostBytesOf(std::string const& type, int number) const {
        return opened.MostBytes(Reference(type, number));
    }
    ResourceReference Reference(std::string const& type, int number) const {
        bool hasType = false;
        auto const found = opened.Find(Code(type), static_cast<SInt16>(number), hasType);
        EXPECT_TRUE(found) << type << " " << number;
        return found.value_or(ResourceReference{});
    }

    // After so many reads all fail with this code.
    void FailAfter(int good, OSErr code) {
        goodReads = good;
        failure = code;
    }
    int Reads() const { return reads; }

  private:
    OSErr Read(std::uint64_t offset, std::span<UInt8> to) {
        ++reads;
        bool const isAllowed = LiesWithin({offset, to.size()}, {0, bytes.size()}) &&
                               (LiesWithin({offset, to.size()}, {0, 16}) ||
                                LiesWithin({offset, to.size()}, RangeAt(kDataOffset, kDataLength)) ||
                                LiesWithin({offset, to.size()}, RangeAt(kMapOffset, kMapLength)));
        EXPECT_TRUE(isAllowed) << to.size() << " bytes at " << offset;
        if (!isAllowed || (failure != noErr && reads > goodReads)) return isAllowed ? failure : OSErr{ioErr};
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), to.size(), to.begin());
        return noErr;
    }
    static bool LiesWithin(ByteRange range, ByteRange whole) {
        return range.offset >= whole.offset && range.offset + range.length <= whole.offset + whole.length;
    }
    ByteRange RangeAt(std::size_t offset, std::size_t length) const {
        if (bytes.size() < 16) return {};
        return {Platform::BigEndian32(&bytes[offset]), Platform::BigEndian32(&bytes[length])};
    }

    std::vector<UInt8> const bytes;
    ResourceFork opened;
    int reads = 0;
    int goodReads = 0;
    OSErr failure = noErr;
};

OSErr CodeOfOpening(BuiltFork const& fork) { return Image(fork).Open(); }
OSErr CodeOfOpening(std::string const& bytes) { return Image(bytes).Open(); }

BuiltFork SmallFork() {
    return BuildFork({{"vers", 1, "one", 0x20, "a name"}, {"vers", 2, "number 2"}, {"STR ", -5, "text"}});
}

}  // namespace

// ---- What is in a fork

TEST(ResourceForkDecoder, FindsResourcesByTypeAndNumber) {
    Image image(SmallFork());
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("one", image.BytesOf("vers", 1));
    EXPECT_EQ("number 2", image.BytesOf("vers", 2));
    EXPECT_EQ("text", image.BytesOf("STR ", -5));
}

TEST(ResourceForkDecoder, TellsWhetherThereIsOneOfTheType) {
    Image image(SmallFork());
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("at 0", image.Find("vers", 1));
    EXPECT_EQ("no number", image.Find("vers", 3));
    EXPECT_EQ("no number", image.Find("STR ", 1));
    EXPECT_EQ("no type", image.Find("STR#", 1));
}

TEST(ResourceForkDecoder, TypesAreFourBytes) {
    std::string const odd("\xFF\0 \x7F", 4);
    Image image(BuildFork({{odd, 1, "odd"}, {"VERS", 1, "capitals"}}));
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("odd", image.BytesOf(odd, 1));
    EXPECT_EQ("capitals", image.BytesOf("VERS", 1));
    EXPECT_EQ("no type", image.Find("vers", 1));
}

TEST(ResourceForkDecoder, NumbersAreSignedAndInNoOrder) {
    Image image(BuildFork(
        {{"vers", 300, "300"}, {"vers", -32768, "least"}, {"vers", 0, "0"}, {"vers", 32767, "most"}}));
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("least", image.BytesOf("vers", -32768));
    EXPECT_EQ("most", image.BytesOf("vers", 32767));
    EXPECT_EQ("300", image.BytesOf("vers", 300));
    EXPECT_EQ("0", image.BytesOf("vers", 0));
    EXPECT_EQ("no number", image.Find("vers", -1));
}

TEST(ResourceForkDecoder, TypeMayBeListedTwice) {
    Image image(BuildFork({{"vers", 1, "first"}, {"STR ", 2, "text"}, {"vers", 2, "second"}}));
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("first", image.BytesOf("vers", 1));
    EXPECT_EQ("second", image.BytesOf("vers", 2));
    EXPECT_EQ("no number", image.Find("vers", 3));
}

TEST(ResourceForkDecoder, FirstOfAlikeCounts) {
    Image image(BuildFork({{"vers", 1, "first"}, {"vers", 1, "second"}, {"STR ", 1, ""}, {"vers", 1, ""}}));
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("first", image.BytesOf("vers", 1));
}

TEST(ResourceForkDecoder, AttributesAreTold) {
    Image image(BuildFork({{"vers", 1, "", 0x01}, {"vers", 2, "", 0xFE, "with a name"}}));
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ(0x01, image.Reference("vers", 1).attributes);
    EXPECT_EQ(0xFE, image.Reference("vers", 2).attributes);
    EXPECT_EQ(4u, image.Reference("vers", 2).dataOffset) << "they are not part of it";
}

TEST(ResourceForkDecoder, ResourceMayHaveNoBytes) {
    Image image(BuildFork({{"vers", 1, ""}, {"vers", 2, "two"}, {"vers", 3, ""}}));
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("", image.BytesOf("vers", 1));
    EXPECT_EQ("", image.BytesOf("vers", 3));
    EXPECT_EQ(0u, image.MostBytesOf("vers", 1));
    EXPECT_EQ(0u, image.MostBytesOf("vers", 3));
}

TEST(ResourceForkDecoder, TwoResourcesMayShareTheirBytes) {
    BuiltFork const fork = SmallFork();
    Image image(fork.With(fork.references[1] + kResourceOffset, 0, 3));
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("one", image.BytesOf("vers", 1));
    EXPECT_EQ("one", image.BytesOf("vers", 2));
    EXPECT_EQ(15u, image.MostBytesOf("vers", 1)) << "up to the third, with the bytes of the second";
}

TEST(ResourceForkDecoder, OffsetsHave24Bits) {
    BuiltFork fork = BuildFork({{"vers", 1, std::string(0x12345 - 4, 'x')}, {"vers", 2, "two"}});
    Image image(fork);
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("at " + std::to_string(0x12345), image.Find("vers", 2));
    EXPECT_EQ("two", image.BytesOf("vers", 2));
}

TEST(ResourceForkDecoder, MapMayLieInFrontOfTheData) {
    BuiltFork const fork = SmallFork();
    std::string const data = fork.bytes.substr(fork.data, fork.map - fork.data);
    std::string const map = fork.bytes.substr(fork.map);
    Image image(BigEndian(16 + map.size(), 4) + BigEndian(16, 4) + BigEndian(data.size(), 4) +
                BigEndian(map.size(), 4) + map + data);
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("number 2", image.BytesOf("vers", 2));
    EXPECT_EQ(4u, image.MostBytesOf("STR ", -5));
}

// ---- Forks with nothing in them

TEST(ResourceForkDecoder, ForkWithoutBytesIsItsEnd) {
    Image image(std::string{});
    EXPECT_EQ(eofErr, image.Open());
    EXPECT_EQ(0, image.Reads());
}

TEST(ResourceForkDecoder, PlaceholderHasNoTypes) {
    BuiltFork const placeholder = BuildFork({});
    EXPECT_EQ(286u, placeholder.bytes.size());
    EXPECT_EQ("\xFF\xFF", placeholder.bytes.substr(placeholder.typeList));
    Image image(placeholder);
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ("no type", image.Find("vers", 1));
    EXPECT_EQ(0u, image.Fork().MostBytes({0, 0}));
    std::uint32_t count = 0;
    EXPECT_EQ(eofErr, image.Fork().CountBytes({0, 0}, count));
}

// ---- Sizes

TEST(ResourceForkDecoder, MostBytesReachUpToTheNextResource) {
    BuiltFork const fork = BuildFork({{"vers", 1, "one"}, {"STR ", 1, "seventh"}, {"vers", 2, "last"}});
    Image image(fork);
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ(3u, image.MostBytesOf("vers", 1)) << "of another type";
    EXPECT_EQ(7u, image.MostBytesOf("STR ", 1));
    EXPECT_EQ(4u, image.MostBytesOf("vers", 2)) << "the data ends";
}

TEST(ResourceForkDecoder, MostBytesDoNotCountWhatLiesInFront) {
    BuiltFork const fork = SmallFork();  // resources at 0, 7 and 19; the data has 27 bytes
    auto const third = fork.references[2] + kResourceOffset;
    auto const most = [&](std::uint64_t offset, std::string const& type, int number) {
        Image image(fork.With(third, offset, 3));
        EXPECT_EQ(noErr, image.Open());
        return image.MostBytesOf(type, number);
    };
    EXPECT_EQ(16u, most(0, "vers", 2));
    EXPECT_EQ(1u, most(5, "vers", 1));
    EXPECT_EQ(0u, most(4, "vers", 1));
    EXPECT_EQ(0u, most(3, "vers", 1)) << "not even the length has room";
    EXPECT_EQ(0u, most(23, "STR ", -5));
    EXPECT_EQ(0u, most(24, "STR ", -5));
    EXPECT_EQ(0u, most(27, "STR ", -5)) << "it begins where the data ends";
    EXPECT_EQ(0u, most(0xFFFFFF, "STR ", -5)) << "it begins behind the data";
    EXPECT_EQ(16u, most(0xFFFFFF, "vers", 2)) << "up to the end of the data, not behind it";
}

TEST(ResourceForkDecoder, StoredLengthEndsWithTheData) {
    BuiltFork const fork = SmallFork();
    auto const bytes = [&](std::size_t resource, std::uint64_t length, std::string const& type, int number) {
        Image image(fork.With(fork.resources[resource], length, 4));
        EXPECT_EQ(noErr, image.Open());
        return image.BytesOf(type, number);
    };
    EXPECT_EQ("text", bytes(2, 4, "STR ", -5));
    EXPECT_EQ("error -39", bytes(2, 5, "STR ", -5));
    EXPECT_EQ("error -39", bytes(2, 0xFFFFFFFF, "STR ", -5));
    EXPECT_EQ("error -39", bytes(0, 24, "vers", 1));
    EXPECT_EQ(23u, bytes(0, 23, "vers", 1).size()) << "up to the end, whatever lies there";
}

TEST(ResourceForkDecoder, StoredLengthLiesWithinTheData) {
    BuiltFork const fork = SmallFork();
    auto const count = [&](std::uint64_t offset) {
        Image image(fork.With(fork.references[2] + kResourceOffset, offset, 3)
                        .With(fork.map - 4, 0, 4));  // the last bytes of the data are a length of 0
        EXPECT_EQ(noErr, image.Open());
        std::uint32_t number = 77;
        OSErr const error = image.Fork().CountBytes(image.Reference("STR ", -5), number);
        return error == noErr ? std::to_string(number) : "error " + std::to_string(error);
    };
    EXPECT_EQ("0", count(23));
    EXPECT_EQ("error -39", count(24));
    EXPECT_EQ("error -39", count(27));
    EXPECT_EQ("error -39", count(0xFFFFFF));
}

TEST(ResourceForkDecoder, PartsAreReadUpToTheEndOfTheData) {
    Image image(SmallFork());
    ASSERT_EQ(noErr, image.Open());
    ResourceReference const last = image.Reference("STR ", -5);
    std::string two(2, '?');
    EXPECT_EQ(noErr, image.ReadTo(two, last, 1));
    EXPECT_EQ("ex", two);
    EXPECT_EQ(noErr, image.ReadTo(two, last, 2));
    EXPECT_EQ("xt", two);
    std::string none;
    EXPECT_EQ(noErr, image.ReadTo(none, last, 4));
    for (std::uint32_t const offset : {3u, 4u, 5u, 0xFFFFFFFEu, 0xFFFFFFFFu})
        EXPECT_EQ(eofErr, image.ReadTo(two, last, offset)) << offset;
    EXPECT_EQ(eofErr, image.ReadTo(none, last, 5));
    EXPECT_EQ("xt", two) << "a failure leaves it alone";
}

// ---- Bounds of the header

TEST(ResourceForkDecoder, HeaderHas16Bytes) {
    for (std::size_t size = 1; size < 16; ++size) {
        Image image(std::string(size, '\0'));
        EXPECT_EQ(mapReadErr, image.Open()) << size;
        EXPECT_EQ(0, image.Reads()) << size;
    }
    EXPECT_EQ(mapReadErr, CodeOfOpening(std::string(16, '\0'))) << "there is no map";
}

TEST(ResourceForkDecoder, DataLiesWithinTheFork) {
    BuiltFork const fork = SmallFork();
    std::uint64_t const size = fork.bytes.size();
    auto const code = [&](std::uint64_t offset, std::uint64_t length) {
        return CodeOfOpening(fork.With(kDataOffset, offset, 4).With(kDataLength, length, 4));
    };
    EXPECT_EQ(noErr, code(256, size - 256));
    EXPECT_EQ(mapReadErr, code(256, size - 255));
    EXPECT_EQ(noErr, code(size, 0));
    EXPECT_EQ(mapReadErr, code(size + 1, 0));
    EXPECT_EQ(noErr, code(0, size));
    EXPECT_EQ(mapReadErr, code(0, size + 1));
    EXPECT_EQ(mapReadErr, code(0xFFFFFFFF, 1));
    EXPECT_EQ(mapReadErr, code(0x80000000, 0x80000000));
    EXPECT_EQ(mapReadErr, code(1, 0xFFFFFFFF));
}

TEST(ResourceForkDecoder, MapLiesWithinTheFork) {
    BuiltFork const fork = BuildFork({});
    auto const code = [&](std::uint64_t offset, std::uint64_t length) {
        return CodeOfOpening(fork.With(kMapOffset, offset, 4).With(kMapLength, length, 4));
    };
    EXPECT_EQ(noErr, code(256, 30));
    EXPECT_EQ(mapReadErr, code(256, 31));
    EXPECT_EQ(mapReadErr, code(257, 30));
    EXPECT_EQ(mapReadErr, code(286, 0));
    EXPECT_EQ(mapReadErr, code(0xFFFFFFFF, 30));
    EXPECT_EQ(mapReadErr, code(256, 0xFFFFFFFF));
    EXPECT_EQ(mapReadErr, code(0x80000000, 0x80000000));
}

TEST(ResourceForkDecoder, EveryForkThatIsCutIsRefused) {
    std::string const whole = SmallFork().bytes;
    for (std::size_t size = 1; size < whole.size(); ++size)
        EXPECT_EQ(mapReadErr, CodeOfOpening(whole.substr(0, size))) << size;
    EXPECT_EQ(noErr, CodeOfOpening(whole));
    EXPECT_EQ(noErr, CodeOfOpening(whole + "more"));
}

// ---- Bounds of the map

TEST(ResourceForkDecoder, MapHas28Bytes) {
    BuiltFork const fork =
        BuildFork({}).With(256 + kTypeListOffset, 26, 2).With(256 + kNameListOffset, 0xFFFF, 2);
    EXPECT_EQ(noErr, CodeOfOpening(fork.With(kMapLength, 28, 4))) << "the type list is in its last bytes";
    EXPECT_EQ(mapReadErr, CodeOfOpening(fork.With(kMapLength, 27, 4)));
    EXPECT_EQ(mapReadErr, CodeOfOpening(fork.With(kMapLength, 27, 4).With(256 + kTypeListOffset, 0, 2)));
}

TEST(ResourceForkDecoder, TypeListLiesWithinTheMap) {
    BuiltFork const fork = BuildFork({});
    auto const code = [&](std::uint64_t offset) {
        return CodeOfOpening(fork.With(fork.map + kTypeListOffset, offset, 2));
    };
    EXPECT_EQ(noErr, code(28));
    EXPECT_EQ(mapReadErr, code(29));
    EXPECT_EQ(mapReadErr, code(30));
    EXPECT_EQ(mapReadErr, code(0xFFFF));
}

TEST(ResourceForkDecoder, TypesLieWithinTheMap) {
    BuiltFork fork = BuildFork({{"vers", 1, "one"}, {"STR ", 2, "text"}});
    std::size_t const behind = fork.bytes.size() - fork.typeList - 2;  // 40 bytes: room for five types
    ASSERT_EQ(40u, behind);
    // Each type has one reference, which is the first bytes of the list itself.
    for (std::size_t type = fork.typeList + 2; type < fork.bytes.size(); type += 8)
        fork = fork.With(type + kReferenceCount, 0, 2).With(type + kReferencesOffset, 2, 2);
    auto const code = [&](std::uint64_t count) {
        return CodeOfOpening(fork.With(fork.typeList, count - 1, 2));
    };
    EXPECT_EQ(noErr, code(5));
    EXPECT_EQ(mapReadErr, code(6));
    EXPECT_EQ(mapReadErr, code(65535));
    EXPECT_EQ(noErr, code(65536)) << "which stands for none";
    BuiltFork const five = fork.With(fork.typeList, 4, 2);
    std::uint64_t const length = fork.bytes.size() - fork.map;
    EXPECT_EQ(noErr, CodeOfOpening(five.With(kMapLength, length, 4)));
    EXPECT_EQ(mapReadErr, CodeOfOpening(five.With(kMapLength, length - 1, 4)));
}

TEST(ResourceForkDecoder, ReferencesLieWithinTheMap) {
    BuiltFork const fork = BuildFork({{"vers", 1, "one"}, {"STR ", 2, "text"}});  // without names behind
    EXPECT_EQ(noErr, CodeOfOpening(fork)) << "up to its last byte";
    EXPECT_EQ(mapReadErr, CodeOfOpening(fork.With(fork.types[1] + kReferenceCount, 1, 2)));
    EXPECT_EQ(mapReadErr, CodeOfOpening(fork.With(fork.types[1] + kReferencesOffset, 2 + 16 + 12 + 1, 2)));
    EXPECT_EQ(mapReadErr, CodeOfOpening(fork.With(fork.types[1] + kReferencesOffset, 0xFFFF, 2)));
    EXPECT_EQ(mapReadErr, CodeOfOpening(fork.With(fork.types[0] + kReferenceCount, 0xFFFF, 2)));
    Image image(fork.With(fork.types[0] + kReferencesOffset, 30, 2));
    EXPECT_EQ(noErr, image.Open()) << "two lists may be one";
    EXPECT_EQ("no number", image.Find("vers", 1));
}

// ---- Work

// A fork with as many types as are wanted, all called "vers", which share one list of the most references: to
// resources at 0 of data of 100 bytes, the last one to one at 50. The list is as far behind as it can be.
BuiltFork ForkOfManyReferences(std::size_t types) {
    constexpr std::size_t references = 0x10000, first = 0xFFFF;
    std::string typeList = BigEndian(types - 1, 2);
    BuiltFork fork;
    fork.data = 16;
    fork.map = fork.data + 100;
    fork.typeList = fork.map + 28;
    for (std::size_t i = 0; i < types; ++i) {
        fork.types.push_back(fork.typeList + typeList.size());
        typeList += "vers" + BigEndian(references - 1, 2) + BigEndian(first, 2);
    }
    std::string map = std::string(24, '\0') + BigEndian(28, 2) + BigEndian(0, 2) + typeList;
    map.resize(28 + first + references * 12);
    map.replace(map.size() - 7, 3, BigEndian(50, 3));
    fork.bytes = BigEndian(fork.data, 4) + BigEndian(fork.map, 4) + BigEndian(100, 4) +
                 BigEndian(map.size(), 4) + std::string(100, '\0') + map;
    return fork;
}

TEST(ResourceForkDecoder, ListsThatOverlapAreNotWalkedAgainAndAgain) {
    Image most(ForkOfManyReferences(1));
    ASSERT_EQ(noErr, most.Open());
    EXPECT_EQ("at 0", most.Find("vers", 0));
    EXPECT_EQ(46u, most.Fork().MostBytes({0, 0}));
    EXPECT_EQ(mapReadErr, CodeOfOpening(ForkOfManyReferences(2))) << "the map has no room for two such lists";
    Image image(ForkOfManyReferences(0xFFFF));
    EXPECT_EQ(mapReadErr, image.Open());
    EXPECT_EQ(2, image.Reads());
}

TEST(ResourceForkDecoder, OnlyOpeningAndBytesAreRead) {
    Image image(SmallFork());
    ASSERT_EQ(noErr, image.Open());
    EXPECT_EQ(2, image.Reads()) << "header and map";
    ResourceReference const resource = image.Reference("vers", 2);
    image.Find("none", 1);
    image.Fork().MostBytes(resource);
    EXPECT_EQ(2, image.Reads());
    std::uint32_t count = 0;
    EXPECT_EQ(noErr, image.Fork().CountBytes(resource, count));
    EXPECT_EQ(3, image.Reads());
}

// ---- Failures

TEST(ResourceForkDecoder, FailuresToReadArePassedOn) {
    for (int const good : {0, 1}) {
        Image image(SmallFork());
        image.FailAfter(good, fnfErr);
        EXPECT_EQ(fnfErr, image.Open()) << good;
        EXPECT_EQ(good + 1, image.Reads()) << "nothing is read once it has failed";
    }
    for (int const good : {2, 3}) {
        Image image(SmallFork());
        image.FailAfter(good, volOffLinErr);
        ASSERT_EQ(noErr, image.Open());
        EXPECT_EQ("error -53", image.BytesOf("vers", 1)) << good;
    }
}

// Whatever a byte is: nothing outside is read, and what is there is handed out without harm.
TEST(ResourceForkDecoder, AnyByteMayBeSpoilt) {
    std::string const sound = SmallFork().bytes;
    int opened = 0, found = 0;
    for (std::size_t place = 0; place < sound.size(); ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string spoilt = sound;
            spoilt[place] = static_cast<char>(byte);
            Image image(spoilt);
            if (image.Open() != noErr) continue;
            ++opened;
            for (int const number : {1, 2, -5}) {
                bool hasType = false;
                ResType const type = Code(number < 0 ? "STR " : "vers");
                auto const resource = image.Fork().Find(type, static_cast<SInt16>(number), hasType);
                if (!resource) continue;
                ++found;
                std::uint32_t count = 0;
                image.Fork().MostBytes(*resource);
                if (image.Fork().CountBytes(*resource, count) != noErr) continue;
                ASSERT_LE(count, spoilt.size());
                std::string text(count, '?');
                EXPECT_EQ(noErr, image.ReadTo(text, *resource, 0)) << place << ": " << byte;
            }
        }
        if (HasFailure()) break;
    }
    EXPECT_LT(80'000, opened);
    EXPECT_LT(3 * 80'000, found);
}
