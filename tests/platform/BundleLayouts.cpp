#include "bundles/BundleLayout.h"

#include <Carbon/MacErrors.h>
#include <dirent.h>
#include <gtest/gtest.h>

#include <map>
#include <vector>

using Platform::BundleLayout;
using Platform::BundleMarks;

namespace {

// Folders by their paths below the bundle's, with their entries: folders' names end with '/'.
using Tree = std::map<std::string, std::vector<std::string>, std::less<>>;

OSErr Find(std::string_view name, Tree const& tree, std::optional<BundleLayout>& layout,
           std::vector<std::string>& looked) {
    return FindBundleLayout(
        name,
        [&](std::string_view below, BundleMarks& marks) -> OSErr {
            looked.emplace_back(below);
            auto const folder = tree.find(below);
            if (folder == tree.end()) return noErr;
            for (std::string entry : folder->second) {
                if (entry == "!") return volOffLinErr;
                bool const isFolder = entry.ends_with('/');
                if (isFolder) entry.pop_back();
                marks.Note(entry, isFolder ? DT_DIR : DT_REG);
            }
            return noErr;
        },
        layout);
}

// "information, package file, resources", or "(none)".
std::string LayoutOf(std::string_view name, Tree const& tree) {
    std::optional<BundleLayout> layout;
    std::vector<std::string> looked;
    EXPECT_EQ(noErr, Find(name, tree, layout, looked));
    return layout ? layout->information + ", " + layout->packageInfo + ", " + layout->resources : "(none)";
}

}  // namespace

TEST(BundleLayouts, TellWhereAllPartsAre) {
    EXPECT_EQ("Contents/Info.plist, Contents/PkgInfo, Contents/Resources",
              LayoutOf("a", {{"", {"Contents/"}}, {"Contents", {"Info.plist", "PkgInfo"}}}));
    EXPECT_EQ("Resources/Info.plist, PkgInfo, Resources",
              LayoutOf("a", {{"", {"Resources/", "PkgInfo"}}, {"Resources", {"Info.plist", "PkgInfo"}}}));
    EXPECT_EQ("Support Files/Info.plist, Support Files/PkgInfo, Support Files/Resources",
              LayoutOf("a", {{"", {"Support Files/"}}, {"Support Files", {"Info.plist", "PkgInfo"}}}));
    EXPECT_EQ("Info.plist, PkgInfo, ", LayoutOf("a", {{"", {"Info.plist", "PkgInfo"}}}));
    EXPECT_EQ("Versions/Current/Resources/Info.plist, , Versions/Current/Resources",
              LayoutOf("a.framework", {{"", {"Versions/"}},
                                       {"Versions/Current", {"Resources/"}},
                                       {"Versions/Current/Resources", {"Info.plist"}}}));
}

TEST(BundleLayouts, AreTriedInAnOrder) {
    Tree const all{{"", {"Contents/", "Resources/", "Support Files/", "Info.plist", "PkgInfo"}},
                   {"Contents", {"Info.plist"}},
                   {"Resources", {"Info.plist"}},
                   {"Support Files", {"Info.plist"}}};
    struct {
        std::vector<std::string> without;
        char const* of;
        char const* ofFramework;
    } const cases[] = {
        {{}, "Contents/Info.plist, , Contents/Resources", "Resources/Info.plist, PkgInfo, Resources"},
        {{"Contents"},
         "Resources/Info.plist, PkgInfo, Resources",
         "Resources/Info.plist, PkgInfo, Resources"},
        {{"Resources"},
         "Contents/Info.plist, , Contents/Resources",
         "Contents/Info.plist, , Contents/Resources"},
        {{"Contents", "Resources"},
         "Support Files/Info.plist, , Support Files/Resources",
         "Support Files/Info.plist, , Support Files/Resources"},
        {{"Contents", "Resources", "Support Files"}, "Info.plist, PkgInfo, ", "Info.plist, PkgInfo, "},
    };
    for (auto const& each : cases) {
        Tree tree = all;
        for (std::string const& name : each.without) tree.erase(name);
        EXPECT_EQ(each.of, LayoutOf("a.app", tree));
        EXPECT_EQ(each.ofFramework, LayoutOf("a.framework", tree));
    }
}

TEST(BundleLayouts, WithAPackageFileOnlyAreTriedInTheSameOrder) {
    EXPECT_EQ(", Contents/PkgInfo, Contents/Resources",
              LayoutOf("a", {{"", {"Contents/", "Resources/", "PkgInfo"}}, {"Contents", {"PkgInfo"}}}));
    EXPECT_EQ(", PkgInfo, Resources", LayoutOf("a", {{"", {"Resources/", "PkgInfo"}}}));
    EXPECT_EQ(", PkgInfo, ", LayoutOf("a", {{"", {"PkgInfo"}}}));
}

TEST(BundleLayouts, OfOtherFoldersAreNone) {
    EXPECT_EQ("(none)", LayoutOf("a", {}));
    EXPECT_EQ("(none)", LayoutOf("a", {{"", {"Info.plist/", "PkgInfo/", "Info.plists"}}}));
    EXPECT_EQ("(none)", LayoutOf("a", {{"", {"pkginfo"}}}));
}

TEST(BundleLayouts, AreFoundWithoutLookingAtWhatIsNotThere) {
    std::optional<BundleLayout> layout;
    std::vector<std::string> looked;
    EXPECT_EQ(noErr, Find("a", {{"", {"bin/", "Resources/"}}}, layout, looked));
    EXPECT_EQ((std::vector<std::string>{"", "Resources"}), looked);
}

TEST(BundleLayouts, AreUnknownWhereAFolderDoesNotAnswer) {
    std::optional<BundleLayout> layout;
    std::vector<std::string> looked;
    EXPECT_EQ(volOffLinErr, Find("a", {{"", {"!"}}}, layout, looked));
    EXPECT_EQ(volOffLinErr,
              Find("a", {{"", {"Contents/", "Info.plist"}}, {"Contents", {"!"}}}, layout, looked));
    EXPECT_FALSE(layout);
}
