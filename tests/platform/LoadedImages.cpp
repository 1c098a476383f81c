#include "bundles/LoadedImages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/OwnPath.h"

namespace {

std::string FolderOf(std::string_view image) {
    return Platform::BundleFolderOfImage(image).value_or("(none)");
}

}  // namespace

TEST(LoadedImages, LieInFrameworks) {
    EXPECT_EQ("/l/X.framework", FolderOf("/l/X.framework/X"));
    EXPECT_EQ("/l/X.framework", FolderOf("/l/X.framework/Versions/A/X"));
}

TEST(LoadedImages, LieInTheContentsOfBundles) {
    EXPECT_EQ("/l/Y.app", FolderOf("/l/Y.app/Contents/Linux/y"));
    EXPECT_EQ("/l/Y.app", FolderOf("/l/Y.app/Contents/Frameworks/liby.so"));
    EXPECT_EQ("/l/y", FolderOf("/l/y/Contents/Linux/y"));
}

TEST(LoadedImages, LieInFoldersCalledLikeBundles) {
    for (std::string const end : {"app", "bundle", "debug", "plugin", "profile", "service"})
        EXPECT_EQ("/l/Z." + end, FolderOf("/l/Z." + end + "/z"));
}

TEST(LoadedImages, LieInNoOtherFolders) {
    for (char const* const path : {"/usr/bin/env", "/init", "/Contents/a/b", "/l/Versions/A/X",
                                   "/l/X.app/Versions/A/X", "/l/.framework/X", "/l/X.app/a/b/c", "/l/Xapp/x"})
        EXPECT_EQ("(none)", FolderOf(path)) << path;
}

TEST(LoadedImages, AreTheProgramAndItsLibraries) {
    auto const paths = Platform::PathsOfImages();
    ASSERT_FALSE(paths.empty());
    EXPECT_EQ(ownPath, paths.front());
    EXPECT_THAT(paths, testing::Contains(testing::HasSubstr("/libc.so")));
}
