// The application of a creator code: bundles and desktop entries.

#include <Carbon/Carbon.h>
#include <sys/stat.h>

#include "bundles/Bundle.h"
#include "platform/Items.h"
#include "platform/OwnApplications.h"

using Platform::PackageCode;

namespace {

class Applications : public OwnApplications {
  protected:
    /// Where the applications of each domain lie.
    Applications() {
        Write("machine/etc/zelq/folders.conf",
              "[apps]\nuser = " + here.Path("u") + "\nuser = " + here.Path("u2") + "\nlocal = " +
                  here.Path("l") + "\nnetwork = " + here.Path("n") + "\nsystem = " + here.Path("s") + "\n");
    }

    void AddBundle(std::string const& folder, std::string const& signature,
                   std::string const& version = "1.0") const {
        Write(folder + "/Contents/Info.plist",
              "{ CFBundleSignature = \"" + signature + "\"; CFBundleVersion = \"" + version + "\"; }");
    }

    /// The path, below the test's folder, of the application of a code; "(code)" of a failure.
    std::string Of(char const* creator) const {
        FSRef reference;
        CFURLRef url = nullptr;
        OSStatus const error =
            LSGetApplicationForInfo(kLSUnknownType, PackageCode(creator), nullptr,
                                    static_cast<LSRolesMask>(kLSRolesAll), &reference, &url);
        if (error != noErr) return "(" + std::to_string(error) + ")";
        Owned<CFURLRef> const owned(url);
        std::string const path = PathOf(reference);
        std::string const ofUrl = PathOf(url);
        EXPECT_TRUE(ofUrl == path || ofUrl == path + "/") << ofUrl;
        return path.starts_with(here.Path() + "/") ? path.substr(here.Path().size() + 1) : path;
    }

    static constexpr char const* none = "(-10814)";
};

}  // namespace

// ---- What is asked

TEST_F(Applications, NothingIsNoQuestion) {
    FSRef reference;
    LSRolesMask const all = static_cast<LSRolesMask>(kLSRolesAll);
    EXPECT_EQ(paramErr, LSGetApplicationForInfo(0, 0, nullptr, all, &reference, nullptr));
}

TEST_F(Applications, TypesAndExtensionsHaveNone) {
    FSRef reference;
    LSRolesMask const all = static_cast<LSRolesMask>(kLSRolesAll);
    Owned<CFStringRef> const extension(NewString("txt"));
    EXPECT_EQ(kLSApplicationNotFoundErr,
              LSGetApplicationForInfo(PackageCode("TEXT"), 0, nullptr, all, &reference, nullptr));
    EXPECT_EQ(kLSApplicationNotFoundErr, LSGetApplicationForInfo(0, 0, extension, all, &reference, nullptr));
}

TEST_F(Applications, AnswersAreOptional) {
    AddBundle("u/A.app", "abcd");
    LSRolesMask const all = static_cast<LSRolesMask>(kLSRolesAll);
    EXPECT_EQ(noErr, LSGetApplicationForInfo(0, PackageCode("abcd"), nullptr, all, nullptr, nullptr));
    EXPECT_EQ(kLSApplicationNotFoundErr,
              LSGetApplicationForInfo(0, PackageCode("none"), nullptr, all, nullptr, nullptr));
}

TEST_F(Applications, MistakesInTheTableOfFoldersAreTold) {
    Write("machine/etc/zelq/folders.conf", "[apps]\nnonsense\n");
    EXPECT_EQ("(-4270)", Of("abcd"));
}

// ---- Bundles

TEST_F(Applications, BundlesByTheirSignatures) {
    AddBundle("u/A.app", "abcd");
    AddBundle("u/B.app", "efgh");
    EXPECT_EQ("u/A.app", Of("abcd"));
    EXPECT_EQ("u/B.app", Of("efgh"));
    EXPECT_EQ(none, Of("ABCD"));
}

TEST_F(Applications, BundlesByTheirPackageInfo) {
    Write("u/A.app/Contents/PkgInfo", "APPLabcd");
    EXPECT_EQ("u/A.app", Of("abcd"));
}

TEST_F(Applications, OfNoSignatureAreNobodys) {
    AddBundle("u/A.app", "");
    AddBundle("u/B.app", "????");
    AddEntry(own, "a.desktop", "X-Creator-Code=????\n");
    EXPECT_EQ(none, Of("????"));
}

TEST_F(Applications, BundlesAreCalledApp) {
    AddBundle("u/A.bundle", "abcd");
    AddBundle("u/deeper/A.app", "abcd");
    Write("u/B.app", "no folder");
    std::filesystem::create_directory(here.Path("u/C.app"));
    EXPECT_EQ(none, Of("abcd"));
}

TEST_F(Applications, BundlesMayBeLinkedTo) {
    AddBundle("elsewhere/A", "abcd");
    here.MakeFolder("u");
    here.Link("u/A.app", here.Path("elsewhere/A"));
    EXPECT_EQ("u/A.app", Of("abcd"));
}

TEST_F(Applications, BundlesOfTheUserComeFirstThenLocalNetworkAndSystem) {
    for (char const* const folder : {"s", "n", "l", "u2", "u"}) {
        AddBundle(std::string(folder) + "/A.app", "abcd");
        EXPECT_EQ(std::string(folder) + "/A.app", Of("abcd"));
    }
}

TEST_F(Applications, BundlesOfHigherVersionsComeBeforeAll) {
    AddBundle("u/A.app", "abcd", "1.0");
    AddBundle("s/Z.app", "abcd", "1.0.1");
    AddBundle("l/B.app", "abcd", "1.0b3");
    EXPECT_EQ("s/Z.app", Of("abcd"));
}

TEST_F(Applications, BundlesOfOneFolderByTheirNames) {
    for (int i = 0; i < 26; ++i)
        AddBundle(std::string("u/") + char('A' + (i * 7 + 11) % 26) + ".app", "abcd");
    EXPECT_EQ("u/A.app", Of("abcd"));
}

TEST_F(Applications, BundlesThatCannotBeReadArePassedOver) {
    Write("u/A.app/Contents/Info.plist", "no list {");
    AddBundle("u/B.app", "abcd");
    EXPECT_EQ("u/B.app", Of("abcd"));
}

// ---- Desktop entries

TEST_F(Applications, EntriesByTheirCreators) {
    AddEntry(own, "a.desktop", "X-Creator-Code=abcd\n");
    EXPECT_EQ("bin/prog", Of("abcd"));
    EXPECT_EQ(none, Of("efgh"));
}

TEST_F(Applications, BundlesComeBeforeEntries) {
    AddEntry(own, "a.desktop", "X-Creator-Code=abcd\n");
    AddBundle("s/A.app", "abcd");
    EXPECT_EQ("s/A.app", Of("abcd"));
}

TEST_F(Applications, EntriesOfTheUserComeFirst) {
    for (std::string const folder : {second, first, own}) {
        std::string const path = AddProgram("bin/of " + std::filesystem::path(folder).filename().string());
        Write(folder + "/applications/a.desktop",
              "[Desktop Entry]\nType=Application\nExec=\"" + path + "\"\nX-Creator-Code=abcd\n");
        EXPECT_EQ(path, here.Path(Of("abcd")));
    }
}

TEST_F(Applications, EntriesOfOneFolderByTheirIds) {
    AddProgram("bin/other");
    AddEntry(own, "b-z.desktop", "X-Creator-Code=abcd\n");
    Write(std::string(own) + "/applications/b/a.desktop",
          "[Desktop Entry]\nType=Application\nExec=other\nX-Creator-Code=abcd\n");
    EXPECT_EQ("bin/other", Of("abcd")) << "by b-a.desktop, not by the path";
}

TEST_F(Applications, EntriesHideThoseWithTheirIds) {
    AddEntry(second, "a-b.desktop", "X-Creator-Code=abcd\n");
    EXPECT_EQ("bin/prog", Of("abcd"));
    AddEntry(first, "a/b.desktop", "Hidden=true\nX-Creator-Code=abcd\n");
    EXPECT_EQ(none, Of("abcd"));
    AddEntry(own, "a-b.desktop", "X-Creator-Code=efgh\n");
    EXPECT_EQ(none, Of("abcd"));
    EXPECT_EQ("bin/prog", Of("efgh"));
}

TEST_F(Applications, EntriesOfOtherTypesDoNotCount) {
    Write(std::string(own) + "/applications/a.desktop",
          "[Desktop Entry]\nType=Link\nExec=prog\nX-Creator-Code=abcd\n");
    EXPECT_EQ(none, Of("abcd"));
}

TEST_F(Applications, EntriesWhoseProgramIsMissingDoNotCount) {
    AddProgram("bin/data", false);
    for (char const* const exec : {"Exec=missing", "Exec=data", "Exec=bin/prog", "Exec=\"prog",
                                   "Exec=", "Exec=/usr", "Exec=prog\nTryExec=missing", "Exec=%f"}) {
        Write(std::string(own) + "/applications/a.desktop",
              std::string("[Desktop Entry]\nType=Application\nX-Creator-Code=abcd\n") + exec + "\n");
        EXPECT_EQ(none, Of("abcd")) << exec;
    }
}

TEST_F(Applications, NextEntryCountsWhereAProgramIsMissing) {
    Write(std::string(own) + "/applications/a.desktop",
          "[Desktop Entry]\nType=Application\nX-Creator-Code=abcd\nExec=missing\n");
    AddEntry(first, "b.desktop", "X-Creator-Code=abcd\n");
    EXPECT_EQ("bin/prog", Of("abcd"));
}

TEST_F(Applications, ProgramsByThePath) {
    AddEntry(own, "a.desktop", "X-Creator-Code=abcd\n");
    std::filesystem::remove(program);
    std::filesystem::create_directory(program);
    AddProgram("other bin/prog");
    EXPECT_EQ("other bin/prog", Of("abcd")) << "a folder is no program";
}

TEST_F(Applications, FoldersOfEntriesThatLeadBackEnd) {
    AddEntry(own, "a/b/c.desktop", "X-Creator-Code=abcd\n");
    for (int i = 0; i < 12; ++i)  // more ways than could be gone to the depth of eight
        here.Link(std::string(own) + "/applications/a/loop" + std::to_string(i),
                  here.Path(own) + "/applications");
    here.Link(std::string(own) + "/applications/a/b/itself", here.Path(own) + "/applications/a/b/itself");
    EXPECT_EQ("bin/prog", Of("abcd"));
    EXPECT_EQ(none, Of("efgh"));
}

// There are more than a million ways through them.
TEST_F(Applications, FoldersOfEntriesThatLeadToOneAnotherEnd) {
    AddEntry(own, "entry.desktop", "X-Creator-Code=abcd\n");
    std::string const applications = std::string(own) + "/applications/";
    std::string const folders = "abcdefghij";
    for (char const folder : folders) {
        here.MakeFolder(applications + folder);
        for (char const other : folders)
            here.Link(applications + folder + "/" + other, here.Path(applications + other));
    }
    EXPECT_EQ("bin/prog", Of("abcd"));
    EXPECT_EQ(none, Of("efgh"));
}

TEST_F(Applications, EntriesEightFoldersDeepCount) {
    AddEntry(own, "1/2/3/4/5/6/7/8/a.desktop", "X-Creator-Code=abcd\n");
    AddEntry(own, "1/2/3/4/5/6/7/8/9/b.desktop", "X-Creator-Code=efgh\n");
    EXPECT_EQ("bin/prog", Of("abcd"));
    EXPECT_EQ(none, Of("efgh"));
}

TEST_F(Applications, EntriesThatArePipesAreNotOpened) {
    here.MakeFolder(std::string(own) + "/applications");
    ASSERT_EQ(0, mkfifo(here.Path(std::string(own) + "/applications/a.desktop").c_str(), 0600));
    EXPECT_EQ(none, Of("abcd"));
}
