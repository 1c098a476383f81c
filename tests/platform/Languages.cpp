#include "bundles/Languages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Platform::FoldersOfLanguages;
using Platform::LanguagesOfLocales;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Languages, AreTakenFromLocales) {
    EXPECT_THAT(LanguagesOfLocales("fr_CA.UTF-8"), ElementsAre("fr_CA"));
    EXPECT_THAT(LanguagesOfLocales("de@euro:sr_RS@latin:en"), ElementsAre("de", "sr_RS", "en"));
    EXPECT_THAT(LanguagesOfLocales("::it:"), ElementsAre("it"));
}

TEST(Languages, AreNotTheLocalesThatAreNone) {
    EXPECT_THAT(LanguagesOfLocales(""), IsEmpty());
    EXPECT_THAT(LanguagesOfLocales("C:POSIX:C.UTF-8"), IsEmpty());
}

TEST(Languages, HaveFoldersOfTheirCodeAndEnglishName) {
    EXPECT_THAT(FoldersOfLanguages({"fr"}), ElementsAre("fr", "French"));
    EXPECT_THAT(FoldersOfLanguages({"French"}), ElementsAre("French", "fr"));
}

TEST(Languages, WithRegionsHaveThoseWithoutToo) {
    EXPECT_THAT(FoldersOfLanguages({"fr_CA"}), ElementsAre("fr_CA", "fr-CA", "fr", "French"));
    EXPECT_THAT(FoldersOfLanguages({"fr-CA"}), ElementsAre("fr-CA", "fr_CA", "fr", "French"));
}

TEST(Languages, OfChineseAreKnownByRegionAndScript) {
    EXPECT_THAT(FoldersOfLanguages({"zh_TW"}),
                ElementsAre("zh_TW", "zh-TW", "zh-Hant", "TraditionalChinese", "zh", "Chinese"));
    EXPECT_THAT(FoldersOfLanguages({"zh-Hans-CN"}),
                ElementsAre("zh-Hans-CN", "zh_Hans_CN", "zh-Hans", "zh_Hans", "zh_CN", "SimplifiedChinese",
                            "zh", "Chinese"));
}

TEST(Languages, OfNorwayShareTheirName) {
    EXPECT_THAT(FoldersOfLanguages({"nb_NO"}), ElementsAre("nb_NO", "nb-NO", "nb", "no", "Norwegian"));
    EXPECT_THAT(FoldersOfLanguages({"Norwegian"}), ElementsAre("Norwegian", "no"));
}

TEST(Languages, ThatNobodyKnowsHaveTheirOwnNameOnly) {
    EXPECT_THAT(FoldersOfLanguages({"tlh", "Klingon"}), ElementsAre("tlh", "Klingon"));
}

TEST(Languages, AreEachLookedForOnce) {
    EXPECT_THAT(FoldersOfLanguages({"fr_CA", "en", "fr", "English", "fr_FR"}),
                ElementsAre("fr_CA", "fr-CA", "fr", "French", "en", "English", "fr_FR", "fr-FR"));
}

TEST(Languages, LeadToNoOtherFolder) {
    using namespace std::string_literals;
    EXPECT_THAT(FoldersOfLanguages({"", "../en", "/etc", "a\0b"s, std::string(65, 'a')}), IsEmpty());
}
