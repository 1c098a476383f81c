// Bundles: which folders are one, and what they tell.

#include <dlfcn.h>
#include <link.h>

#include <filesystem>
#include <thread>
#include <vector>

#include "platform/ListVerbs.h"
#include "platform/OwnHome.h"
#include "support/OwnPath.h"

namespace {

class Bundles : public OwnHome {
  protected:
    /// The bundle of a folder of the test's.
    CFBundleRef BundleAt(std::string const& name) const {
        Owned<CFURLRef> const url(NewURL(here.Path(name), true));
        return CFBundleCreate(kCFAllocatorDefault, url);
    }
    /// Whether a folder is a bundle.
    bool IsBundle(std::string const& name) const {
        Owned<CFBundleRef> const bundle(BundleAt(name));
        return bundle != nullptr;
    }
    /// The information dictionary, in short; "(null)" of a folder that is no bundle.
    std::string Information(std::string const& name) const {
        Owned<CFBundleRef> const bundle(BundleAt(name));
        return bundle == nullptr ? "(null)" : Show(CFBundleGetInfoDictionary(bundle));
    }
    std::string Local(std::string const& name) const {
        Owned<CFBundleRef> const bundle(BundleAt(name));
        return bundle == nullptr ? "(no bundle)" : Show(CFBundleGetLocalInfoDictionary(bundle));
    }
    /// "type creator"
    std::string Codes(std::string const& name) const {
        Owned<CFBundleRef> const bundle(BundleAt(name));
        UInt32 type = 1, creator = 1;
        CFBundleGetPackageInfo(bundle, &type, &creator);
        return Text(type) + " " + Text(creator);
    }
    UInt32 VersionWith(std::string const& information) const {
        Write("V.app/Contents/Info.plist", information);
        Owned<CFBundleRef> const bundle(BundleAt("V.app"));
        return CFBundleGetVersionNumber(bundle);
    }
    static CFBundleRef Identified(std::string_view identifier) {
        Owned<CFStringRef> const text(NewString(identifier));
        return CFBundleGetBundleWithIdentifier(text);
    }

  private:
    static std::string Text(UInt32 code) {
        std::string text;
        for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(code >> shift);
        return text;
    }
};

// The path of a library that is loaded.
std::string PathOfLibrary(char const* name) {
    void* const library = dlopen(name, RTLD_NOW);
    link_map* map = nullptr;
    EXPECT_EQ(0, dlinfo(library, RTLD_DI_LINKMAP, &map));
    std::string path = map->l_name;
    dlclose(library);
    return path;
}

}  // namespace

TEST_F(Bundles, HaveTheirDictionaryInOneOfFourPlaces) {
    Write("a/Contents/Info.plist", "{a = contents;}");
    Write("b/Resources/Info.plist", "{a = old;}");
    Write("c/Support Files/Info.plist", "{a = support;}");
    Write("d/Info.plist", "{a = flat;}");
    EXPECT_EQ("{a=contents}", Information("a"));
    EXPECT_EQ("{a=old}", Information("b"));
    EXPECT_EQ("{a=support}", Information("c"));
    EXPECT_EQ("{a=flat}", Information("d"));
}

TEST_F(Bundles, AreNoOtherFolders) {
    here.MakeFolder("empty/Contents/Resources");
    Write("deep/Contents/Other/Info.plist", "{}");
    here.MakeFolder("folder/Info.plist");
    Write("file", "{}");
    for (char const* const name : {"empty", "deep", "folder", "file", "missing"})
        EXPECT_FALSE(IsBundle(name)) << name;
}

TEST_F(Bundles, MayHaveAPackageFileOnly) {
    Write("a/Contents/PkgInfo", "");
    Write("b/PkgInfo", "");
    Write("c/Support Files/PkgInfo", "");
    for (char const* const name : {"a", "b", "c"}) EXPECT_EQ("{}", Information(name)) << name;
}

TEST_F(Bundles, PreferADictionaryToAPackageFile) {
    Write("a/Contents/PkgInfo", "ABCDefgh");
    Write("a/Resources/Info.plist", "{a = old;}");
    EXPECT_EQ("{a=old}", Information("a"));
    EXPECT_EQ("BNDL ????", Codes("a"));
}

TEST_F(Bundles, OfFrameworksPreferTheOldLayout) {
    for (std::string const name : {"a.framework", "a.app"}) {
        Write(name + "/Contents/Info.plist", "{a = contents;}");
        Write(name + "/Resources/Info.plist", "{a = old;}");
    }
    EXPECT_EQ("{a=old}", Information("a.framework"));
    EXPECT_EQ("{a=contents}", Information("a.app"));
}

TEST_F(Bundles, OfFrameworksHaveTheCurrentVersion) {
    Write("a.framework/Versions/B/Resources/Info.plist", "{a = b;}");
    here.Link("a.framework/Versions/Current", "B");
    Write("a.app/Versions/Current/Resources/Info.plist", "{a = b;}");
    EXPECT_EQ("{a=b}", Information("a.framework"));
    EXPECT_FALSE(IsBundle("a.app"));
}

TEST_F(Bundles, TakeTheFirstOfThreeNamesInAnyCase) {
    Write("a/Info-gnustep.plist", "{a = gnustep;}");
    EXPECT_EQ("{a=gnustep}", Information("a"));
    Write("a/INFO.plist", "{a = info;}");
    EXPECT_EQ("{a=info}", Information("a"));
    Write("a/Info.plist", "{a = usual;}");
    EXPECT_EQ("{a=usual}", Information("a"));
    Write("a/info-MacOS.plist", "{a = macos;}");
    EXPECT_EQ("{a=macos}", Information("a"));
}

TEST_F(Bundles, HaveAnEmptyDictionaryWhereItCannotBeRead) {
    Write("a/Contents/Info.plist", "{a = ");
    Write("b/Contents/Info.plist", "(a, b)");
    EXPECT_EQ("{}", Information("a"));
    EXPECT_EQ("{}", Information("b"));
}

TEST_F(Bundles, AreTheSameObjectWhileTheyExist) {
    Write("a/Info.plist", "{a = 1;}");
    here.Link("link", "a");
    CFBundleRef const bundle = BundleAt("a");
    EXPECT_EQ(1, CFGetRetainCount(bundle));
    Write("a/Info.plist", "{a = 2;}");
    Owned<CFBundleRef> const again(BundleAt("a")), linked(BundleAt("link"));
    EXPECT_EQ(bundle, again);
    EXPECT_EQ(bundle, linked);
    EXPECT_EQ(3, CFGetRetainCount(bundle));
    EXPECT_EQ("{a=1}", Show(CFBundleGetInfoDictionary(again)));
    CFRelease(bundle);
}

TEST_F(Bundles, AreMadeAnewWhenTheyAreGone) {
    Write("a/Info.plist", "{a = 1;}");
    EXPECT_EQ("{a=1}", Information("a"));
    Write("a/Info.plist", "{a = 2;}");
    EXPECT_EQ("{a=2}", Information("a"));
}

TEST_F(Bundles, AreNotThoseOfFoldersThatAreGone) {
    Write("a/Info.plist", "{a = 1;}");
    Owned<CFBundleRef> const bundle(BundleAt("a"));
    // File systems like to give the same number to the next folder.
    std::filesystem::remove_all(here.Path("a"));
    Write("b/Info.plist", "{a = 2;}");
    EXPECT_EQ("{a=2}", Information("b"));
}

TEST_F(Bundles, HaveATypeAndEqualThemselvesOnly) {
    Write("a/Info.plist", "{a = 1;}");
    Write("b/Info.plist", "{a = 1;}");
    Owned<CFBundleRef> const one(BundleAt("a")), other(BundleAt("b"));
    EXPECT_EQ(CFBundleGetTypeID(), CFGetTypeID(one));
    EXPECT_NE(CFBundleGetTypeID(), CFURLGetTypeID());
    EXPECT_TRUE(CFEqual(one, one));
    EXPECT_FALSE(CFEqual(one, other));
    EXPECT_EQ(CFHash(one), CFHash(one));
}

TEST_F(Bundles, CanBeMadeAndEndedByManyThreads) {
    Write("a/Info.plist", "{CFBundleIdentifier = org.example.threads;}");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this] {
            for (int j = 0; j < 200; ++j) {
                Owned<CFBundleRef> const bundle(BundleAt("a"));
                EXPECT_EQ(bundle, Identified("org.example.threads"));
                EXPECT_EQ("(null)", Show(CFBundleGetLocalInfoDictionary(bundle)));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(nullptr, Identified("org.example.threads"));
}

TEST_F(Bundles, AreFoundByIdentifierWhileTheyExist) {
    Write("a/Info.plist", "{CFBundleIdentifier = org.example.a;}");
    EXPECT_EQ(nullptr, Identified("org.example.a"));
    {
        Owned<CFBundleRef> const bundle(BundleAt("a"));
        EXPECT_EQ(bundle, Identified("org.example.a"));
        EXPECT_EQ(nullptr, Identified("org.example.A"));
        EXPECT_EQ(1, CFGetRetainCount(bundle));
    }
    EXPECT_EQ(nullptr, Identified("org.example.a"));
}

TEST_F(Bundles, OfOneIdentifierAreChosenByVersionAndAge) {
    Write("a/Info.plist", "{CFBundleIdentifier = org.example.a; CFBundleVersion = \"1.2\";}");
    Write("b/Info.plist", "{CFBundleIdentifier = org.example.a; CFBundleVersion = \"1.10b\";}");
    Write("c/Info.plist", "{CFBundleIdentifier = org.example.a; CFBundleVersion = \"1.2f\";}");
    Owned<CFBundleRef> const c(BundleAt("c")), a(BundleAt("a")), b(BundleAt("b"));
    EXPECT_EQ(a, Identified("org.example.a"));
    Write("d/Info.plist", "{CFBundleIdentifier = org.example.a; CFBundleVersion = \"1.3\";}");
    Owned<CFBundleRef> const d(BundleAt("d"));
    EXPECT_EQ(d, Identified("org.example.a"));
}

TEST_F(Bundles, OfLoadedLibrariesAreFoundAndKept) {
    Write("Plug.framework/Versions/A/Resources/Info.plist", "{CFBundleIdentifier = org.example.plug;}");
    here.Link("Plug.framework/Resources", "Versions/A/Resources");
    std::string const library = here.Path("Plug.framework/Versions/A/Plug");
    std::filesystem::copy_file(PathOfLibrary("libm.so.6"), library);
    EXPECT_EQ(nullptr, Identified("org.example.plug"));
    void* const loaded = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(nullptr, loaded) << dlerror();
    CFBundleRef const bundle = Identified("org.example.plug");
    EXPECT_NE(nullptr, bundle);
    dlclose(loaded);
    EXPECT_EQ(bundle, Identified("org.example.plug"));
}

// The next test copies the program to where it is in a bundle.
TEST_F(Bundles, KnowWhetherTheProgramLiesInOne) {
    bool const liesInOne = ownPath.parent_path().filename() == "Linux";
    EXPECT_EQ(liesInOne, Identified("org.example.program") != nullptr);
}

TEST_F(Bundles, OfTheProgramAreFound) {
    Write("P.app/Contents/Info.plist", "{CFBundleIdentifier = org.example.program;}");
    std::string const program = here.MakeFolder("P.app/Contents/Linux") + "/p";
    std::filesystem::copy_file(ownPath, program);
    // The program looks for its libraries from where it is.
    Dl_info platform;
    ASSERT_NE(0, dladdr(reinterpret_cast<void*>(&CFBundleGetTypeID), &platform));
    Variable const libraries("LD_LIBRARY_PATH",
                             std::filesystem::canonical(platform.dli_fname).parent_path().string());
    std::string const output = here.Path("output");
    std::string const command = program + " --gtest_filter='*KnowWhetherTheProgramLiesInOne' > " + output;
    EXPECT_EQ(0, std::system(command.c_str())) << FileText(output);
    EXPECT_THAT(FileText(output), testing::HasSubstr("1 test"));
}

TEST_F(Bundles, PreferTheNumericVersion) {
    EXPECT_EQ(0x01234567u, VersionWith("{CFBundleNumericVersion = <*I19088743>; CFBundleVersion = 9;}"));
    EXPECT_EQ(0x01238000u, VersionWith("{CFBundleNumericVersion = 1.2.3; CFBundleVersion = 9;}"));
    EXPECT_EQ(0x09008000u, VersionWith("{CFBundleVersion = 9; CFBundleShortVersionString = 8;}"));
    EXPECT_EQ(9u, VersionWith("{CFBundleVersion = <*I9>;}"));
    EXPECT_EQ(0xFFFFFFFEu, VersionWith("{CFBundleVersion = <*I-2>;}"));
    EXPECT_EQ(7u, VersionWith("{CFBundleVersion = <*I4294967303>;}"));
    EXPECT_EQ(0u, VersionWith("{CFBundleVersion = (1);}"));
    EXPECT_EQ(0u, VersionWith("{CFBundleNumericVersion = (1); CFBundleVersion = 9;}"));
    EXPECT_EQ(0u, VersionWith("{CFBundleShortVersionString = 8;}"));
}

TEST_F(Bundles, HaveTheCodesOfTheirPackageFile) {
    Write("a/Contents/PkgInfo", "APPLttxt and more");
    Write("a/Contents/Info.plist", "{CFBundlePackageType = BNDL; CFBundleSignature = abcd;}");
    EXPECT_EQ("APPL ttxt", Codes("a"));
}

TEST_F(Bundles, HaveTheCodesOfTheirDictionary) {
    Write("a.app/Contents/PkgInfo", "APPLttx");
    Write("a.app/Contents/Info.plist", "{CFBundlePackageType = BNDL; CFBundleSignature = \"\u00E9bcd\";}");
    EXPECT_EQ(
        "BNDL \x8E"
        "bcd",
        Codes("a.app"));
    Write("b.app/Contents/Info.plist", "{CFBundlePackageType = BND; CFBundleSignature = \"\u4E00bcd\";}");
    EXPECT_EQ("APPL ????", Codes("b.app"));
    Write("c.app/Contents/Info.plist", "{CFBundlePackageType = BNDLE; CFBundleSignature = (a);}");
    EXPECT_EQ("APPL ????", Codes("c.app"));
}

TEST_F(Bundles, HaveTheTypeOfTheirName) {
    for (std::string const name : {"a.app", "a.debug", "a.profile", "a.service", "a.framework", "a.b", "a"})
        Write(name + "/Info.plist", "{}");
    for (char const* const name : {"a.app", "a.debug", "a.profile", "a.service"})
        EXPECT_EQ("APPL ????", Codes(name)) << name;
    EXPECT_EQ("FMWK ????", Codes("a.framework"));
    EXPECT_EQ("BNDL ????", Codes("a.b"));
    EXPECT_EQ("BNDL ????", Codes("a"));
}

TEST_F(Bundles, TellOneCodeToWhomDoesNotWantTheOther) {
    Write("a/Contents/PkgInfo", "APPLttxt");
    Owned<CFBundleRef> const bundle(BundleAt("a"));
    UInt32 code = 0;
    CFBundleGetPackageInfo(bundle, &code, nullptr);
    EXPECT_EQ(0x4150504Cu, code);
    CFBundleGetPackageInfo(bundle, nullptr, &code);
    EXPECT_EQ(0x74747874u, code);
}

TEST_F(Bundles, HaveALocalDictionary) {
    Write("a/Contents/Info.plist", "{}");
    EXPECT_EQ("(null)", Local("a"));
    Write("a/Contents/Resources/en.lproj/InfoPlist.strings", "k = en;");
    EXPECT_EQ("{k=en}", Local("a"));
    Write("a/Contents/Resources/InfoPlist.strings", "k = none;");
    EXPECT_EQ("{k=none}", Local("a"));
    Write("b/Resources/Info.plist", "{}");
    Write("b/Resources/English.lproj/InfoPlist.strings", "k = old;");
    EXPECT_EQ("{k=old}", Local("b"));
    Write("c/Info.plist", "{}");
    Write("c/en.lproj/InfoPlist.strings", "k = flat;");
    EXPECT_EQ("{k=flat}", Local("c"));
}

TEST_F(Bundles, ChooseTheLanguageOfTheUser) {
    Write("a/Contents/Info.plist", "{CFBundleDevelopmentRegion = German;}");
    for (std::string const language : {"fr", "Dutch", "de", "en", "ja", "it", "es"})
        Write("a/Contents/Resources/" + language + ".lproj/InfoPlist.strings", "k = " + language + ";");
    EXPECT_EQ("{k=de}", Local("a"));
    locale.Set("fr_CA.UTF-8");
    EXPECT_EQ("{k=fr}", Local("a"));
    messages.Set("nl");
    EXPECT_EQ("{k=Dutch}", Local("a"));
    allLocales.Set("it_IT");
    EXPECT_EQ("{k=it}", Local("a"));
    languages.Set("xx:es:fr");
    EXPECT_EQ("{k=es}", Local("a"));
}

TEST_F(Bundles, PreferTheLanguagesOfThePreferences) {
    Write("a/Contents/Info.plist", "{}");
    for (std::string const language : {"fr", "it", "es"})
        Write("a/Contents/Resources/" + language + ".lproj/InfoPlist.strings", "k = " + language + ";");
    languages.Set("es");
    Write("home/GNUstep/Defaults/NSGlobalDomain.plist", "{NSLanguages = (Klingon, French);}");
    EXPECT_EQ("{k=fr}", Local("a"));
    Write("home/.config/.GlobalPreferences.plist", "{AppleLanguages = (<*I1>, \"it-IT\");}");
    EXPECT_EQ("{k=it}", Local("a"));
    Write("home/.config/.GlobalPreferences.plist", "{AppleLanguages = it; NSLanguages = (\"../../fr\");}");
    EXPECT_EQ("{k=es}", Local("a"));
}

TEST_F(Bundles, SkipLanguagesWithoutAReadableDictionary) {
    Write("a/Contents/Info.plist", "{}");
    locale.Set("fr");
    Write("a/Contents/Resources/fr.lproj/InfoPlist.strings", "(no, dictionary)");
    Write("a/Contents/Resources/en.lproj/InfoPlist.strings", "k = en;");
    EXPECT_EQ("{k=en}", Local("a"));
}

TEST_F(Bundles, KeepTheLocalDictionaryThatWasAskedForFirst) {
    Write("a/Contents/Info.plist", "{}");
    Owned<CFBundleRef> const bundle(BundleAt("a"));
    Write("a/Contents/Resources/InfoPlist.strings", "k = 1;");
    CFDictionaryRef const local = CFBundleGetLocalInfoDictionary(bundle);
    EXPECT_EQ("{k=1}", Show(local));
    Write("a/Contents/Resources/InfoPlist.strings", "k = 2;");
    EXPECT_EQ(local, CFBundleGetLocalInfoDictionary(bundle));
}

TEST_F(Bundles, LookUpKeysInTheLocalDictionaryFirst) {
    Write("a/Contents/Info.plist", "{k = plain; l = plain;}");
    Write("a/Contents/Resources/InfoPlist.strings", "k = local;");
    Owned<CFBundleRef> const bundle(BundleAt("a"));
    Owned<CFStringRef> const k(NewString("k")), l(NewString("l")), m(NewString("m"));
    EXPECT_EQ("local", Show(CFBundleGetValueForInfoDictionaryKey(bundle, k)));
    EXPECT_EQ("plain", Show(CFBundleGetValueForInfoDictionaryKey(bundle, l)));
    EXPECT_EQ("(null)", Show(CFBundleGetValueForInfoDictionaryKey(bundle, m)));
}
