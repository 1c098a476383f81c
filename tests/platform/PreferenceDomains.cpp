#include "preferences/PreferenceDomains.h"
#include "foundation/TextLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Platform::PreferenceEnvironment;
using Platform::PreferenceFiles;
using Platform::VariableIn;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

PreferenceEnvironment const usual{.home = "/home/u", .machine = "1f"};

}  // namespace

TEST(PreferenceDomains, AreSearchedInAnOrder) {
    EXPECT_THAT(
        PreferenceFiles("org.example.a", usual),
        ElementsAre("/home/u/Library/Preferences/ByHost/org.example.a.1f.plist",
                    "/home/u/.config/org.example.a.plist", "/home/u/Library/Preferences/org.example.a.plist",
                    "/home/u/GNUstep/Defaults/org.example.a.plist",
                    "/home/u/Library/Preferences/ByHost/.GlobalPreferences.1f.plist",
                    "/home/u/.config/.GlobalPreferences.plist",
                    "/home/u/Library/Preferences/.GlobalPreferences.plist",
                    "/home/u/GNUstep/Defaults/NSGlobalDomain.plist",  //
                    "/etc/xdg/org.example.a.plist", "/etc/xdg/.GlobalPreferences.plist"));
}

TEST(PreferenceDomains, AreWhereTheEnvironmentSays) {
    PreferenceEnvironment environment = usual;
    environment.userFolder = "/c";
    environment.commonFolders = "/x:/y";
    environment.machine = "";
    EXPECT_THAT(
        PreferenceFiles("a", environment),
        ElementsAre("/c/a.plist", "/home/u/Library/Preferences/a.plist", "/home/u/GNUstep/Defaults/a.plist",
                    "/c/.GlobalPreferences.plist", "/home/u/Library/Preferences/.GlobalPreferences.plist",
                    "/home/u/GNUstep/Defaults/NSGlobalDomain.plist", "/x/a.plist", "/y/a.plist",
                    "/x/.GlobalPreferences.plist", "/y/.GlobalPreferences.plist"));
}

TEST(PreferenceDomains, AreNotWhereAPathIsRelative) {
    PreferenceEnvironment const environment{.home = "/h", .userFolder = "c", .commonFolders = "x::/y:z"};
    auto const files = PreferenceFiles("a", environment);
    EXPECT_THAT(files, Contains("/h/.config/a.plist"));
    EXPECT_THAT(files, Contains("/y/a.plist"));
    EXPECT_THAT(files, Each(testing::AnyOf(StartsWith("/h/"), StartsWith("/y/"))));
}

TEST(PreferenceDomains, WithoutAHomeAreTheOthers) {
    for (char const* const home : {"", "home"}) {
        EXPECT_THAT(PreferenceFiles("a", {.home = home, .userFolder = "/c", .machine = "1f"}),
                    ElementsAre("/c/a.plist", "/c/.GlobalPreferences.plist", "/etc/xdg/a.plist",
                                "/etc/xdg/.GlobalPreferences.plist"));
    }
}

TEST(PreferenceDomains, OfGnustepAreWhereItsSettingsSay) {
    auto const fileIn = [](char const* folder) {
        return PreferenceFiles("a", {.home = "/h", .gnustepDefaults = folder})[2];
    };
    EXPECT_EQ("/h/GNUstep/Defaults/a.plist", fileIn(""));
    EXPECT_EQ("/h/other/a.plist", fileIn("other"));
    EXPECT_EQ("/h/other/a.plist", fileIn("~/other"));
    EXPECT_EQ("/other/a.plist", fileIn("/other"));
}

TEST(PreferenceDomains, OfNamesThatNoFileCanHaveAreNone) {
    using namespace std::string_view_literals;
    for (std::string_view const name : {""sv, "a/b"sv, "/"sv, "a\0b"sv, "../a"sv})
        EXPECT_THAT(PreferenceFiles(name, usual), IsEmpty()) << name;
    EXPECT_THAT(PreferenceFiles(".", usual), Contains("/home/u/.config/..plist"));
}

TEST(PreferenceDomains, HaveNamesOf255BytesAtMost) {
    EXPECT_THAT(PreferenceFiles(std::string(250, 'a'), usual), IsEmpty());
    auto const files = PreferenceFiles(std::string(249, 'a'), usual);
    EXPECT_EQ("/home/u/.config/" + std::string(249, 'a') + ".plist", files.front());
    EXPECT_EQ(9u, files.size());
}

TEST(PreferenceDomains, AreToldByVariablesInSettings) {
    EXPECT_EQ("b", VariableIn("A=a\nB=b\n", "B"));
    EXPECT_EQ("b c", VariableIn("  B = b c \r\n", "B"));
    EXPECT_EQ("b ", VariableIn("B=\"b \"", "B"));
    EXPECT_EQ("b'", VariableIn("B=b'", "B"));
    EXPECT_EQ("'", VariableIn("B='", "B"));
    EXPECT_EQ("c", VariableIn("B=b\nB=c", "B"));
    EXPECT_EQ("", VariableIn("#B=b\nBB=b\nB\n\n=b", "B"));
}

TEST(PreferenceDomains, AreOfAMachineWithAnIdentifier) {
    EXPECT_EQ("0123abcd", Platform::MachineIn("0123abcd\n"));
    EXPECT_EQ("", Platform::MachineIn(""));
    EXPECT_EQ("", Platform::MachineIn("\n0123"));
    EXPECT_EQ("", Platform::MachineIn("../x\n"));
    EXPECT_EQ("", Platform::MachineIn("a b\n"));
    EXPECT_EQ("", Platform::MachineIn(std::string(65, 'a')));
}
