// Which files may have extended attributes at all, and what their names are.

#include <gtest/gtest.h>

#include "files/ExtendedAttributes.h"
#include "support/TemporaryFolder.h"

using Platform::ExtendedAttributes;
using Platform::Place;

TEST(ExtendedAttributes, MayExistWhereTheFileSystemHasThem) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    EXPECT_TRUE(ExtendedAttributes::MayExist({AT_FDCWD, path.c_str()}));
    EXPECT_FALSE(ExtendedAttributes::MayExist({AT_FDCWD, "/proc/version"}));
}

TEST(ExtendedAttributes, AreListedHoweverManyNamesThereAre) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("file");
    std::string const longName = "user." + std::string(200, 'n');
    for (char last = 'a'; last < 'k'; ++last) folder.SetAttribute("file", (longName + last).c_str(), "value");
    ExtendedAttributes attributes({AT_FDCWD, path.c_str()});
    EXPECT_TRUE(attributes.IsEmpty());
    attributes.List();
    EXPECT_TRUE(attributes.Has(longName + 'a'));
    EXPECT_TRUE(attributes.Has(longName + 'j'));
    EXPECT_FALSE(attributes.Has(longName));
    EXPECT_EQ(5u, attributes.Size(longName + 'a'));
    EXPECT_EQ(5u, attributes.Value(longName + 'a', 100).size());
    EXPECT_TRUE(attributes.Value(longName + 'a', 4).empty());
}
