#include "versions/Country.h"

#include "Evaluator/Exceptions.h"
#include "versions/TokenTable.h"

namespace {

using Regions = TokenTable<country>;

// The names and values of the platform's constants. The value of the last row is nobody's: a name that is not
// here has no country.
constexpr Regions::Association kRegions[] = {
    {"verAfrikaans", {102}},
    {"verArabic", {16}},
    {"verArmenian", {84}},
    {"verAustralia", {15}},
    {"verAustria", {92}},
    {"verBelgiumLuxPoint", {27}},
    {"verBengali", {60}},
    {"verBhutan", {83}},
    {"verBrazil", {71}},
    {"verBreton", {77}},
    {"verBritain", {2}},
    {"verBulgaria", {72}},
    {"verByeloRussian", {61}},
    {"verCanadaComma", {28}},
    {"verCanadaPoint", {29}},
    {"verCatalonia", {73}},
    {"verChina", {52}},
    {"verCroatia", {68}},
    {"verCyprus", {23}},
    {"verCzech", {56}},
    {"verDenmark", {9}},
    {"verEngCanada", {82}},
    {"verEsperanto", {103}},
    {"verEstonia", {44}},
    {"verFarEastGeneric", {58}},
    {"verFaroeIsl", {47}},
    {"verFinland", {17}},
    {"verFlemish", {6}},
    {"verFrBelgium", {98}},
    {"verFrCanada", {11}},
    {"verFrSwiss", {18}},
    {"verFrance", {1}},
    {"verFrenchUniversal", {91}},
    {"verGeorgian", {85}},
    {"verGermany", {3}},
    {"verGrSwiss", {19}},
    {"verGreece", {20}},
    {"verGreeceAlt", {64}},
    {"verGreecePoly", {40}},
    {"verGujarati", {94}},
    {"verHungary", {43}},
    {"verIceland", {21}},
    {"verIndiaHindi", {33}},
    {"verIndiaUrdu", {96}},
    {"verInternational", {37}},
    {"verIran", {48}},
    {"verIreland", {50}},
    {"verIrishGaelicScript", {81}},
    {"verIsrael", {13}},
    {"verItalianSwiss", {36}},
    {"verItaly", {4}},
    {"verJapan", {14}},
    {"verKorea", {51}},
    {"verLatvia", {45}},
    {"verLithuania", {41}},
    {"verMacedonian", {67}},
    {"verMagyar", {59}},
    {"verMalta", {22}},
    {"verManxGaelic", {76}},
    {"verMarathi", {104}},
    {"verMultilingual", {74}},
    {"verNepal", {106}},
    {"verNetherlands", {5}},
    {"verNetherlandsComma", {26}},
    {"verNorway", {12}},
    {"verNunavut", {78}},
    {"verNynorsk", {101}},
    {"verPakistanUrdu", {34}},
    {"verPoland", {42}},
    {"verPortugal", {10}},
    {"verPunjabi", {95}},
    {"verRomania", {39}},
    {"verRussia", {49}},
    {"verSami", {46}},
    {"verScottishGaelic", {75}},
    {"verScriptGeneric", {55}},
    {"verSerbian", {65}},
    {"verSingapore", {100}},
    {"verSlovak", {57}},
    {"verSlovenian", {66}},
    {"verSpLatinAmerica", {86}},
    {"verSpain", {8}},
    {"verSweden", {7}},
    {"verTaiwan", {53}},
    {"verThailand", {54}},
    {"verTibetan", {105}},
    {"verTonga", {88}},
    {"verTurkey", {24}},
    {"verTurkishModified", {35}},
    {"verUS", {0}},
    {"verUkraine", {62}},
    {"verUzbek", {99}},
    {"verVietnam", {97}},
    {"verWelsh", {79}},
    {"verYugoCroatian", {25}},
    {"vervariantDenmark", {32}},
    {"vervariantNorway", {31}},
    {"vervariantPortugal", {30}},
    {nullptr, {0}},
};
static_assert(Regions::IsInOrder(kRegions));

}  // namespace

bool operator==(country const& left, country const& right) { return left.code == right.code; }

country country_of(unsigned char const* name, unsigned long length) {
    static Regions const regions(kRegions);
    country const* const found = regions.LookFor({name, length});
    if (found == nullptr) throw NoSuchObject();
    return *found;
}
