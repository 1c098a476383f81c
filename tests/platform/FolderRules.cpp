// The text of the table of special folders, and what it says.

#include "folders/FolderRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

using namespace Platform;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr OSType kFont = 0x666F6E74, kHelp = 0xC4686C70, kStartup = 0x73747274, kDisabled = 0x73747244;

// A table that knows these four types, and the variables A and HOME.
class Rules {
  public:
    explicit Rules(std::string_view text, std::string_view administrators = {}) {
        rules.Read("[font]\n[ƒhlp]\n[strt]\n[strD]\npair = strt\n", true, mistakes);
        rules.Read(text, true, mistakes);
        EXPECT_THAT(mistakes, IsEmpty());
        rules.Read(administrators, false, mistakes);
    }

    std::vector<std::string> Of(OSType type, Domain domain) const {
        return rules.PathsOf(type, domain, [](std::string_view name) {
            static std::map<std::string, std::string, std::less<>> const values{
                {"A", "/a"}, {"HOME", "/home/me"}, {"RELATIVE", "a/b"}, {"EMPTY", ""}};
            auto const found = values.find(name);
            return found == values.end() ? std::string() : found->second;
        });
    }
    std::vector<std::string> Fonts(Domain domain = Domain::System) const { return Of(kFont, domain); }

    FolderRules rules;
    std::vector<std::string> mistakes;
};

std::vector<std::string> MistakesIn(std::string_view text) { return Rules("", text).mistakes; }

}  // namespace

TEST(FolderRules, HaveFoldersOfEachDomainInTheirOrder) {
    Rules const rules(
        "[font]\nsystem = /s\nsystem=/t \n\n# a comment\nlocal = /l\nnetwork = /n\nuser = /u\r\nclassic = "
        "/c");
    EXPECT_THAT(rules.Fonts(Domain::System), ElementsAre("/s", "/t"));
    EXPECT_THAT(rules.Fonts(Domain::Local), ElementsAre("/l"));
    EXPECT_THAT(rules.Fonts(Domain::Network), ElementsAre("/n"));
    EXPECT_THAT(rules.Fonts(Domain::User), ElementsAre("/u"));
    EXPECT_THAT(rules.Fonts(Domain::Classic), ElementsAre("/c"));
    EXPECT_THAT(rules.Of(kStartup, Domain::System), IsEmpty());
    EXPECT_THAT(rules.Of(0x3F3F3F3F, Domain::System), IsEmpty());
}

TEST(FolderRules, KnowTheFlorinOfCodes) {
    EXPECT_THAT(Rules("[ƒhlp]\nuser = /h").Of(kHelp, Domain::User), ElementsAre("/h"));
}

TEST(FolderRules, MayHoldForEveryDomainWithoutLinesOfItsOwn) {
    Rules const rules("[font]\nevery = /e\nlocal = /l\nuser =\n");
    EXPECT_THAT(rules.Fonts(Domain::System), ElementsAre("/e"));
    EXPECT_THAT(rules.Fonts(Domain::Classic), ElementsAre("/e"));
    EXPECT_THAT(rules.Fonts(Domain::Local), ElementsAre("/l"));
    EXPECT_THAT(rules.Fonts(Domain::User), IsEmpty());
}

TEST(FolderRules, MeanTheSystemDomainWhereNothingIsSaid) {
    EXPECT_EQ(Domain::System, Rules("").rules.UsualDomainOf(kFont));
    EXPECT_EQ(Domain::System, Rules("").rules.UsualDomainOf(0x3F3F3F3F));
    EXPECT_EQ(Domain::User, Rules("[font]\nusual = user").rules.UsualDomainOf(kFont));
    EXPECT_EQ(Domain::Local,
              Rules("[font]\nusual = user", "[font]\nusual = local").rules.UsualDomainOf(kFont));
}

TEST(FolderRules, PairTypesInDomainsWithoutLines) {
    Rules const rules("[strt]\nsystem = /s/on", "[strD]\nuser = /elsewhere\nlocal =");
    EXPECT_EQ(kStartup, rules.rules.PairOf(kDisabled, Domain::System));
    EXPECT_EQ(kStartup, rules.rules.PairOf(kDisabled, Domain::Network));
    EXPECT_EQ(std::nullopt, rules.rules.PairOf(kDisabled, Domain::User));
    EXPECT_EQ(std::nullopt, rules.rules.PairOf(kDisabled, Domain::Local));
    EXPECT_EQ(std::nullopt, rules.rules.PairOf(kStartup, Domain::Network));
    EXPECT_EQ(std::nullopt, rules.rules.PairOf(0x3F3F3F3F, Domain::System));
    EXPECT_EQ("/s/on (Disabled)", DisabledPartner("/s/on/"));
}

TEST(FolderRules, DoNotPairInACircle) {
    EXPECT_THAT(MistakesIn("[strt]\npair = strD"),
                ElementsAre("line 2: \"strD\" is a pair of this type itself"));
    EXPECT_THAT(MistakesIn("[font]\npair = font"),
                ElementsAre("line 2: \"font\" is a pair of this type itself"));
    EXPECT_THAT(MistakesIn("[font]\npair = strD"), IsEmpty());
}

TEST(FolderRules, ReplaceVariables) {
    Rules const rules(
        "[font]\nsystem = $A/x$A\nsystem = ${A}b/$HOME\nsystem = ~/f\nsystem = ~\nsystem = /$A");
    EXPECT_THAT(rules.Fonts(), ElementsAre("/a/x/a", "/ab//home/me", "/home/me/f", "/home/me", "//a"));
}

TEST(FolderRules, LeaveOutLinesWhoseVariablesHaveNoPath) {
    EXPECT_THAT(Rules("[font]\nsystem = $B/x\nsystem = $EMPTY/y\nsystem = $RELATIVE/z\nsystem = /s").Fonts(),
                ElementsAre("/s"));
}

TEST(FolderRules, HaveVariablesOfTheirOwn) {
    Rules const rules("[font]\nsystem = $MAC/F\nsystem = $A\n",
                      "[variables]\nMAC = ~/mac\nA = /other\n[variables]\nMAC = $HOME/Mac");
    EXPECT_THAT(rules.mistakes, IsEmpty());
    EXPECT_THAT(rules.Fonts(), ElementsAre("/home/me/Mac/F", "/other"));
}

TEST(FolderRules, HaveVariablesThatUseThoseAboveThem) {
    Rules const rules("[font]\nsystem = $C\nsystem = $D\n",
                      "[variables]\nB = $A/b\nC = ${B}c\nD = $E\nE = /e\nA = $A/own\n");
    EXPECT_THAT(rules.mistakes, IsEmpty());
    EXPECT_THAT(rules.Fonts(), ElementsAre("/a/bc"));
}

TEST(FolderRules, MayTellOfEveryDomainBehindOne) {
    std::string_view const builtIn = "[font]\nsystem = /s\nlocal = /l";
    Rules const rules(builtIn, "[font]\nlocal = /mine\nevery = /e\nlocal = /too");
    EXPECT_THAT(rules.Fonts(Domain::Local), ElementsAre("/mine", "/too"));
    EXPECT_THAT(rules.Fonts(Domain::System), ElementsAre("/e"));
}

TEST(FolderRules, StayInBounds) {
    std::string doubled = "[variables]\nV0 = /0123456789\n", folders = "[font]\n",
                variables = "[variables]\n";
    for (int i = 0; i < 40; ++i)
        doubled +=
            "V" + std::to_string(i + 1) + " = $V" + std::to_string(i) + "$V" + std::to_string(i) + "\n";
    EXPECT_EQ("line 11: \"V9\" is longer than the 4096 bytes of a path", MistakesIn(doubled).at(0));
    for (int i = 0; i < 101; ++i) {
        folders += "user = /x\n";
        variables += "V" + std::to_string(i) + " = /x\n";
    }
    EXPECT_THAT(MistakesIn(folders),
                ElementsAre("line 102: there are more than 100 folders of one type and domain"));
    EXPECT_THAT(MistakesIn(variables), ElementsAre("line 102: there are more than 100 variables"));
    EXPECT_THAT(MistakesIn("[font]\nuser = /" + std::string(4095, 'a')), IsEmpty());
    EXPECT_THAT(MistakesIn("[font]\nuser = /" + std::string(4096, 'a')),
                ElementsAre("line 2: \"/" + std::string(99, 'a') + "…\" is no absolute path"));
    Rules const rules("[font]\nuser = $A/" + std::string(4090, 'b') + "\nuser = $A/" +
                      std::string(4094, 'b'));
    EXPECT_THAT(rules.Fonts(Domain::User), testing::SizeIs(1));
}

TEST(FolderRules, StopAtTenMistakes) {
    std::string text = "[font]\n";
    for (int i = 0; i < 100; ++i) text += "nonsense\n";
    EXPECT_THAT(MistakesIn(text), testing::SizeIs(10));
}

TEST(FolderRules, OfTheAdministratorReplaceThoseOfATypeAndADomain) {
    std::string_view const builtIn = "[font]\nsystem = /s\nsystem = /t\nlocal = /l\n[strt]\nsystem = /x";
    Rules const rules(builtIn, "[font]\nsystem = /mine\nsystem = /too\n[font]\nsystem = /and");
    EXPECT_THAT(rules.Fonts(), ElementsAre("/mine", "/too", "/and"));
    EXPECT_THAT(rules.Fonts(Domain::Local), ElementsAre("/l"));
    EXPECT_THAT(rules.Of(kStartup, Domain::System), ElementsAre("/x"));
    EXPECT_THAT(Rules(builtIn, "[font]\nsystem =").Fonts(), IsEmpty());
    Rules const every(builtIn, "[font]\nevery = /e\nlocal = /mine");
    EXPECT_THAT(every.Fonts(), ElementsAre("/e"));
    EXPECT_THAT(every.Fonts(Domain::Local), ElementsAre("/mine"));
}

TEST(FolderRules, TellEachMistakeWithItsLine) {
    EXPECT_THAT(MistakesIn("[fnot]\nsystem = nonsense\n\n[font]\nsytem = /s\nsystem = /t\n"),
                ElementsAre("line 1: there is no type of folder \"fnot\"",
                            "line 5: \"sytem\" is none of the domains system, local, network, user and "
                            "classic, nor every, usual, pair"));
    EXPECT_THAT(MistakesIn("system = /s\n"), ElementsAre("line 1: \"system\" stands before any [TYPE]"));
    EXPECT_THAT(MistakesIn("[font\n"), ElementsAre("line 1: \"[font\" has no ] at its end"));
    EXPECT_THAT(MistakesIn("[font]\nwords\n"),
                ElementsAre("line 2: \"words\" is neither [TYPE] nor KEY = VALUE"));
    EXPECT_THAT(MistakesIn("[font]\nusual = nobody\n"), testing::SizeIs(1));
    for (std::string const type : {"nothing", "none"})
        EXPECT_THAT(MistakesIn("[font]\npair = " + type + "\n"),
                    ElementsAre("line 2: there is no type of folder \"" + type + "\""));
    EXPECT_THAT(MistakesIn("[variables]\nA B = /s\n"),
                ElementsAre("line 2: \"A B\" is no name of a variable"));
}

TEST(FolderRules, WantAbsolutePaths) {
    for (std::string const path : {"s", "./s", "~me/s", "a$A", "$", "/s$", "/s$/t", "/${A", "/${}", "$-"}) {
        EXPECT_THAT(MistakesIn("[font]\nuser = " + path),
                    ElementsAre("line 2: \"" + path + "\" is no absolute path"));
        EXPECT_THAT(MistakesIn("[variables]\nA = " + path),
                    ElementsAre("line 2: \"" + path + "\" is no absolute path"));
    }
    EXPECT_THAT(MistakesIn(std::string_view("[font]\nuser = /a\0b", 18)), testing::SizeIs(1));
}

TEST(FolderRules, TakeAnyBytes) {
    EXPECT_THAT(MistakesIn("\xEF\xBB\xBF[font]\nuser = /caf\xE9\n"), IsEmpty());
    EXPECT_THAT(MistakesIn("[\xC6]\n"), testing::SizeIs(1));
    EXPECT_THAT(MistakesIn("[]\n[ƒƒƒƒƒ]\n[fon]\n="), testing::SizeIs(3));
}
