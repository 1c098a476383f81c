// Files that are not read: a program with an exclusion list of its own, which the delivered one replaces
// else.

#include "content/ExclusionList.h"

#include <gtest/gtest.h>

#include "Answers.h"
#include "Memory.h"
#include "filesystem/Asking.h"
#include "support/Owned.h"
#include "support/TemporaryFolder.h"

using MacintoshPlatform::FileLocation;

namespace {

// The list wants its places before the tests begin.
TemporaryFolder const& Here() {
    static TemporaryFolder const here;
    return here;
}

FileLocation At(std::string_view name) { return FileLocation(NewURL(Here().Path(name))); }

FileLocation const excluded[] = {At("first"),          At("missing"),
                                 At("link to second"), At("hard link to third"),
                                 At("last"),           At("behind the count")};

class ExclusionList : public testing::Test {
  protected:
    ExclusionList() {
        Here().MakeFolder("named");
        for (char const* name :
             {"first", "second", "third", "last", "other", "behind the count", "named/last"})
            Here().Write(name, kSettings);
        Here().Link("link to second", "second");
        Here().Link("link to first", "first");
        std::filesystem::create_hard_link(Here().Path("third"), Here().Path("hard link to third"));
    }
    ~ExclusionList() override {
        for (auto const& entry : std::filesystem::directory_iterator(Here().Path()))
            std::filesystem::remove_all(entry);
        ReleaseInspectorMemory();
    }

    static constexpr char const* kSettings = "x=1\n[a]\ny=2\n";
};

bool IsExcluded(std::string_view name) { return DoNotReadFile(FileAt(Here().Path(name))); }

}  // namespace

FileLocation const* const gFileExclusionList = excluded;
std::uint32_t const gFileExclusionListLength = 5;

TEST_F(ExclusionList, HoldsWhatItsEntriesName) {
    EXPECT_TRUE(IsExcluded("first"));
    EXPECT_TRUE(IsExcluded("last"));
    EXPECT_FALSE(IsExcluded("other"));
}

TEST_F(ExclusionList, EndsWithItsCount) { EXPECT_FALSE(IsExcluded("behind the count")); }

TEST_F(ExclusionList, DoesNotGoByTheNameAlone) { EXPECT_FALSE(IsExcluded("named/last")); }

TEST_F(ExclusionList, TellsItemsApartByWhatTheyAre) {
    EXPECT_TRUE(IsExcluded("hard link to third"));
    EXPECT_TRUE(IsExcluded("third"));
    EXPECT_TRUE(IsExcluded("link to first"));
    EXPECT_TRUE(IsExcluded("link to second"));
    EXPECT_TRUE(IsExcluded("second"));
}

TEST_F(ExclusionList, GoesOnPastEntriesThatAreNotThere) {
    std::filesystem::remove(Here().Path("first"));
    EXPECT_TRUE(IsExcluded("last"));
}

TEST_F(ExclusionList, KeepsSectionsAndKeysFromBeingRead) {
    file const object = FileAt(Here().Path("last"));
    EXPECT_EQ(std::nullopt, KeyOf("x", object));
    EXPECT_EQ(std::nullopt, AsSection(SectionOf("a", object)));
    EXPECT_EQ("1", KeyOf("x", FileAt(Here().Path("other"))));
    EXPECT_TRUE(SectionOf("a", FileAt(Here().Path("other"))));
}

TEST_F(ExclusionList, RefusesBeforeTheFileIsOpened) {
    file const object = FileAt(Here().Path("last"));
    std::filesystem::remove(Here().Path("last"));
    EXPECT_THROW(key_of_file(StringOf("x"), {}, object), NoSuchObject);
    EXPECT_THROW(section_of_file(StringOf("a"), {}, object), NoSuchObject);
}

TEST_F(ExclusionList, IsNotAskedForKeysOfASection) {
    EXPECT_EQ("2", KeyOf("y", file_section(FileAt(Here().Path("last")), 8, 12)));
}

TEST_F(ExclusionList, IsNotAskedForLines) {
    file const object = FileAt(Here().Path("last"));
    EXPECT_EQ("x=1", TextOf(NumberedLine(1, {}, object).text));
    EXPECT_EQ(3u, LinesOf(object).size());
    EXPECT_EQ(2u, LinesContaining("=", object).size());
}
