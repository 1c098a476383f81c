// Preferences as they are asked for by key and application.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include <Carbon/Carbon.h>
#include <Platform/Items.h>

#include "platform/ListVerbs.h"
#include "platform/OwnHome.h"
#include "support/Unprivileged.h"

namespace {

class Preferences : public OwnHome {
  protected:
    static CFPropertyListRef Copy(std::string_view key, std::string_view application) {
        Owned<CFStringRef> const name(NewString(key)), domain(NewString(application));
        return CFPreferencesCopyAppValue(name, domain);
    }
    static std::string Get(std::string_view key, std::string_view application = "org.example.a") {
        Owned<CFPropertyListRef> const value(Copy(key, application));
        return Show(value);
    }
    // Waits until a file counts as one that does not change any more.
    static void LetSettle() { std::this_thread::sleep_for(std::chrono::milliseconds(150)); }
};

}  // namespace

TEST_F(Preferences, AreInTheUsersConfiguration) {
    EXPECT_EQ("(null)", Get("k"));
    Write("home/.config/org.example.a.plist", "{k = 1; l = (a, <0f>);}");
    EXPECT_EQ("1", Get("k"));
    EXPECT_EQ("(a,<0f>)", Get("l"));
    EXPECT_EQ("(null)", Get("m"));
    EXPECT_EQ("(null)", Get("k", "org.example.b"));
}

TEST_F(Preferences, AreThoseOfTheFirstDomainWithTheKey) {
    Write("machine/etc/machine-id", "1f\n");
    // From the last one to the first.
    char const* const files[] = {"xdg/.GlobalPreferences.plist",
                                 "xdg/org.example.a.plist",
                                 "home/GNUstep/Defaults/NSGlobalDomain.plist",
                                 "home/Library/Preferences/.GlobalPreferences.plist",
                                 "home/.config/.GlobalPreferences.plist",
                                 "home/Library/Preferences/ByHost/.GlobalPreferences.1f.plist",
                                 "home/GNUstep/Defaults/org.example.a.plist",
                                 "home/Library/Preferences/org.example.a.plist",
                                 "home/.config/org.example.a.plist",
                                 "home/Library/Preferences/ByHost/org.example.a.1f.plist"};
    for (char const* const file : files) {
        Write(file, "{k = \"" + std::string(file) + "\"; \"only " + file + "\" = yes;}");
        EXPECT_EQ(file, Get("k"));
    }
    for (std::string const file : files) EXPECT_EQ("yes", Get("only " + file)) << file;
}

TEST_F(Preferences, AreOwnedByWhoAsksForThem) {
    Write("home/.config/org.example.a.plist", "{k = (a);}");
    Owned<CFPropertyListRef> const value(Copy("k", "org.example.a"));
    std::filesystem::remove(here.Path("home/.config/org.example.a.plist"));
    EXPECT_EQ("(null)", Get("k"));
    EXPECT_EQ("(a)", Show(value));
}

TEST_F(Preferences, AreInListsOfAnyFormat) {
    Write("home/.config/org.example.a.plist", "<plist><dict><key>k</key><integer>5</integer></dict></plist>");
    EXPECT_EQ("5", Get("k"));
}

TEST_F(Preferences, OfFilesWithoutADictionaryAreThoseOfTheNextOne) {
    Write("xdg/org.example.a.plist", "{k = 1;}");
    for (char const* const content : {"{k = ", "(k, 2)", "\xFF", ""}) {
        Write("home/.config/org.example.a.plist", content);
        EXPECT_EQ("1", Get("k")) << content;
    }
    std::filesystem::remove(here.Path("home/.config/org.example.a.plist"));
    here.MakeFolder("home/.config/org.example.a.plist");
    EXPECT_EQ("1", Get("k"));
}

TEST_F(Preferences, OfFilesThatMayNotBeReadAreThoseOfTheNextOne) {
    std::filesystem::permissions(here.Path(), std::filesystem::perms::all);
    Write("xdg/org.example.a.plist", "{k = 1;}");
    std::filesystem::permissions(Write("home/.config/org.example.a.plist", "{k = 2;}"),
                                 std::filesystem::perms::none);
    Unprivileged const user;
    EXPECT_EQ("1", Get("k"));
}

TEST_F(Preferences, TellOfFilesThatHoldNoList) {
    std::string const file = Write("home/.config/org.example.a.plist", "{k");
    for (int time = 0; time < 2; ++time) {
        PlatformForgetFileFailure();
        EXPECT_EQ("(null)", Get("k"));
        char path[4096], reason[4096];
        EXPECT_TRUE(PlatformPropertyListFailure(path, sizeof path, reason, sizeof reason));
        EXPECT_EQ(file, path);
        EXPECT_EQ("line 1: \"=\" or \";\" is expected behind a key, not the end of the text",
                  std::string(reason));
    }
}

TEST_F(Preferences, ThatAreMissingAreNoFailures) {
    PlatformForgetFileFailure();
    EXPECT_EQ("(null)", Get("k"));
    EXPECT_EQ(noErr, PlatformFileFailure(nullptr, 0));
}

TEST_F(Preferences, OfNamesThatNoFileCanHaveAreNone) {
    Write("home/.config/.plist", "{k = 1;}");
    Write("home/.config/a/b.plist", "{k = 1;}");
    Write("home/.config/.GlobalPreferences.plist", "{k = 1;}");
    EXPECT_EQ("(null)", Get("k", ""));
    EXPECT_EQ("(null)", Get("k", "a/b"));
    EXPECT_EQ("(null)", Get("k", std::string_view("a\0b", 3)));
    EXPECT_EQ("(null)", Get("k", std::string(250, 'a')));
    EXPECT_EQ("1", Get("k", std::string(249, 'a')));
}

TEST_F(Preferences, OfAnyNameAreInFilesInUtf8) {
    Write("home/.config/\u00E9t\u00E9.plist", "{k = 1;}");
    EXPECT_EQ("1", Get("k", "\u00E9t\u00E9"));
}

TEST_F(Preferences, AreReadAnewWhenTheFileHasChanged) {
    std::string const file = Write("home/.config/org.example.a.plist", "{k = 1;}");
    EXPECT_EQ("1", Get("k"));
    Write("home/.config/org.example.a.plist", "{k = 2;}");
    EXPECT_EQ("2", Get("k"));
    LetSettle();
    EXPECT_EQ("2", Get("k"));
    EXPECT_EQ("2", Get("k"));
    std::filesystem::rename(Write("home/other", "{k = 3;}"), file);
    EXPECT_EQ("3", Get("k"));
    std::filesystem::remove(file);
    EXPECT_EQ("(null)", Get("k"));
}

TEST_F(Preferences, AreReadAnewHoweverFastTheFileChanges) {
    for (int i = 10; i < 30; ++i) {
        Write("home/.config/org.example.a.plist", "{k = " + std::to_string(i) + ";}");
        EXPECT_EQ(std::to_string(i), Get("k"));
    }
}

TEST_F(Preferences, OfAFileThatDoesNotChangeAreKept) {
    Write("home/.config/org.example.a.plist", "{k = (a);}");
    LetSettle();
    Owned<CFPropertyListRef> const first(Copy("k", "org.example.a")), second(Copy("k", "org.example.a"));
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(first, second);
}

TEST_F(Preferences, FollowTheEnvironmentOfEachCall) {
    Write("one/org.example.a.plist", "{k = 1;}");
    Write("two/org.example.a.plist", "{k = 2;}");
    userFolder.Set(here.Path("one"));
    EXPECT_EQ("1", Get("k"));
    userFolder.Set("one");
    EXPECT_EQ("(null)", Get("k"));
    commonFolders.Set("one:" + here.Path("two") + ":" + here.Path("one"));
    EXPECT_EQ("2", Get("k"));
    Write("other/.config/org.example.a.plist", "{k = 3;}");
    home.Set(here.Path("other"));
    EXPECT_EQ("3", Get("k"));
}

TEST_F(Preferences, OfGnustepAreWhereItsSettingsSay) {
    Write("home/mine/org.example.a.plist", "{k = 1;}");
    Write("GNUstep.conf", "# Settings\nGNUSTEP_USER_DEFAULTS_DIR=mine\n");
    EXPECT_EQ("1", Get("k"));
}

TEST_F(Preferences, CanBeAskedForByManyThreads) {
    Write("home/.config/org.example.a.plist", "{k = (a);}");
    LetSettle();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int j = 0; j < 200; ++j) EXPECT_EQ("(a)", Get("k"));
        });
    }
    for (std::thread& thread : threads) thread.join();
}

TEST_F(Preferences, ThatGnustepsToolHasWrittenAreRead) {
    ASSERT_EQ(0, std::system("command -v defaults > /dev/null")) << "needs the package gnustep-base-runtime";
    // The tool does not ask for $HOME.
    Write("GNUstep.conf", "GNUSTEP_USER_DEFAULTS_DIR=" + here.MakeFolder("defaults") + "\n");
    auto const set = [](std::string const& arguments) {
        EXPECT_EQ(0, std::system(("defaults write " + arguments).c_str())) << arguments;
    };
    set("org.example.a name 'a \"text\" \u00E9'");
    set("org.example.a tree '{list = (one, \"\", <0fbd77>); key = \"a b\";}'");
    set("org.example.a typed '{i = <*I5>; r = <*R1.5>; b = <*BY>; d = <*D2001-01-01 00:00:00 +0000>;}'");
    set("NSGlobalDomain everywhere yes");
    EXPECT_EQ("a \"text\" \u00E9", Get("name"));
    EXPECT_EQ("{key=a b;list=(one,,<0fbd77>)}", Get("tree"));
    EXPECT_EQ("{b=true;d=@0;i=5;r=1.5}", Get("typed"));
    EXPECT_EQ("yes", Get("everywhere"));
}
