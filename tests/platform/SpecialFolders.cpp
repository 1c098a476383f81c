// The folders of a user and a machine that a test makes.

#include <Carbon/Folders.h>
#include <Carbon/MacErrors.h>
#include <Platform/Items.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "OwnHome.h"
#include "support/Unprivileged.h"

namespace {

constexpr OSType Code(char const* four) {
    OSType code = 0;
    for (int i = 0; i < 4; ++i) code = code << 8 | static_cast<unsigned char>(four[i]);
    return code;
}

std::string PathOf(FSRef const& reference) {
    UInt8 path[4096];
    EXPECT_EQ(noErr, FSRefMakePath(&reference, path, sizeof path));
    return reinterpret_cast<char const*>(path);
}

OSErr ErrorOf(SInt16 domain, OSType type) {
    FSRef reference;
    return FSFindFolder(domain, type, 0, &reference);
}

// The path of a folder; the code, as text, where there is none.
std::string Find(SInt16 domain, char const* type) {
    FSRef reference;
    OSErr const error = FSFindFolder(domain, Code(type), 0, &reference);
    return error == noErr ? PathOf(reference) : std::to_string(error);
}

// /lib is a link on most machines.
std::string PathWithoutLinks(std::string const& path) {
    char* const real = realpath(path.c_str(), nullptr);
    std::string const result = real != nullptr ? real : "";
    free(real);
    return result;
}

std::string const kNone = std::to_string(fnfErr);

class SpecialFolders : public OwnHome {
  protected:
    std::string Make(std::string const& name) const { return here.MakeFolder(name); }
    void Administrate(std::string_view text) const { Write("machine/etc/zelq/folders.conf", text); }

    Variable const data{"XDG_DATA_HOME", std::nullopt};
    Variable const caches{"XDG_CACHE_HOME", std::nullopt};
    Variable const running{"XDG_RUNTIME_DIR", std::nullopt};
    Variable const temporary{"TMPDIR", std::nullopt};
};

}  // namespace

TEST_F(SpecialFolders, OfTheSystemAreThoseOfTheFileHierarchy) {
    EXPECT_EQ("/usr", Find(kSystemDomain, "macs"));
    EXPECT_EQ("/etc", Find(kSystemDomain, "pref"));
    EXPECT_EQ("/usr/local", Find(kLocalDomain, "dtop"));
    EXPECT_EQ("/tmp", Find(kSystemDomain, "temp"));
    EXPECT_EQ("/usr/bin", Find(kSystemDomain, "uti\xC4"));
    for (char const* type : {"font", "usrs", "temp", "sdat", "cach"}) {
        EXPECT_EQ(kNone, Find(kNetworkDomain, type)) << type;
        EXPECT_EQ(kNone, Find(kClassicDomain, type)) << type;
    }
    EXPECT_EQ(kNone, Find(kClassicDomain, "macs"));
    EXPECT_EQ(kNone, Find(kUserDomain, "macs"));
    EXPECT_EQ(kNone, Find(kSystemDomain, "none"));
}

TEST_F(SpecialFolders, OfTheUserAreThoseOfTheDesktopStandards) {
    EXPECT_EQ(kNone, Find(kUserDomain, "pref"));
    std::string const preferences = Make("home/.config"), fonts = Make("home/.local/share/fonts");
    EXPECT_EQ(preferences, Find(kUserDomain, "pref"));
    EXPECT_EQ(fonts, Find(kUserDomain, "font"));
    std::string const elsewhere = Make("elsewhere");
    userFolder.Set(elsewhere);
    EXPECT_EQ(elsewhere, Find(kUserDomain, "pref"));
    userFolder.Set("relative");
    EXPECT_EQ(preferences, Find(kUserDomain, "pref"));
    EXPECT_EQ(kNone, Find(kUserDomain, "cach"));
    std::string const cache = Make("home/.cache");
    EXPECT_EQ(cache, Find(kUserDomain, "cach"));
}

TEST_F(SpecialFolders, AreTheFirstOnesThatAreThere) {
    std::string const second = Make("home/.fonts");
    EXPECT_EQ(second, Find(kUserDomain, "font"));
    std::string const first = Make("home/.local/share/fonts");
    EXPECT_EQ(first, Find(kUserDomain, "font"));
    rmdir(first.c_str());
    Write("home/.local/share/fonts", "no folder");
    EXPECT_EQ(second, Find(kUserDomain, "font"));
}

TEST_F(SpecialFolders, ThatTheUserChoseAreTheSameInEveryDomain) {
    std::string const desktop = Make("home/Schreibtisch"), downloads = Make("loads"), own = here.Path("home");
    Write("home/.config/user-dirs.dirs",
          "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_DOWNLOAD_DIR=\"" + downloads + "\"\n");
    std::string const running_ = Make("run");
    running.Set(running_);
    for (SInt16 const domain : {kOnSystemDisk, kOnAppropriateDisk, kSystemDomain, kLocalDomain,
                                kNetworkDomain, kUserDomain, kClassicDomain}) {
        EXPECT_EQ(desktop, Find(domain, "desk"));
        EXPECT_EQ(downloads, Find(domain, "issd"));
        EXPECT_EQ(own, Find(domain, "cusr"));
        EXPECT_EQ(running_, Find(domain, "utmp"));
        EXPECT_EQ(kNone, Find(domain, "docs"));
    }
    std::string const documents = Make("home/Documents");
    EXPECT_EQ(documents, Find(kSystemDomain, "docs"));
}

TEST_F(SpecialFolders, OfTheDisksAreThoseOfTheUsualDomain) {
    for (SInt16 const disk : {kOnSystemDisk, kOnAppropriateDisk}) {
        EXPECT_EQ("/usr", Find(disk, "macs"));
        EXPECT_EQ("/usr/local/share", Find(disk, "asup"));
        EXPECT_EQ(here.Path("home"), Find(disk, "cusr"));
        EXPECT_EQ("/usr", Find(disk, "dtop"));
    }
}

TEST_F(SpecialFolders, OfAVolumeAreThoseThatLieOnIt) {
    EXPECT_EQ(nsvErr, ErrorOf(-1, Code("macs")));
    EXPECT_EQ(nsvErr, ErrorOf(0, Code("macs")));
    Administrate("[macs]\nsystem = /\n");
    EXPECT_EQ("/", Find(-100, "macs"));
    Administrate("[macs]\nsystem = /proc\n");
    EXPECT_EQ(kNone, Find(-100, "macs"));
}

TEST_F(SpecialFolders, OfExtensionsAreThoseOfTheRunningKernel) {
    Write("machine/proc/sys/kernel/osrelease", "9.9.9-test\n");
    std::string const modules = Make("modules/9.9.9-test");
    Administrate("[extn]\nsystem = " + here.Path("modules") + "/$RELEASE\n");
    EXPECT_EQ(modules, Find(kSystemDomain, "extn"));
    machine.Set(std::nullopt);
    utsname kernel;
    ASSERT_EQ(0, uname(&kernel));
    std::string const folder = std::string("/lib/modules/") + kernel.release;
    struct stat status;
    bool const isThere = stat(folder.c_str(), &status) == 0;
    EXPECT_EQ(isThere ? PathWithoutLinks(folder) : kNone, Find(kSystemDomain, "extn"));
}

TEST_F(SpecialFolders, OfGnustepAreWhereItsSettingsSay) {
    std::string const system = Make("gs/Frameworks"), own = Make("home/Lib/Frameworks");
    Write("GNUstep.conf", "GNUSTEP_SYSTEM_LIBRARY=" + here.Path("gs") + "\nGNUSTEP_USER_DIR_LIBRARY=Lib\n");
    EXPECT_EQ(system, Find(kSystemDomain, "fram"));
    EXPECT_EQ(own, Find(kUserDomain, "fram"));
    std::string const usual = Make("home/GNUstep/Library/Frameworks");
    Write("GNUstep.conf", "GNUSTEP_SYSTEM_LIBRARY=" + here.Path("gs") + "\n# and no folder of the user's\n");
    EXPECT_EQ(usual, Find(kUserDomain, "fram"));
}

TEST_F(SpecialFolders, OfDisabledItemsLieBesideTheOthers) {
    EXPECT_EQ(kNone, Find(kUserDomain, "strD"));
    std::string const disabled = Make("home/.config/autostart (Disabled)");
    EXPECT_EQ(disabled, Find(kUserDomain, "strD"));
}

TEST_F(SpecialFolders, OfDisabledItemsLieBesideTheFolderThatIsThere) {
    std::string const first = Make("first (Disabled)"), second = Make("second (Disabled)");
    Administrate("[strt]\nuser = " + here.Path("first") + "\nuser = " + here.Path("second") + "\n");
    EXPECT_EQ(first, Find(kUserDomain, "strD"));
    Make("second");
    EXPECT_EQ(second, Find(kUserDomain, "strD"));
    rmdir(second.c_str());
    EXPECT_EQ(kNone, Find(kUserDomain, "strD"));
}

TEST_F(SpecialFolders, AreReplacedByTheAdministrator) {
    std::string const mine = Make("mine"), other = Make("other");
    Administrate("[font]\nuser = " + mine + "\n");
    EXPECT_EQ(mine, Find(kUserDomain, "font"));
    EXPECT_EQ("/usr", Find(kSystemDomain, "macs"));
    Administrate("[font]\nuser = " + other + "\n# and longer\n");
    EXPECT_EQ(other, Find(kUserDomain, "font"));
    unlink(here.Path("machine/etc/zelq/folders.conf").c_str());
    EXPECT_EQ(kNone, Find(kUserDomain, "font"));
}

TEST_F(SpecialFolders, OfAMacTreeNeedThePlacesOfItsDomainsOnly) {
    std::string const mac = here.MakeFolder("mac");
    std::string const fonts = Make("mac/Library/Fonts"), system = Make("mac/System/Library/Fonts"),
                      panels = Make("mac/System Folder/Control Panels"), users = Make("mac/Users"),
                      shared = Make("mac/Users/Shared"), developer = Make("mac/Developer"),
                      off = Make("mac/System Folder/Control Panels (Disabled)");
    Administrate("[variables]\nMAC_LOCAL = " + mac + "\nMAC_SYSTEM = " + mac +
                 "/System\nMAC_CLASSIC = " + mac + "/System Folder\n");
    EXPECT_EQ(fonts, Find(kLocalDomain, "font"));
    EXPECT_EQ(system, Find(kSystemDomain, "font"));
    EXPECT_EQ(mac + "/System", Find(kSystemDomain, "macs"));
    for (SInt16 const domain : {kSystemDomain, kLocalDomain}) {
        EXPECT_EQ(users, Find(domain, "usrs"));
        EXPECT_EQ(shared, Find(domain, "sdat"));
        EXPECT_EQ(developer, Find(domain, "devf"));
    }
    EXPECT_EQ(users, Find(kUserDomain, "usrs"));
    EXPECT_EQ(panels, Find(kClassicDomain, "ctrl"));
    EXPECT_EQ(off, Find(kClassicDomain, "ctrD"));
}

TEST_F(SpecialFolders, AreRefusedWhileTheAdministratorsFileHasMistakes) {
    Administrate("[macs]\nsytem = /opt\n[fnot]\n");
    EXPECT_EQ(badFolderDescErr, ErrorOf(kUserDomain, Code("font")));
    char file[4096], reason[500];
    EXPECT_TRUE(PlatformSettingsFailure(file, sizeof file, reason, sizeof reason));
    EXPECT_EQ(here.Path("machine/etc/zelq/folders.conf"), file);
    EXPECT_STREQ(
        "line 2: \"sytem\" is none of the domains system, local, network, user and classic, nor every, "
        "usual, "
        "pair; line 3: there is no type of folder \"fnot\"",
        reason);
    PlatformForgetFileFailure();
    EXPECT_FALSE(PlatformSettingsFailure(file, sizeof file, nullptr, 0));
    EXPECT_STREQ("", file);
    Administrate("");
    EXPECT_EQ("/usr", Find(kSystemDomain, "macs"));
}

TEST_F(SpecialFolders, AreRefusedWhenTheAdministratorsFileIsNoFile) {
    Make("machine/etc/zelq/folders.conf");
    EXPECT_EQ(badFolderDescErr, ErrorOf(kSystemDomain, Code("macs")));
    char reason[500];
    EXPECT_TRUE(PlatformSettingsFailure(nullptr, 0, reason, sizeof reason));
    EXPECT_STREQ("it is no file", reason);
}

TEST_F(SpecialFolders, TellOfTenMistakesAtMost) {
    std::string text;
    for (int i = 0; i < 12; ++i) text += "nonsense\n";
    Administrate(text);
    EXPECT_EQ(badFolderDescErr, ErrorOf(kSystemDomain, Code("macs")));
    char reason[2000];
    PlatformSettingsFailure(nullptr, 0, reason, sizeof reason);
    EXPECT_TRUE(std::string_view(reason).ends_with(
        "line 10: \"nonsense\" is neither [TYPE] nor KEY = VALUE; and perhaps more"))
        << reason;
}

// Another one of the list is not the folder that is meant.
TEST_F(SpecialFolders, ThatMayNotBeLookedAtFail) {
    Make("home/Desktop");
    Make("locked/Desk");
    Write("home/.config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"" + here.Path("locked/Desk") + "\"\n");
    std::filesystem::permissions(here.Path(), std::filesystem::perms::all);
    EXPECT_EQ(here.Path("locked/Desk"), Find(kUserDomain, "desk"));
    std::filesystem::permissions(here.Path("locked"), std::filesystem::perms::none);
    Unprivileged const user;
    PlatformForgetFileFailure();
    EXPECT_EQ(std::to_string(afpAccessDenied), Find(kUserDomain, "desk"));
    char name[4096];
    EXPECT_EQ(afpAccessDenied, PlatformFileFailure(name, sizeof name));
    EXPECT_EQ(here.Path("locked/Desk"), name);
}

TEST_F(SpecialFolders, OfDisabledItemsBesideOneThatMayNotBeLookedAtFail) {
    std::string const locked = Make("locked/Startup"), other = Make("other");
    Make("other (Disabled)");
    Administrate("[strt]\nsystem = " + locked + "\nsystem = " + other + "\n");
    std::filesystem::permissions(here.Path(), std::filesystem::perms::all);
    std::filesystem::permissions(here.Path("locked"), std::filesystem::perms::none);
    Unprivileged const user;
    EXPECT_EQ(std::to_string(afpAccessDenied), Find(kSystemDomain, "strD"));
}

TEST_F(SpecialFolders, ThatTheUsersChoicesCannotTellFail) {
    Make("home/Desktop");
    std::filesystem::permissions(here.Path(), std::filesystem::perms::all);
    std::filesystem::permissions(Write("home/.config/user-dirs.dirs", ""), std::filesystem::perms::none);
    Unprivileged const user;
    EXPECT_EQ(std::to_string(afpAccessDenied), Find(kUserDomain, "desk"));
}

TEST_F(SpecialFolders, AreNeverMade) {
    FSRef reference;
    EXPECT_EQ(fnfErr, FSFindFolder(kUserDomain, Code("pref"), 1, &reference));
    EXPECT_NE(0, access(here.Path("home/.config").c_str(), F_OK));
    EXPECT_EQ(paramErr, FSFindFolder(kUserDomain, Code("pref"), 1, nullptr));
}
