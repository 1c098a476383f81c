// Special folders that the administrator of a made-up machine has named, and the cache before them.

#include "system/SpecialFolders.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/DomainsModule.h"
#include "modules/SpecialFoldersModule.h"
#include "support/Variable.h"
#include "system/Domains.h"

namespace {

constexpr OSType kFonts = 0x666F6E74, kFrameworks = 0x6672616D;

class SpecialFolderValues : public FileSystem {
  protected:
    SpecialFolderValues() { ClearSpecialFolderCaches(nullptr); }
    ~SpecialFolderValues() override { ClearSpecialFolderCaches(nullptr); }

    void Administrate(std::string const& text) {
        here.MakeFolder("etc/zelq");
        here.Write("etc/zelq/folders.conf", text);
    }
    std::string SystemFonts() { return Path(special_folder<kFonts>()); }

    Variable const machine{"ZELQ_MACHINE_ROOT", here.Path()};
};

}  // namespace

TEST_F(SpecialFolderValues, AreThoseOfTheSystemDomainWhereNoneIsNamed) {
    std::string const path = here.MakeFolder("fonts");
    Administrate("[font]\nsystem = " + path + "\n");
    EXPECT_EQ(path, SystemFonts());
    EXPECT_EQ(path, Path(special_folder_of_domain<kFonts>(domain_of_world<kSystemDomain>())));
    EXPECT_EQ(path, Path(special_folder_of_domain<kFonts>(domain{-32766})));
    EXPECT_EQ(special_folder<kFonts>(), special_folder_of_domain<kFonts>(domain{kSystemDomain}));
}

TEST_F(SpecialFolderValues, OfADomainAreAskedByIt) {
    std::string const fonts = here.MakeFolder("fonts");
    Administrate("[font]\nsystem =\nlocal = " + fonts + "\n");
    EXPECT_THROW(SystemFonts(), NoSuchObject);
    EXPECT_EQ(fonts, Path(special_folder_of_domain<kFonts>(domain{kLocalDomain})));
}

TEST_F(SpecialFolderValues, AreAnsweredFromTheCacheUntilItIsCleared) {
    std::string const path = here.MakeFolder("fonts");
    Administrate("[font]\nsystem = " + path + "\n");
    EXPECT_EQ(path, SystemFonts());
    rmdir(path.c_str());
    EXPECT_EQ(path, SystemFonts());
    EXPECT_EQ(path, Path(special_folder_of_domain<kFonts>(domain{kSystemDomain})));
    ClearSpecialFolderCaches(nullptr);
    EXPECT_THROW(SystemFonts(), NoSuchObject);
}

namespace {

// Types whose special folders are asked for, one after the other.
constexpr OSType kTypes[] = {0x6D616373, 0x616D6E75, 0x6374726C, 0x6465736B, 0x6578746E, 0x666F6E74,
                             0x70726566, 0x70726E74, 0x73747274, 0x73686466, 0x74656D70};
constexpr char const* kCodes[] = {"macs", "amnu", "ctrl", "desk", "extn", "font",
                                  "pref", "prnt", "strt", "shdf", "temp"};

}  // namespace

TEST_F(SpecialFolderValues, AreRememberedTenAtATime) {
    std::string text;
    for (char const* code : kCodes)
        text += std::string("[") + code + "]\nsystem = " + here.MakeFolder(code) + "\n";
    Administrate(text);
    for (OSType const type : kTypes) SpecialFolder(type, kSystemDomain);
    for (char const* code : kCodes) rmdir(here.Path(code).c_str());
    // The eleventh took the place of the first.
    EXPECT_THROW(SpecialFolder(kTypes[0], kSystemDomain), NoSuchObject);
    for (int i = 1; i < 11; ++i)
        EXPECT_EQ(here.Path(kCodes[i]), Path(SpecialFolder(kTypes[i], kSystemDomain)));
}

TEST_F(SpecialFolderValues, MustBeFolders) {
    SpecialFolderDomainCacheEntry entry;
    auto const at = [&](std::string const& path) { return MacintoshPlatform::FileLocation(NewURL(path)); };
    EXPECT_THROW(entry.LookupFolder(at(here.Write("file"))), NoSuchObject);
    EXPECT_THROW(entry.LookupFolder(at(here.Path("missing"))), FailedToGetFileItem);
    entry.LookupFolder(at(here.MakeFolder("folder")));
    EXPECT_EQ(here.Path("folder"), Path(entry.found));
}

TEST_F(SpecialFolderValues, OfATableWithMistakesAreAFailure) {
    Administrate("nonsense\n");
    try {
        SystemFonts();
        FAIL();
    } catch (OSError const& error) {
        EXPECT_EQ(-4270, error.Code());
    }
}

TEST_F(SpecialFolderValues, HoldFrameworksByTheirNames) {
    std::string const carbon = here.MakeFolder("frameworks/Carbon.framework"),
                      local = here.MakeFolder("local/Own.framework");
    here.MakeFolder("frameworks/Other");
    here.Write("frameworks/File.framework");
    Administrate("[fram]\nsystem = " + here.Path("frameworks") + "\nlocal = " + here.Path("local") + "\n");
    auto const named = [](std::string_view name) { return framework_folder(Bytes(name), name.size()); };
    EXPECT_EQ(carbon, Path(named("Carbon")));
    EXPECT_EQ(carbon, Path(FolderNamed("Carbon.framework", special_folder<kFrameworks>())));
    for (std::string_view const missing : {"Other", "File", "Carbon.framework", "Own", "a/b", ""})
        EXPECT_THROW(named(missing), NoSuchObject) << missing;
    EXPECT_THROW(named(std::string(260, 'a')), NoSuchObject);
    EXPECT_EQ(local, Path(framework_folder_of_domain(Bytes("Own"), 3, domain{kLocalDomain})));
}

// ---- The tables

TEST(DomainsModule, RegistersItsTableInOrder) {
    ExpectRows<DomainsModule>({"type \"domain\"", "property \"system domain\" \"system domains\": \"domain\"",
                               "property \"local domain\" \"local domains\": \"domain\"",
                               "property \"user domain\" \"user domains\": \"domain\"",
                               "property \"network domain\" \"network domains\": \"domain\"",
                               "property \"classic domain\" \"classic domains\": \"domain\"",
                               "property \"on system disk domain\" \"on system disk domains\": \"domain\"",
                               "property \"on appropriate disk domain\" \"on appropriate disk domains\": "
                               "\"domain\""});
}

TEST(DomainsModule, GivesTheCodesOfDomains) {
    DomainsModule const module;
    std::vector<std::pair<std::string, int>> const domains{{"system domain", -32766},
                                                           {"local domain", -32765},
                                                           {"user domain", -32763},
                                                           {"network domain", -32764},
                                                           {"classic domain", -32762},
                                                           {"on system disk domain", -32768},
                                                           {"on appropriate disk domain", -32767}};
    for (auto const& [phrase, code] : domains) {
        Registration const row = RegisteredAs("property \"" + phrase + "\" \"" + phrase + "s\": \"domain\"");
        Slot<domain> slot;
        row.get(slot, nullptr, nullptr, nullptr, row.context);
        EXPECT_EQ(code, slot.Value().code) << phrase;
    }
    EXPECT_EQ(2u, RegisteredAs("type \"domain\"").valueSize);
}

TEST(SpecialFoldersModule, RegistersItsTableInOrder) {
    // tests/folders/phrases.py asks each of the phrases.
    constexpr char const* phrases[] = {"system",
                                       "apple menu items",
                                       "control panels",
                                       "desktop",
                                       "extensions",
                                       "fonts",
                                       "preferences",
                                       "printmonitor documents",
                                       "startup items",
                                       "shutdown items",
                                       "temporary items",
                                       "disabled startup items",
                                       "disabled extensions",
                                       "applications",
                                       "documents",
                                       "chewable items",
                                       "application support",
                                       "text encodings",
                                       "help",
                                       "internet plugins",
                                       "modem scripts",
                                       "printer descriptions",
                                       "printer drivers",
                                       "scripting additions",
                                       "shared libraries",
                                       "voices",
                                       "control strip modules",
                                       "assistants",
                                       "utilities",
                                       "apple extras",
                                       "contextual menu items",
                                       "macos read me",
                                       "colorsync profiles",
                                       "themes",
                                       "favorites",
                                       "disabled control panels",
                                       "disabled system extensions",
                                       "disabled shutdown items",
                                       "location manager modules",
                                       "location manager preferences",
                                       "locations",
                                       "classic",
                                       "domain top",
                                       "domain library",
                                       "color sync",
                                       "printers",
                                       "speech",
                                       "carbon",
                                       "documentation",
                                       "developer docs",
                                       "developer help",
                                       "download",
                                       "user temp",
                                       "cache",
                                       "framework",
                                       "private framework",
                                       "developer",
                                       "sound",
                                       "component",
                                       "quicktime",
                                       "core services",
                                       "audio",
                                       "kernel extensions",
                                       "users",
                                       "current user",
                                       "shared",
                                       "volume settings",
                                       "locales",
                                       "receipts"};
    std::vector<std::string> rows{
        "property \"framework\" \"frameworks\" [\"string\"]: \"folder\"",
        "property \"framework\" \"frameworks\" [\"string\"] of \"domain\": \"folder\""};
    for (std::string const phrase : phrases) {
        std::string const row = "property \"" + phrase + " folder\" \"" + phrase + " folders\"";
        rows.push_back(row + ": \"folder\"");
        rows.push_back(row + " of \"domain\": \"folder\"");
    }
    rows.push_back("cache");
    ExpectRows<SpecialFoldersModule>(rows);
}

TEST(SpecialFoldersModule, ClearsTheCacheOfSpecialFolders) {
    SpecialFoldersModule const module;
    EXPECT_EQ(ClearSpecialFolderCaches, RegisteredAs("cache").clear);
}
