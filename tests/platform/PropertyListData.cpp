// Property lists as a whole: which format, which options, which failures are told.

#include <Platform/Items.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/BinaryListBuilder.h"
#include "platform/PropertyListText.h"
#include "support/TemporaryFolder.h"

namespace {

TEST(PropertyLists, AreNotThereInNoData) {
    EXPECT_EQ("refused: the data is null or of zero length", List(""));
}

TEST(PropertyLists, CannotBeMadeMutable) {
    Owned<CFDataRef> const data = NewTestData("<true/>");
    for (UInt32 const option : {1u, 2u, 7u}) {
        CFStringRef reason = nullptr;
        EXPECT_EQ(nullptr, CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, option, &reason));
        ASSERT_NE(nullptr, reason);
        EXPECT_EQ("there are no property lists that can be changed", Utf8(reason));
        CFRelease(reason);
    }
}

TEST(PropertyLists, NeedNobodyToTellTheReasonTo) {
    Owned<CFDataRef> const data = NewTestData("<foo/>");
    EXPECT_EQ(nullptr, CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, 0, nullptr));
}

TEST(PropertyLists, LeaveNoReasonBehindWhenTheyCanBeRead) {
    Owned<CFDataRef> const data = NewTestData("<true/>");
    auto reason = reinterpret_cast<CFStringRef>(&data);
    Owned<CFTypeRef> const list(CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, 0, &reason));
    EXPECT_EQ(nullptr, reason);
}

TEST(PropertyLists, AreReadWhileTheHostWantsThemToBe) {
    std::string many;
    for (int i = 0; i < 100000; ++i) many += "a,";
    std::string const text = "(" + many + ")";
    std::string xml = "<array>";
    for (int i = 0; i < 100000; ++i) xml += "<true/>";
    xml += "</array>";
    BinaryList list;
    list.Add("\x09");
    list.root = list.AddArray(std::vector<std::size_t>(100000));
    for (std::string const& bytes : {text, xml, list.Bytes()}) {
        PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
        EXPECT_EQ("refused: the reading was stopped", List(bytes));
        PlatformSetCheckIn(nullptr);
        EXPECT_FALSE(PlatformPropertyListFailure(nullptr, 0, nullptr, 0)) << "nothing is wrong with the list";
        EXPECT_TRUE(List(bytes).starts_with("("));
    }
}

struct Told {
    bool isFailure;
    std::string file, reason;
};
Told LastFailure() {
    char file[4096], reason[4096];
    bool const isFailure = PlatformPropertyListFailure(file, sizeof file, reason, sizeof reason) != 0;
    return {isFailure, file, reason};
}

TEST(PropertyListFailures, AreToldWithTheFileUntilTheyAreForgotten) {
    TemporaryFolder const folder;
    std::string const path = folder.Write("broken.plist", "<array>\n<foo/></array>");
    Owned<CFURLRef> const url = NewURL(path);
    CFDataRef bytes = nullptr;
    SInt32 code = 1;
    ASSERT_TRUE(
        CFURLCreateDataAndPropertiesFromResource(kCFAllocatorDefault, url, &bytes, nullptr, nullptr, &code));
    Owned<CFDataRef> const data(bytes);
    EXPECT_EQ(nullptr, CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, 0, nullptr));
    Told const told = LastFailure();
    EXPECT_TRUE(told.isFailure);
    EXPECT_EQ(path, told.file);
    EXPECT_TRUE(told.reason.starts_with("as XML: line 2: unknown element \"foo\"; as old-style text: "))
        << told.reason;
    EXPECT_TRUE(PlatformPropertyListFailure(nullptr, 0, nullptr, 0));
    PlatformForgetFileFailure();
    EXPECT_FALSE(LastFailure().isFailure);
    EXPECT_EQ("", LastFailure().file);
}

// A search begins with the files that matter most.
TEST(PropertyListFailures, AreThoseOfTheFirstData) {
    PlatformForgetFileFailure();
    List("<foo/>");
    List("<bar/>");
    EXPECT_THAT(LastFailure().reason, testing::HasSubstr("\"foo\""));
    PlatformForgetFileFailure();
}

TEST(PropertyListFailures, OfOtherDataNameNoFile) {
    PlatformForgetFileFailure();
    EXPECT_TRUE(List("<foo/>").starts_with("refused"));
    EXPECT_TRUE(LastFailure().isFailure);
    EXPECT_EQ("", LastFailure().file);
    PlatformForgetFileFailure();
}

}  // namespace
