#include "versions/Country.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "Evaluator/Exceptions.h"
#include "VersionsOfTests.h"

namespace {

country CountryOf(std::string_view name) { return country_of(Bytes(name).begin(), name.size()); }

// The platform's region constants by their values.
struct Region {
    char const* name;
    std::uint32_t code;
};
constexpr Region kRegions[] = {
    {"verUS", 0},
    {"verFrance", 1},
    {"verBritain", 2},
    {"verGermany", 3},
    {"verItaly", 4},
    {"verNetherlands", 5},
    {"verFlemish", 6},
    {"verSweden", 7},
    {"verSpain", 8},
    {"verDenmark", 9},
    {"verPortugal", 10},
    {"verFrCanada", 11},
    {"verNorway", 12},
    {"verIsrael", 13},
    {"verJapan", 14},
    {"verAustralia", 15},
    {"verArabic", 16},
    {"verFinland", 17},
    {"verFrSwiss", 18},
    {"verGrSwiss", 19},
    {"verGreece", 20},
    {"verIceland", 21},
    {"verMalta", 22},
    {"verCyprus", 23},
    {"verTurkey", 24},
    {"verYugoCroatian", 25},
    {"verNetherlandsComma", 26},
    {"verBelgiumLuxPoint", 27},
    {"verCanadaComma", 28},
    {"verCanadaPoint", 29},
    {"vervariantPortugal", 30},
    {"vervariantNorway", 31},
    {"vervariantDenmark", 32},
    {"verIndiaHindi", 33},
    {"verPakistanUrdu", 34},
    {"verTurkishModified", 35},
    {"verItalianSwiss", 36},
    {"verInternational", 37},
    {"verRomania", 39},
    {"verGreecePoly", 40},
    {"verLithuania", 41},
    {"verPoland", 42},
    {"verHungary", 43},
    {"verEstonia", 44},
    {"verLatvia", 45},
    {"verSami", 46},
    {"verFaroeIsl", 47},
    {"verIran", 48},
    {"verRussia", 49},
    {"verIreland", 50},
    {"verKorea", 51},
    {"verChina", 52},
    {"verTaiwan", 53},
    {"verThailand", 54},
    {"verScriptGeneric", 55},
    {"verCzech", 56},
    {"verSlovak", 57},
    {"verFarEastGeneric", 58},
    {"verMagyar", 59},
    {"verBengali", 60},
    {"verByeloRussian", 61},
    {"verUkraine", 62},
    {"verGreeceAlt", 64},
    {"verSerbian", 65},
    {"verSlovenian", 66},
    {"verMacedonian", 67},
    {"verCroatia", 68},
    {"verBrazil", 71},
    {"verBulgaria", 72},
    {"verCatalonia", 73},
    {"verMultilingual", 74},
    {"verScottishGaelic", 75},
    {"verManxGaelic", 76},
    {"verBreton", 77},
    {"verNunavut", 78},
    {"verWelsh", 79},
    {"verIrishGaelicScript", 81},
    {"verEngCanada", 82},
    {"verBhutan", 83},
    {"verArmenian", 84},
    {"verGeorgian", 85},
    {"verSpLatinAmerica", 86},
    {"verTonga", 88},
    {"verFrenchUniversal", 91},
    {"verAustria", 92},
    {"verGujarati", 94},
    {"verPunjabi", 95},
    {"verIndiaUrdu", 96},
    {"verVietnam", 97},
    {"verFrBelgium", 98},
    {"verUzbek", 99},
    {"verSingapore", 100},
    {"verNynorsk", 101},
    {"verAfrikaans", 102},
    {"verEsperanto", 103},
    {"verMarathi", 104},
    {"verTibetan", 105},
    {"verNepal", 106},
};
static_assert(std::size(kRegions) == 98);

}  // namespace

TEST(Countries, HaveTheCodesOfTheirConstants) {
    for (Region const& region : kRegions) {
        country found{12345};
        EXPECT_NO_THROW(found = CountryOf(region.name)) << region.name;
        EXPECT_EQ(region.code, found.code) << region.name;
    }
}

TEST(Countries, AreEqualToThemselvesAlone) {
    for (Region const& left : kRegions) {
        for (Region const& right : kRegions) {
            ASSERT_EQ(&left == &right, CountryOf(left.name) == CountryOf(right.name))
                << left.name << " " << right.name;
        }
    }
}

TEST(Countries, AreNamedLetterForLetter) {
    for (char const* name : {"", "US", "ver", "verU", "verus", "VERUS", "verUS ", " verUS", "verUSA", "verFr",
                             "verFrances", "verVariantNorway", "vervariant", "verZimbabwe", "ver\xFF", "zzz"})
        EXPECT_THROW(CountryOf(name), NoSuchObject) << name;
    EXPECT_THROW(CountryOf(std::string_view("verUS\0", 6)), NoSuchObject);
    EXPECT_THROW(CountryOf(std::string(100'000, 'v')), NoSuchObject);
}

// Each name with a byte less, a byte more and a letter of the other case, unless that is another region's.
TEST(Countries, AreNotNamedNearly) {
    std::set<std::string> names;
    for (Region const& region : kRegions) names.insert(region.name);
    for (std::string const& name : names) {
        std::string const shorter = name.substr(0, name.size() - 1);
        std::string other = name;
        other.back() = static_cast<char>(other.back() ^ 0x20);
        for (std::string const& near : {shorter, name + "x", name + '\0', other}) {
            if (names.contains(near)) continue;
            EXPECT_THROW(CountryOf(near), NoSuchObject) << Shown(near);
        }
    }
}

TEST(Countries, OccupyFourBytes) { static_assert(sizeof(country) == 4); }
