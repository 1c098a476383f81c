// Sound volumes, against a program that stands in for the platform's two levels.

#include "system/SoundVolumes.h"

#include <Carbon/Sound.h>
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Evaluator/Exceptions.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "modules/SoundVolumeModule.h"
#include "modules/StereoVolumeModule.h"

namespace {

struct Level {
    OSErr error = noErr;
    UInt32 word = 0;
};
Level output, beep;

OSErr Tell(Level const& level, SInt32* word) {
    *word = static_cast<SInt32>(level.word);
    return level.error;
}

}  // namespace

OSErr GetDefaultOutputVolume(SInt32* level) { return Tell(output, level); }
OSErr GetSysBeepVolume(SInt32* level) { return Tell(beep, level); }

namespace {

__extension__ typedef __int128 Wide;
using Answer = std::optional<long long>;  // none: no such object

constexpr sound_volume Mono(int level) { return {level}; }
constexpr stereo_volume Stereo(int left, int right) { return {{left}, {right}}; }

template <class Question>
Answer Asked(Question const& question) {
    try {
        return question();
    } catch (NoSuchObject const&) {
        return std::nullopt;
    }
}

// What comes of an operator.
Answer Plus(int a, int b) {
    return Asked([&] { return (Mono(a) + Mono(b)).level; });
}
Answer Minus(int a, int b) {
    return Asked([&] { return (Mono(a) - Mono(b)).level; });
}
Answer Times(int a, long long n) {
    return Asked([&] { return (Mono(a) * integer(n)).level; });
}
Answer Divided(int a, long long n) {
    return Asked([&] { return (Mono(a) / integer(n)).level; });
}
Answer Quotient(int a, int b) {
    return Asked([&]() -> long long { return Mono(a) / Mono(b); });
}
using Levels = std::optional<std::vector<int>>;
Levels Both(std::function<stereo_volume()> const& question) {
    try {
        stereo_volume const volume = question();
        return std::vector<int>{volume.left.level, volume.right.level};
    } catch (NoSuchObject const&) {
        return std::nullopt;
    }
}

// The same by the rules, in numbers that hold everything.

// The lowest 32 bits, as a number with a sign.
Wide In32Bits(Wide number) {
    Wide const round = Wide{1} << 32;
    Wide const rest = ((number % round) + round) % round;
    return rest >= round / 2 ? rest - round : rest;
}
using WideAnswer = std::optional<Wide>;
WideAnswer MinusByRule(Wide a, Wide b) { return a < b ? WideAnswer() : In32Bits(a - b); }
WideAnswer PlusByRule(Wide a, Wide b) {
    WideAnswer const room = MinusByRule(65535, b);
    if (!room || a > *room) return std::nullopt;
    return In32Bits(a + b);
}
WideAnswer QuotientByRule(Wide a, Wide b) { return b == 0 ? WideAnswer() : In32Bits(a / b); }
WideAnswer TimesByRule(Wide a, Wide n) {
    if (a == 0) return Wide{0};
    if (n < 0 || n > *QuotientByRule(65535, a)) return std::nullopt;
    return In32Bits(a * n);
}
WideAnswer DividedByRule(Wide a, Wide n) {
    if (n == 0) return std::nullopt;
    if (a == 0) return Wide{0};
    return n < 0 ? WideAnswer() : a / n;
}

std::string Text(Answer const& answer) { return answer ? std::to_string(*answer) : "none"; }
std::string Text(WideAnswer const& answer) {
    return answer ? std::to_string(static_cast<long long>(*answer)) : "none";
}

constexpr int kLevels[] = {INT32_MIN, -65536, -1, 0, 1, 2, 3, 255, 256, 257, 65534, 65535, 65536, INT32_MAX};
constexpr long long kNumbers[] = {INT64_MIN, -3,  -1,    0,     1,         2,        255,
                                  256,       257, 65535, 65536, 1LL << 32, INT64_MAX};

}  // namespace

// ---- One channel

TEST(SoundVolumes, AreAddedSubtractedAndDividedByTheRules) {
    for (int const a : kLevels) {
        for (int const b : kLevels) {
            std::string const operands = std::to_string(a) + " and " + std::to_string(b);
            EXPECT_EQ(Text(PlusByRule(a, b)), Text(Plus(a, b))) << operands;
            EXPECT_EQ(Text(MinusByRule(a, b)), Text(Minus(a, b))) << operands;
            EXPECT_EQ(Text(QuotientByRule(a, b)), Text(Quotient(a, b))) << operands;
        }
    }
}

TEST(SoundVolumes, AreMultipliedAndDividedByNumbersByTheRules) {
    for (int const a : kLevels) {
        for (long long const n : kNumbers) {
            std::string const operands = std::to_string(a) + " and " + std::to_string(n);
            EXPECT_EQ(Text(TimesByRule(a, n)), Text(Times(a, n))) << operands;
            EXPECT_EQ(Text(TimesByRule(a, n)), Text(Asked([&] { return (integer(n) * Mono(a)).level; })))
                << operands;
            EXPECT_EQ(Text(DividedByRule(a, n)), Text(Divided(a, n))) << operands;
        }
    }
}

TEST(SoundVolumes, AreInTheOrderOfTheirLevelsWithTheirSigns) {
    for (int const a : kLevels) {
        for (int const b : kLevels) {
            EXPECT_EQ(a == b, Mono(a) == Mono(b)) << a << " " << b;
            EXPECT_EQ(a < b, Mono(a) < Mono(b)) << a << " " << b;
            EXPECT_EQ(a <= b, Mono(a) <= Mono(b)) << a << " " << b;
        }
    }
}

TEST(SoundVolumes, SumsMayBeAboveFullVolumeUpTo65535) {
    EXPECT_EQ(300, Plus(200, 100));
    EXPECT_EQ(65535, Plus(0, 65535));
    EXPECT_EQ(65535, Plus(65535, 0));
    EXPECT_EQ(std::nullopt, Plus(65535, 1));
    EXPECT_EQ(std::nullopt, Plus(1, 65535));
    EXPECT_EQ(std::nullopt, Plus(0, 65536)) << "the right operand alone is too high";
    EXPECT_EQ(-1, Plus(-3, 2));
}

TEST(SoundVolumes, DifferencesAreNotBelowZero) {
    EXPECT_EQ(std::nullopt, Minus(3, 5));
    EXPECT_EQ(0, Minus(5, 5));
    EXPECT_EQ(2, Minus(5, 3));
    EXPECT_EQ(8, Minus(5, -3));
}

TEST(SoundVolumes, ProductsAreBoundedByTheQuotientOf65535) {
    EXPECT_EQ(0, Times(0, -7));
    EXPECT_EQ(0, Times(0, INT64_MAX));
    EXPECT_EQ(0, Times(7, 0));
    EXPECT_EQ(std::nullopt, Times(1, -1));
    EXPECT_EQ(65280, Times(256, 255));
    EXPECT_EQ(std::nullopt, Times(256, 256));
    EXPECT_EQ(65535, Times(1, 65535));
    EXPECT_EQ(std::nullopt, Times(1, 65536));
    EXPECT_EQ(std::nullopt, Times(1, (1LL << 32) + 1)) << "not cut to 32 bits";
    EXPECT_EQ(std::nullopt, Times(65536, 1));
    EXPECT_EQ(0, Times(65536, 0));
    EXPECT_EQ(std::nullopt, Times(-1, 0)) << "0 is above -65535, the quotient";
}

TEST(SoundVolumes, QuotientsAreCutTowardsZero) {
    EXPECT_EQ(3, Divided(7, 2));
    EXPECT_EQ(-3, Divided(-7, 2));
    EXPECT_EQ(0, Divided(7, 1LL << 32)) << "not cut to 32 bits";
    EXPECT_EQ(2, Quotient(257, 128));
    EXPECT_EQ(-2, Quotient(-5, 2));
    EXPECT_EQ(-5, Quotient(5, -1));
    EXPECT_EQ(INT32_MIN, Quotient(INT32_MIN, -1)) << "the quotient has 32 bits";
}

TEST(SoundVolumes, DivisionByZeroIsToldFirstThenSilenceThenTheSign) {
    EXPECT_EQ(std::nullopt, Divided(7, 0));
    EXPECT_EQ(std::nullopt, Divided(0, 0));
    EXPECT_EQ(0, Divided(0, -3));
    EXPECT_EQ(std::nullopt, Divided(5, -3));
    EXPECT_EQ(std::nullopt, Quotient(0, 0));
    EXPECT_EQ(std::nullopt, Quotient(7, 0));
}

TEST(SoundVolumes, FullIs256AndZeroIs0) {
    EXPECT_EQ(256, full_sound_volume().level);
    EXPECT_EQ(0, zero_sound_volume().level);
}

// ---- Two channels

TEST(StereoVolumes, AreAPartialOrder) {
    struct Row {
        stereo_volume a, b;
        bool isEqual, isLess, isLessOrEqual;
    };
    Row const rows[] = {
        {Stereo(1, 5), Stereo(2, 4), false, false, false}, {Stereo(2, 4), Stereo(1, 5), false, false, false},
        {Stereo(1, 5), Stereo(1, 5), true, false, true},   {Stereo(1, 5), Stereo(1, 6), false, true, true},
        {Stereo(1, 5), Stereo(2, 5), false, true, true},   {Stereo(1, 5), Stereo(2, 6), false, true, true},
        {Stereo(2, 6), Stereo(1, 5), false, false, false}, {Stereo(-1, 5), Stereo(1, 5), false, true, true}};
    for (Row const& row : rows) {
        std::string const operands = ::testing::PrintToString(
            std::vector<int>{row.a.left.level, row.a.right.level, row.b.left.level, row.b.right.level});
        EXPECT_EQ(row.isEqual, row.a == row.b) << operands;
        EXPECT_EQ(row.isLess, row.a < row.b) << operands;
        EXPECT_EQ(row.isLessOrEqual, row.a <= row.b) << operands;
    }
}

TEST(StereoVolumes, AreComparedWithASoundVolumeAsBothChannels) {
    EXPECT_FALSE(Stereo(128, 256) == Mono(128));
    EXPECT_FALSE(Stereo(256, 128) == Mono(128));
    EXPECT_TRUE(Stereo(128, 128) == Mono(128));
    EXPECT_FALSE(Mono(128) == Stereo(128, 256));
    EXPECT_FALSE(Mono(128) == Stereo(256, 128));
    EXPECT_TRUE(Mono(128) == Stereo(128, 128));

    EXPECT_TRUE(Stereo(127, 128) < Mono(128));
    EXPECT_FALSE(Stereo(128, 128) < Mono(128));
    EXPECT_FALSE(Stereo(127, 129) < Mono(128));
    EXPECT_TRUE(Mono(128) < Stereo(128, 129));
    EXPECT_FALSE(Mono(128) < Stereo(128, 128));
    EXPECT_FALSE(Mono(128) < Stereo(127, 129));

    EXPECT_TRUE(Stereo(128, 128) <= Mono(128));
    EXPECT_FALSE(Stereo(128, 129) <= Mono(128));
    EXPECT_TRUE(Mono(128) <= Stereo(128, 129));
    EXPECT_FALSE(Mono(128) <= Stereo(127, 129));
}

TEST(StereoVolumes, AreAddedAndSubtractedChannelByChannel) {
    EXPECT_EQ(Levels({{11, 22}}), Both([] { return Stereo(1, 2) + Stereo(10, 20); }));
    EXPECT_EQ(Levels({{11, 12}}), Both([] { return Stereo(1, 2) + Mono(10); }));
    EXPECT_EQ(Levels({{11, 12}}), Both([] { return Mono(10) + Stereo(1, 2); }));
    EXPECT_EQ(Levels({{9, 18}}), Both([] { return Stereo(10, 20) - Stereo(1, 2); }));
    EXPECT_EQ(Levels({{5, 15}}), Both([] { return Stereo(10, 20) - Mono(5); }));
    EXPECT_EQ(Levels({{20, 10}}), Both([] { return Mono(30) - Stereo(10, 20); }));
}

TEST(StereoVolumes, AreMultipliedAndDividedChannelByChannel) {
    EXPECT_EQ(Levels({{21, 51}}), Both([] { return Stereo(7, 17) * integer(3); }));
    EXPECT_EQ(Levels({{21, 51}}), Both([] { return integer(3) * Stereo(7, 17); }));
    EXPECT_EQ(Levels({{3, 8}}), Both([] { return Stereo(7, 17) / integer(2); }));
    EXPECT_EQ(Levels({{0, 0}}), Both([] { return Stereo(0, 0) * integer(-7); }));
    EXPECT_EQ(Levels({{0, 0}}), Both([] { return Stereo(0, 0) / integer(-7); }));
}

// The rules of one channel hold for each, so a failure of either is one of both.
TEST(StereoVolumes, FailWhereEitherChannelDoes) {
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(65535, 0) + Stereo(1, 0); }));
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(0, 65535) + Stereo(0, 1); }));
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(65535, 0) + Mono(1); }));
    EXPECT_EQ(std::nullopt, Both([] { return Mono(1) + Stereo(0, 65535); }));
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(3, 5) - Stereo(5, 3); }));
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(5, 3) - Stereo(3, 5); }));
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(5, 3) - Mono(4); }));
    EXPECT_EQ(std::nullopt, Both([] { return Mono(4) - Stereo(3, 5); }));
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(0, 1) * integer(-1); }));
    EXPECT_EQ(std::nullopt, Both([] { return integer(256) * Stereo(256, 0); }));
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(0, 1) / integer(-1); }));
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(5, 0) / integer(-1); }));
    EXPECT_EQ(std::nullopt, Both([] { return Stereo(0, 0) / integer(0); }));
}

TEST(StereoVolumes, HaveTwoComponents) {
    EXPECT_EQ(3, left_component(Stereo(3, 9)).level);
    EXPECT_EQ(9, right_component(Stereo(3, 9)).level);
}

// ---- The system's levels

TEST(SystemLevels, HaveTheLeftChannelInTheLowHalfWithoutSign) {
    output = {noErr, 0x01000080};
    beep = {noErr, 0xFFFF8000};
    stereo_volume const volume = default_sound_volume();
    EXPECT_EQ(128, volume.left.level);
    EXPECT_EQ(256, volume.right.level);
    EXPECT_EQ(32768, system_beep_volume().left.level);
    EXPECT_EQ(65535, system_beep_volume().right.level);
}

TEST(SystemLevels, ThatCannotBeToldAreThePlatformsFailure) {
    output = {noHardwareErr, 0};
    beep = {paramErr, 0};
    std::pair<stereo_volume (*)(), int> const rows[] = {{default_sound_volume, -200},
                                                        {system_beep_volume, -50}};
    for (auto const& [ask, code] : rows) {
        try {
            ask();
            ADD_FAILURE() << code;
        } catch (OSError const& error) {
            EXPECT_EQ(code, error.Code());
        }
    }
    output = {memFullErr, 0};
    EXPECT_THROW(default_sound_volume(), MemoryFullError);
}

// ---- The modules

namespace {

std::string Binary(std::string const& name, std::string const& left, std::string const& right,
                   std::string const& result) {
    static std::map<std::string, int> const codes{{"+", 0}, {"-", 1}, {"*", 2}, {"/", 3},
                                                  {"=", 6}, {"<", 7}, {"<=", 8}};
    return "operator " + std::to_string(codes.at(name)) + " \"" + left + "\" \"" + right + "\": \"" + result +
           "\" pure";
}

template <class R, class A, class B>
R Computed(std::string const& row, A const& left, B const& right) {
    Registration const one = RegisteredAs(row);
    Slot<R> slot;
    one.compute(slot, &left, &right, one.context);
    return slot.Value();
}

template <class R>
R Got(std::string const& row, void const* argument = nullptr) {
    Registration const one = RegisteredAs(row);
    Slot<R> slot;
    one.get(slot, argument, nullptr, nullptr, one.context);
    return slot.Value();
}

std::string const mono = "sound volume", stereo = "stereo volume";

}  // namespace

TEST(SoundVolumeModule, RegistersItsTableInOrder) {
    ExpectRows<SoundVolumeModule>({
        "type \"sound volume\"",
        Binary("=", mono, mono, "boolean"),
        Binary("<", mono, mono, "boolean"),
        Binary("<=", mono, mono, "boolean"),
        Binary("+", mono, mono, mono),
        Binary("-", mono, mono, mono),
        Binary("*", mono, "integer", mono),
        Binary("*", "integer", mono, mono),
        Binary("/", mono, mono, "integer"),
        Binary("/", mono, "integer", mono),
        "property \"full volume\" \"full volumes\": \"sound volume\" pure",
        "property \"zero volume\" \"zero volumes\": \"sound volume\" pure",
    });
}

TEST(StereoVolumeModule, RegistersItsTableInOrder) {
    Rows rows{"type \"stereo volume\""};
    std::vector<std::pair<std::string, std::string>> const pairs{
        {stereo, stereo}, {stereo, mono}, {mono, stereo}};
    for (auto const& [left, right] : pairs) {
        for (char const* const relation : {"=", "<", "<="})
            rows.push_back(Binary(relation, left, right, "boolean"));
    }
    for (char const* const name : {"+", "-"}) {
        for (auto const& [left, right] : pairs) rows.push_back(Binary(name, left, right, stereo));
    }
    rows.push_back(Binary("*", stereo, "integer", stereo));
    rows.push_back(Binary("*", "integer", stereo, stereo));
    rows.push_back(Binary("/", stereo, "integer", stereo));
    for (char const* const row : {
             "property \"left component\" \"left components\" [\"stereo volume\"]: \"sound volume\"",
             "property \"right component\" \"right components\" [\"stereo volume\"]: \"sound volume\"",
             "property \"default sound volume\" \"default sound volumes\": \"stereo volume\"",
             "property \"system beep volume\" \"system beep volumes\": \"stereo volume\"",
         })
        rows.push_back(row);
    ExpectRows<StereoVolumeModule>(rows);
}

TEST(SoundVolumeModule, RowsLeadToTheirInspectors) {
    SoundVolumeModule const module;
    EXPECT_EQ(4u, RegisteredAs("type \"sound volume\"").valueSize);
    auto const level = [](std::string const& row, auto const& left, auto const& right) {
        return Computed<sound_volume>(row, left, right).level;
    };
    EXPECT_TRUE(Computed<boolean>(Binary("=", mono, mono, "boolean"), Mono(6), Mono(6)));
    EXPECT_FALSE(Computed<boolean>(Binary("<", mono, mono, "boolean"), Mono(6), Mono(6)));
    EXPECT_TRUE(Computed<boolean>(Binary("<=", mono, mono, "boolean"), Mono(6), Mono(6)));
    EXPECT_EQ(8, level(Binary("+", mono, mono, mono), Mono(6), Mono(2)));
    EXPECT_EQ(4, level(Binary("-", mono, mono, mono), Mono(6), Mono(2)));
    EXPECT_EQ(12, level(Binary("*", mono, "integer", mono), Mono(6), integer(2)));
    EXPECT_EQ(12, level(Binary("*", "integer", mono, mono), integer(2), Mono(6)));
    EXPECT_EQ(3, Computed<integer>(Binary("/", mono, mono, "integer"), Mono(6), Mono(2)));
    EXPECT_EQ(3, level(Binary("/", mono, "integer", mono), Mono(6), integer(2)));
    EXPECT_EQ(256,
              Got<sound_volume>("property \"full volume\" \"full volumes\": \"sound volume\" pure").level);
    EXPECT_EQ(0, Got<sound_volume>("property \"zero volume\" \"zero volumes\": \"sound volume\" pure").level);
}

TEST(StereoVolumeModule, RowsLeadToTheirInspectors) {
    StereoVolumeModule const module;
    EXPECT_EQ(8u, RegisteredAs("type \"stereo volume\"").valueSize);
    // Operands of which each relation and each order of the operands has an answer of its own.
    auto const relations = [](std::string const& left, std::string const& right, auto const& low,
                              auto const& high, auto const& same) {
        std::string const equal = Binary("=", left, right, "boolean"),
                          less = Binary("<", left, right, "boolean"),
                          lessOrEqual = Binary("<=", left, right, "boolean");
        EXPECT_FALSE(Computed<boolean>(equal, low, high));
        EXPECT_TRUE(Computed<boolean>(less, low, high));
        EXPECT_TRUE(Computed<boolean>(lessOrEqual, low, high));
        EXPECT_TRUE(Computed<boolean>(equal, low, same));
        EXPECT_FALSE(Computed<boolean>(less, low, same));
        EXPECT_TRUE(Computed<boolean>(lessOrEqual, low, same));
    };
    relations(stereo, stereo, Stereo(5, 5), Stereo(5, 6), Stereo(5, 5));
    relations(stereo, mono, Stereo(5, 5), Mono(6), Mono(5));
    relations(mono, stereo, Mono(5), Stereo(5, 6), Stereo(5, 5));

    auto const levels = [](std::string const& row, auto const& left, auto const& right) {
        return Both([&] { return Computed<stereo_volume>(row, left, right); });
    };
    EXPECT_EQ(Levels({{9, 11}}), levels(Binary("+", stereo, stereo, stereo), Stereo(7, 8), Stereo(2, 3)));
    EXPECT_EQ(Levels({{9, 10}}), levels(Binary("+", stereo, mono, stereo), Stereo(7, 8), Mono(2)));
    EXPECT_EQ(Levels({{9, 10}}), levels(Binary("+", mono, stereo, stereo), Mono(2), Stereo(7, 8)));
    EXPECT_EQ(Levels({{5, 5}}), levels(Binary("-", stereo, stereo, stereo), Stereo(7, 8), Stereo(2, 3)));
    EXPECT_EQ(Levels({{5, 6}}), levels(Binary("-", stereo, mono, stereo), Stereo(7, 8), Mono(2)));
    EXPECT_EQ(Levels({{3, 2}}), levels(Binary("-", mono, stereo, stereo), Mono(10), Stereo(7, 8)));
    EXPECT_EQ(Levels({{14, 16}}), levels(Binary("*", stereo, "integer", stereo), Stereo(7, 8), integer(2)));
    EXPECT_EQ(Levels({{14, 16}}), levels(Binary("*", "integer", stereo, stereo), integer(2), Stereo(7, 8)));
    EXPECT_EQ(Levels({{3, 4}}), levels(Binary("/", stereo, "integer", stereo), Stereo(7, 8), integer(2)));

    stereo_volume const both = Stereo(3, 9);
    auto const component = [&](std::string const& side) {
        return Got<sound_volume>("property \"" + side + " component\" \"" + side +
                                     " components\" [\"stereo volume\"]: \"sound volume\"",
                                 &both)
            .level;
    };
    EXPECT_EQ(3, component("left"));
    EXPECT_EQ(9, component("right"));
    output = {noErr, 0x00020001};
    beep = {noErr, 0x00040003};
    auto const system = [](std::string const& name) {
        return Both([&] {
            return Got<stereo_volume>("property \"" + name + "\" \"" + name + "s\": \"stereo volume\"");
        });
    };
    EXPECT_EQ(Levels({{1, 2}}), system("default sound volume"));
    EXPECT_EQ(Levels({{3, 4}}), system("system beep volume"));
}
