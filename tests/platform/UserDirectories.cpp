#include "machine/UserDirectories.h"

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>
#include <stdio.h>

#include "platform/OwnHome.h"
#include "support/Unprivileged.h"

using Platform::GetUserDirectory;
using Platform::UserDirectoryIn;

namespace {

std::string In(std::string_view text) { return UserDirectoryIn(text, "DOWNLOAD", "/home/u"); }
// That of a line with a value.
std::string Of(std::string const& value) { return In("XDG_DOWNLOAD_DIR=" + value + "\n"); }

class UserDirectories : public OwnHome {
  protected:
    static std::string Get(std::string_view name) {
        std::string path;
        OSErr const error = GetUserDirectory(name, path);
        return error == noErr ? path : "error " + std::to_string(error);
    }
    // What the users' own tool says.
    static std::string Told(std::string const& name) {
        FILE* const tool = popen(("xdg-user-dir " + name).c_str(), "r");
        std::string text;
        for (int byte = getc(tool); byte != EOF && byte != '\n'; byte = getc(tool))
            text += static_cast<char>(byte);
        EXPECT_EQ(0, pclose(tool)) << "needs the package xdg-user-dirs";
        return text;
    }
};

}  // namespace

TEST(UserDirectoryLines, AreBelowTheHomeOrAbsolute) {
    EXPECT_EQ("/home/u/Got", Of("\"$HOME/Got\""));
    EXPECT_EQ("/home/u/a b/c", Of("\"$HOME/a b/c\""));
    EXPECT_EQ("/srv/got", Of("\"/srv/got\""));
    EXPECT_EQ("/home/u", Of("\"$HOME\""));
    EXPECT_EQ("/home/u", Of("\"$HOME/\""));
    EXPECT_EQ("/", Of("\"/\""));
}

TEST(UserDirectoryLines, MayEndWithSeparators) {
    EXPECT_EQ("/home/u/Got", Of("\"$HOME/Got/\""));
    EXPECT_EQ("/srv", Of("\"/srv//\""));
    EXPECT_EQ("/home/u", UserDirectoryIn("XDG_A_DIR=\"$HOME\"", "A", "/home/u/"));
    EXPECT_EQ("/home/u/b", UserDirectoryIn("XDG_A_DIR=\"$HOME//b\"", "A", "/home/u/"));
}

TEST(UserDirectoryLines, MayHaveBlanks) {
    EXPECT_EQ("/home/u/a", In("\t XDG_DOWNLOAD_DIR \t=  \"$HOME/a\" \t# mine\r\n"));
}

TEST(UserDirectoryLines, OfOtherFormsArePassedOver) {
    for (char const* const line :
         {"XDG_DOWNLOAD_DIR=$HOME/a", "XDG_DOWNLOAD_DIR='/a'", "XDG_DOWNLOAD_DIR=\"$HOME/a",
          "XDG_DOWNLOAD_DIR=\"$HOME/a\\", "XDG_DOWNLOAD_DIR=\"$HOMEa\"", "XDG_DOWNLOAD_DIR=\"$PWD/a\"",
          "XDG_DOWNLOAD_DIR=\"a\"", "XDG_DOWNLOAD_DIR=\"\"", "XDG_DOWNLOAD_DIR=", "XDG_DOWNLOAD_DIR",
          "#XDG_DOWNLOAD_DIR=\"/a\"", "export XDG_DOWNLOAD_DIR=\"/a\"", "XDG_DOWNLOADS_DIR=\"/a\"",
          "XDG_DESKTOP_DIR=\"/a\"", "DOWNLOAD=\"/a\"", ""}) {
        EXPECT_EQ("", In(line)) << line;
        EXPECT_EQ("/b", In("XDG_DOWNLOAD_DIR=\"/b\"\n" + std::string(line))) << line;
    }
    EXPECT_EQ("", In({"XDG_DOWNLOAD_DIR=\"/a\0b\"", 23}));
}

TEST(UserDirectoryLines, HaveEscapes) {
    EXPECT_EQ("/a\"b\\c$d", Of("\"/a\\\"b\\\\c\\$d\""));
    EXPECT_EQ("/caf\xE9", Of("\"/caf\xE9\""));
}

TEST(UserDirectoryLines, CountLastToFirst) {
    EXPECT_EQ("/b", In("XDG_DOWNLOAD_DIR=\"/a\"\nXDG_DOWNLOAD_DIR=\"/b\"\nXDG_DESKTOP_DIR=\"/c\""));
}

TEST(UserDirectoryLines, WithoutAHomeAreTheAbsoluteOnes) {
    for (char const* const home : {"", "home"}) {
        EXPECT_EQ("", UserDirectoryIn("XDG_A_DIR=\"$HOME/a\"", "A", home));
        EXPECT_EQ("/a", UserDirectoryIn("XDG_A_DIR=\"/a\"", "A", home));
    }
}

TEST_F(UserDirectories, AreInTheUsersConfiguration) {
    EXPECT_EQ("", Get("DOWNLOAD"));
    Write("home/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Got\"\n");
    EXPECT_EQ(here.Path("home/Got"), Get("DOWNLOAD"));
    EXPECT_EQ("", Get("DESKTOP"));
    Write("other/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Other\"\n");
    userFolder.Set(here.Path("other"));
    EXPECT_EQ(here.Path("home/Other"), Get("DOWNLOAD"));
    userFolder.Set("other");
    EXPECT_EQ(here.Path("home/Got"), Get("DOWNLOAD"));
}

TEST_F(UserDirectories, ThatMayNotBeReadFail) {
    std::filesystem::permissions(here.Path(), std::filesystem::perms::all);
    std::filesystem::permissions(Write("home/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"/a\"\n"),
                                 std::filesystem::perms::none);
    Unprivileged const user;
    PlatformForgetFileFailure();
    EXPECT_EQ("error " + std::to_string(afpAccessDenied), Get("DOWNLOAD"));
    EXPECT_TRUE(PlatformSettingsFailure(nullptr, 0, nullptr, 0));
}

TEST_F(UserDirectories, InFilesThatAreTooLargeFail) {
    std::string const line = "XDG_DOWNLOAD_DIR=\"/a\"\n";
    std::string const path = Write("home/.config/user-dirs.dirs", line);
    std::filesystem::resize_file(path, 4 << 20);
    PlatformForgetFileFailure();
    EXPECT_EQ("/a", Get("DOWNLOAD"));
    EXPECT_EQ(noErr, PlatformFileFailure(nullptr, 0));
    std::filesystem::resize_file(path, (4 << 20) + 1);
    EXPECT_EQ("error " + std::to_string(fileBoundsErr), Get("DOWNLOAD"));
    char name[4096];
    EXPECT_TRUE(PlatformSettingsFailure(name, sizeof name, nullptr, 0));
    EXPECT_EQ(path, name);
}

TEST_F(UserDirectories, AreThoseThatTheUsersToolTells) {
    Write("home/.config/user-dirs.dirs",
          "# Written by a tool\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\nXDG_DOWNLOAD_DIR=\"$HOME/My \\\"own\\\" "
          "things\"\nXDG_MUSIC_DIR=\"/srv/music\"\nXDG_VIDEOS_DIR=\"/a\"\nXDG_VIDEOS_DIR=\"$HOME/b\"\n"
          "XDG_PICTURES_DIR=\"$HOME\"\n");
    for (char const* const name : {"DESKTOP", "DOWNLOAD", "MUSIC", "VIDEOS", "PICTURES"})
        EXPECT_EQ(Told(name), Get(name)) << name;
}
