// Locked, visible, alias, stationery, the two forks and their lengths, from each place where they are kept.

#include "filesystem/Attributes.h"

#include <unistd.h>

#include <cstdlib>

#include "Asking.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "modules/FileAttributesModule.h"
#include "platform/AppleDoubleBuilder.h"

namespace {

constexpr std::uint64_t kLongest = 0xFFFFFFFF;  // bytes that a fork can have in an AppleDouble file

long long DataLength(file const& item) { return data_length_of(datafork_of(item)); }
long long ResourceLength(file const& item) { return res_length_of(resfork_of(item)); }

using Attributes = FileSystem;

}  // namespace

TEST_F(Attributes, OfAPlainFile) {
    file const item = FileAt(here.Write("file", "12345"));
    EXPECT_FALSE(locked_of(item));
    EXPECT_TRUE(visible_of(item));
    EXPECT_FALSE(alias_of(item));
    EXPECT_FALSE(stationery_of(item));
    EXPECT_EQ(5, DataLength(item));
    EXPECT_EQ(0, ResourceLength(item));
    EXPECT_EQ(5, length_of(item));
}

TEST_F(Attributes, EachFlagIsItsOwn) {
    struct {
        unsigned flags;
        bool visible, alias, stationery;
    } const rows[] = {{0x8000, true, true, false},
                      {0x4000, false, false, false},
                      {0x0800, true, false, true},
                      {0xFFFF & ~0xC800u, true, false, false}};
    for (auto const& row : rows) {
        TemporaryFolder const folder;
        std::string const path = folder.Write("file");
        folder.SetAttribute("file", "user.com.apple.FinderInfo", FinderInformation("TEXTttxt", row.flags));
        file const item = FileAt(path);
        EXPECT_EQ(row.visible, visible_of(item)) << row.flags;
        EXPECT_EQ(row.alias, alias_of(item)) << row.flags;
        EXPECT_EQ(row.stationery, stationery_of(item)) << row.flags;
        EXPECT_FALSE(locked_of(item)) << row.flags;
    }
}

TEST_F(Attributes, LockedBitLocks) {
    std::string const path = here.Write("file");
    here.SetAttribute("file", "user.org.netatalk.Metadata", AppleDoubleImage({{14, BigEndian(0x20, 4)}}));
    EXPECT_TRUE(locked_of(FileAt(path)));
}

TEST_F(Attributes, NameThatBeginsWithADotIsInvisible) {
    EXPECT_FALSE(visible_of(FileAt(here.Write(".file"))));
}

TEST_F(Attributes, LinkToAFileIsAnAliasWithItsTargetsLengths) {
    here.Write("file", "12345");
    here.SetAttribute("file", "user.com.apple.ResourceFork", "123");
    file const link = FileAt(here.Link("link", "file"));
    EXPECT_TRUE(alias_of(link));
    EXPECT_EQ(5, DataLength(link));
    EXPECT_EQ(3, ResourceLength(link));
    EXPECT_EQ(8, length_of(link));
}

TEST_F(Attributes, ResourceForkIsFoundInEachStore) {
    std::string const double4 = AppleDoubleImage({{9, FinderInformation("TEXTttxt")}, {2, "1234"}});
    struct {
        char const* store;
        std::string value;
        long long length;
    } const rows[] = {{"user.com.apple.ResourceFork", "1", 1},
                      {"user.AFP_Resource", "12", 2},
                      {"user.org.netatalk.ResourceFork", "123", 3},
                      {"user.DosStream.AFP_Resource:$DATA", std::string("12345\0", 6), 5},
                      {"._file", double4, 4},
                      {".AppleDouble/file", double4, 4}};
    for (auto const& row : rows) {
        TemporaryFolder const folder;
        std::string const path = folder.Write("file", "data");
        std::string const store = row.store;
        if (store.starts_with("user.")) {
            folder.SetAttribute("file", row.store, row.value);
        } else {
            folder.MakeFolder(".AppleDouble");
            folder.Write(store, row.value);
        }
        file const item = FileAt(path);
        EXPECT_EQ(row.length, ResourceLength(item)) << store;
        EXPECT_EQ(4, DataLength(item)) << store;
        EXPECT_EQ(4 + row.length, length_of(item)) << store;
    }
}

TEST_F(Attributes, EmptyResourceForkHasTheLengthZero) {
    std::string const path = here.Write("file", "12345");
    here.Write("._file", AppleDoubleImage({{9, FinderInformation("TEXTttxt")}, {2, ""}}));
    file const item = FileAt(path);
    EXPECT_EQ(&item, &resfork_of(item).owner);
    EXPECT_EQ(0, ResourceLength(item));
    EXPECT_EQ(5, length_of(item));
}

TEST_F(Attributes, LengthsOfTheLongestForksAreAdded) {
    std::string const path = here.Write("file");
    ASSERT_EQ(0, truncate(path.c_str(), kLongest));
    std::string const header = BigEndian(0x00051607, 4) + BigEndian(0x00020000, 4) + std::string(16, ' ') +
                               BigEndian(1, 2) + BigEndian(2, 4) + BigEndian(38, 4) + BigEndian(kLongest, 4);
    ASSERT_EQ(0, truncate(here.Write("._file", header).c_str(), 38 + kLongest));
    file const item = FileAt(path);
    EXPECT_EQ(4'294'967'295, DataLength(item));
    EXPECT_EQ(4'294'967'295, ResourceLength(item));
    EXPECT_EQ(8'589'934'590, length_of(item));
}

namespace {

// The checksum of a MacBinary header: CRC-16 with the polynomial 0x1021.
unsigned Checksum(std::string_view bytes) {
    unsigned sum = 0;
    for (unsigned char const byte : bytes) {
        sum ^= unsigned{byte} << 8;
        for (int bit = 0; bit < 8; ++bit) sum = ((sum << 1) ^ ((sum & 0x8000) != 0 ? 0x1021 : 0)) & 0xFFFF;
    }
    return sum;
}

std::string PaddedTo128(std::string const& bytes) {
    return bytes + std::string((128 - bytes.size() % 128) % 128, '\0');
}

// A file with both forks in MacBinary II form, as it was sent from a Macintosh. Of the Finder flags the upper
// byte stands at 73, the lower at 101.
std::string MacBinary(std::string const& name, std::string const& typeAndCreator, std::string const& data,
                      std::string const& resource) {
    std::string header(128, '\0');
    header[1] = static_cast<char>(name.size());
    header.replace(2, name.size(), name);
    header.replace(65, 8, typeAndCreator);
    header.replace(73, 1, BigEndian((kIsStationery | kIsInvisible) >> 8, 1));
    header.replace(83, 8, BigEndian(data.size(), 4) + BigEndian(resource.size(), 4));
    header.replace(122, 2, BigEndian(0x8181, 2));
    header.replace(124, 2, BigEndian(Checksum(header.substr(0, 124)), 2));
    return header + PaddedTo128(data) + PaddedTo128(resource);
}

}  // namespace

// A program of the distribution leaves an AppleDouble file beside what it unpacks.
TEST_F(Attributes, OfAFileThatUnarUnpacked) {
    here.Write("sent.bin", MacBinary("report", "TEXTttxt", "hello world", std::string(300, 'r')));
    std::string const unpack = "unar -q -k hidden -o " + here.Path() + " " + here.Path("sent.bin");
    ASSERT_EQ(0, std::system(unpack.c_str()));
    file const item = FileAt(here.Path("report"));
    EXPECT_TRUE(type_of(item) == file_type_of(Bytes("TEXT"), 4));
    EXPECT_TRUE(creator_of(item) == file_signature_of(Bytes("ttxt"), 4));
    EXPECT_TRUE(stationery_of(item));
    EXPECT_FALSE(visible_of(item));
    EXPECT_FALSE(alias_of(item));
    EXPECT_EQ(11, DataLength(item));
    EXPECT_EQ(300, ResourceLength(item));
}

TEST_F(Attributes, AreThoseOfTheLookUp) {
    std::string const path = here.Write("file", "12345");
    file const item = FileAt(path);
    std::filesystem::remove(path);
    EXPECT_EQ(5, length_of(item));
    EXPECT_TRUE(visible_of(item));
}

TEST_F(Attributes, WithoutInformationFail) {
    file const missing{MissingItem()};
    EXPECT_THROW(locked_of(missing), FailedToGetFileItem);
    EXPECT_THROW(visible_of(missing), FailedToGetFileItem);
    EXPECT_THROW(alias_of(missing), FailedToGetFileItem);
    EXPECT_THROW(stationery_of(missing), FailedToGetFileItem);
    EXPECT_THROW(length_of(missing), FailedToGetFileItem);
    datafork const data = datafork_of(missing);
    resfork const resource = resfork_of(missing);
    EXPECT_THROW(data_length_of(data), FailedToGetFileItem);
    EXPECT_THROW(res_length_of(resource), FailedToGetFileItem);
}

TEST(FileAttributesModule, RegistersItsTableInOrder) {
    ExpectRows<FileAttributesModule>(
        {"type \"datafork\"", "type \"resfork\"", "property \"locked\" \"lockeds\" of \"file\": \"boolean\"",
         "property \"visible\" \"visibles\" of \"file\": \"boolean\"",
         "property \"alias\" \"aliases\" of \"file\": \"boolean\"",
         "property \"stationery\" \"stationeries\" of \"file\": \"boolean\"",
         "property \"data fork\" \"data forks\" of \"file\": \"datafork\"",
         "property \"resource fork\" \"resource forks\" of \"file\": \"resfork\"",
         "property \"length\" \"lengths\" of \"resfork\": \"integer\"",
         "property \"length\" \"lengths\" of \"datafork\": \"integer\"",
         "property \"length\" \"lengths\" of \"file\": \"integer\"",
         "property \"size\" \"sizes\" of \"resfork\": \"integer\"",
         "property \"size\" \"sizes\" of \"datafork\": \"integer\"",
         "property \"size\" \"sizes\" of \"file\": \"integer\""});
}

namespace {

template <class R, class T>
R ValueOf(std::string const& row, T const& object) {
    Registration const registration = RegisteredAs("property " + row);
    Slot<R> slot;
    registration.get(slot, nullptr, &object, nullptr, registration.context);
    return slot.Value();
}

}  // namespace

TEST(FileAttributesModule, RowsAskTheFunctionsOfTheirPhrases) {
    TemporaryFolder const here;
    std::string const path = here.Write("file", "12345");
    here.SetAttribute("file", "user.com.apple.ResourceFork", "123");
    FileAttributesModule const module;
    file const item = FileAt(path);
    for (unsigned const flags : {0x8000u, 0x4000u, 0x0800u}) {
        here.SetAttribute("file", "user.com.apple.FinderInfo", FinderInformation("TEXTttxt", flags));
        ClearFileCaches(nullptr);
        file const flagged = FileAt(path);
        auto const answer = [&](std::string const& phrases) {
            return bool(ValueOf<boolean>(phrases + " of \"file\": \"boolean\"", flagged));
        };
        EXPECT_EQ(flags == 0x8000, answer("\"alias\" \"aliases\"")) << flags;
        EXPECT_EQ(flags != 0x4000, answer("\"visible\" \"visibles\"")) << flags;
        EXPECT_EQ(flags == 0x0800, answer("\"stationery\" \"stationeries\"")) << flags;
        EXPECT_FALSE(answer("\"locked\" \"lockeds\"")) << flags;
    }
    here.SetAttribute("file", "user.org.netatalk.Metadata", AppleDoubleImage({{14, BigEndian(0x20, 4)}}));
    ClearFileCaches(nullptr);
    EXPECT_TRUE(ValueOf<boolean>("\"locked\" \"lockeds\" of \"file\": \"boolean\"", FileAt(path)));
    auto const data = ValueOf<datafork>("\"data fork\" \"data forks\" of \"file\": \"datafork\"", item);
    auto const resource =
        ValueOf<resfork>("\"resource fork\" \"resource forks\" of \"file\": \"resfork\"", item);
    for (std::string const phrases : {"\"length\" \"lengths\"", "\"size\" \"sizes\""}) {
        EXPECT_EQ(5, ValueOf<integer>(phrases + " of \"datafork\": \"integer\"", data));
        EXPECT_EQ(3, ValueOf<integer>(phrases + " of \"resfork\": \"integer\"", resource));
        EXPECT_EQ(8, ValueOf<integer>(phrases + " of \"file\": \"integer\"", item));
    }
}

TEST(FileAttributesModule, ForksHaveNoFingerprint) {
    FileAttributesModule const module;
    EXPECT_EQ(nullptr, RegisteredAs("type \"datafork\"").fingerprint);
    EXPECT_EQ(nullptr, RegisteredAs("type \"resfork\"").fingerprint);
}
