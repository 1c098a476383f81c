#include "internet/StoredSettings.h"

#include <Carbon/InternetConfig.h>
#include <Carbon/MacErrors.h>
#include <gtest/gtest.h>

#include <cstring>

#include "files/FileSpecs.h"
#include "platform/AliasBuilder.h"

using namespace Platform;
using namespace std::string_literals;

namespace {

// The native form, or the result code.
std::string Native(SettingLayout layout, std::string_view stored) {
    std::string value;
    OSErr const error = NativeSetting(layout, stored, value);
    return error == noErr ? value : "error " + std::to_string(error);
}

constexpr char kTooShort[] = "error -668";

template <class Record>
Record NativeRecord(SettingLayout layout, std::string_view stored) {
    std::string const bytes = Native(layout, stored);
    EXPECT_EQ(sizeof(Record), bytes.size());
    Record record{};
    std::memcpy(&record, bytes.data(), std::min(bytes.size(), sizeof record));
    return record;
}

std::string Padded(std::string bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

// A stored ICFileSpec of an FSSpec, with its alias.
std::string StoredFile(std::string const& alias = std::string(6, '\0')) {
    return Padded("\4Disk", 32) + BigEndian(0x01020304, 4) + BigEndian(0xFF9C, 2) + BigEndian(0x10203, 4) +
           Padded("\4Name", 64) + alias;
}

}  // namespace

TEST(StoredSettings, HaveTheLayoutsOfTheirKeys) {
    for (char const* const key : {"Email", "email", "EMAIL", "RealName", "Organization", "SocksHost",
                                  "HTTPProxyHost", "FTPProxyHost", "SMTPHost", "WWWHomePage"})
        EXPECT_EQ(SettingLayout::PascalString, LayoutOf(key)) << key;
    for (char const* const key : {"UseSocks", "UseHTTPProxy", "UseFTPProxy"})
        EXPECT_EQ(SettingLayout::Boolean, LayoutOf(key)) << key;
    for (char const* const key : {"PrinterFont", "ScreenFont", "ListFont"})
        EXPECT_EQ(SettingLayout::Font, LayoutOf(key)) << key;
    EXPECT_EQ(SettingLayout::FileSpec, LayoutOf("DownloadFolder"));
    EXPECT_EQ(SettingLayout::Application, LayoutOf("Helper\xA5http"));
    EXPECT_EQ(SettingLayout::Application, LayoutOf("helper\xA5"));
    for (char const* const key :
         {"ArchieAll", "Services", "Signature", "HelperDesc\xA5http", "Helper", "", "Emails"})
        EXPECT_EQ(SettingLayout::Bytes, LayoutOf(key)) << key;
}

TEST(StoredSettings, OfTextsEndWhereTheirLengthSays) {
    EXPECT_EQ("\3a@b", Native(SettingLayout::PascalString, "\3a@bcd"));
    EXPECT_EQ("\3a@b", Native(SettingLayout::PascalString, "\3a@b"));
    EXPECT_EQ("\0"s, Native(SettingLayout::PascalString, "\0"s));
    EXPECT_EQ(kTooShort, Native(SettingLayout::PascalString, "\3a@"));
    EXPECT_EQ(kTooShort, Native(SettingLayout::PascalString, ""));
    std::string const longest = '\xFF' + std::string(255, 'a');
    EXPECT_EQ(longest, Native(SettingLayout::PascalString, longest));
}

TEST(StoredSettings, OfTruthsAreOneByte) {
    EXPECT_EQ("\1", Native(SettingLayout::Boolean, "\1"));
    EXPECT_EQ("\0"s, Native(SettingLayout::Boolean, "\0\1"s));
    EXPECT_EQ(kTooShort, Native(SettingLayout::Boolean, ""));
}

TEST(StoredSettings, OfBytesAreAsTheyAre) {
    EXPECT_EQ("", Native(SettingLayout::Bytes, ""));
    EXPECT_EQ("\0\1\2"s, Native(SettingLayout::Bytes, "\0\1\2"s));
}

TEST(StoredSettings, OfFontsAreInTheMachinesOrder) {
    std::string const stored = BigEndian(12, 2) + "\3\0"s + Padded("\6Monaco", 256);
    auto const font = NativeRecord<ICFontRecord>(SettingLayout::Font, stored + "more");
    EXPECT_EQ(12, font.size);
    EXPECT_EQ(3, font.face);
    EXPECT_EQ(0, std::memcmp("\6Monaco", font.font, 8));
    EXPECT_EQ(kTooShort, Native(SettingLayout::Font, stored.substr(0, 259)));
}

TEST(StoredSettings, OfApplicationsAreInTheMachinesOrder) {
    std::string const stored = "MAIL" + Padded("\6Mailer", 64);
    auto const application = NativeRecord<ICAppSpec>(SettingLayout::Application, stored);
    EXPECT_EQ(0x4D41494Cu, +application.fCreator);
    EXPECT_EQ(0, std::memcmp("\6Mailer", application.name, 8));
    EXPECT_EQ(kTooShort, Native(SettingLayout::Application, stored.substr(0, 67)));
    EXPECT_EQ(kTooShort, Native(SettingLayout::Application, "MAIL\x40"s + std::string(63, 'a')));
    EXPECT_EQ(68u, Native(SettingLayout::Application, "MAIL\x3F"s + std::string(63, 'a')).size());
}

TEST(StoredSettings, OfFilesAreInTheMachinesOrder) {
    auto const file = NativeRecord<ICFileSpec>(SettingLayout::FileSpec, StoredFile());
    EXPECT_EQ(0, std::memcmp("\4Disk", file.volName, 6));
    EXPECT_EQ(0x01020304, +file.volCreationDate);
    EXPECT_EQ(-100, +file.fss.vRefNum);
    EXPECT_EQ(0x10203, +file.fss.parID);
    EXPECT_EQ(0, std::memcmp("\4Name", file.fss.name, 6));
    EXPECT_EQ(0u, +file.aliasType);
    EXPECT_EQ(0, +file.aliasSize);
    EXPECT_EQ(kTooShort, Native(SettingLayout::FileSpec, StoredFile().substr(0, 111)));
    std::string tooLong = StoredFile();
    tooLong[42] = '\x40';
    EXPECT_EQ(kTooShort, Native(SettingLayout::FileSpec, tooLong));
}

TEST(StoredSettings, OfFilesWithAliasesLeadToTheirPaths) {
    auto const file = NativeRecord<ICFileSpec>(SettingLayout::FileSpec, StoredFile(AliasOf("usr/lib")));
    FSRef reference;
    ASSERT_EQ(noErr, FSpMakeFSRef(&file.fss, &reference));
    EXPECT_EQ(0, std::memcmp("\3lib", file.fss.name, 5));
    EXPECT_EQ(0, +file.aliasSize);
    auto const other = NativeRecord<ICFileSpec>(SettingLayout::FileSpec, StoredFile(AliasRecord("")));
    EXPECT_EQ(0x10203, +other.fss.parID);
}

TEST(StoredSettings, OfFilesElsewhereAreNoPlacesOfThisProcess) {
    FSSpec place = MakeSpecOfPlace("/missing/item");
    FSRef reference;
    EXPECT_EQ(fnfErr, FSpMakeFSRef(&place, &reference));
    place.name[1] = 'I';
    EXPECT_EQ(dirNFErr, FSpMakeFSRef(&place, &reference));
}

TEST(Aliases, HavePathsOnTheirVolumes) {
    EXPECT_EQ("/Users/u/Got", PathInAlias(AliasOf("Users/u/Got")));
    EXPECT_EQ("/Users/u/Got", PathInAlias(AliasOf("/Users/u/Got")));
    EXPECT_EQ("/Volumes/a/Got", PathInAlias(AliasOf("/Got", "/Volumes/a")));
    EXPECT_EQ("/Volumes/a", PathInAlias(AliasOf("/", "/Volumes/a")));
    EXPECT_EQ("/b", PathInAlias(AliasRecord(AliasPart(19, "/") + AliasPart(18, "b"))));
}

TEST(Aliases, WithoutAPathOrAVolume) {
    EXPECT_EQ("", PathInAlias(AliasRecord(AliasPart(18, "a"))));
    EXPECT_EQ("", PathInAlias(AliasRecord(AliasPart(19, "/"))));
    EXPECT_EQ("", PathInAlias(AliasRecord(AliasPart(0xFFFF, "") + AliasPart(18, "a") + AliasPart(19, "/"))));
    EXPECT_EQ("", PathInAlias(AliasOf("a", "b")));
    EXPECT_EQ("", PathInAlias(AliasOf("", "/")));
    EXPECT_EQ("", PathInAlias(AliasOf("a\0b"s, "/")));
    EXPECT_EQ("", PathInAlias(AliasRecord(AliasPart(18, "a") + AliasPart(19, "/"), 3)));
}

TEST(Aliases, ThatAreCutOff) {
    std::string const whole = AliasRecord(AliasPart(18, "ab") + AliasPart(19, "/v"));
    ASSERT_EQ("/v/ab", PathInAlias(whole));
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ("", PathInAlias(whole.substr(0, size))) << size;
    std::string shorter = whole;
    shorter[5] = static_cast<char>(whole.size() - 1);
    EXPECT_EQ("", PathInAlias(shorter)) << "the record tells its size";
}
