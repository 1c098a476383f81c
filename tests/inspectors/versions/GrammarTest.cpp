// Grammars as the states that productions are attached to.

#include <gtest/gtest.h>

#include "Hearing.h"
#include "versions/ShiftReduce.h"

namespace {

using State = Grammar<VersionLanguage, VersionRPNSemantics>::State;
using TheProduction = Production<VersionLanguage, VersionRPNSemantics>;
using enum VersionLanguage::PartOfSpeech;

char const* Name(VersionLanguage::PartOfSpeech symbol) {
    static char const* const names[] = {"Number", "Period", "Letter", "Simple", "Bugfix", "Complete"};
    return names[symbol];
}

std::string ActionOf(TheProduction const& production) {
    Hearing semantics;
    if (production.action == nullptr) return "nothing";
    (semantics.*production.action)();
    return semantics.Heard();
}

// A state with all that follows: alternates with "|" between, what a final state does in braces.
std::string Tree(State const* state) {
    if (state == nullptr) return "none";
    std::string tree;
    for (; state != nullptr; state = state->alternate) {
        if (!tree.empty()) tree += " | ";
        if (state->IsFinal()) {
            TheProduction const& production = *state->production;
            tree += "{" + ActionOf(production) + ": " + std::to_string(production.length) + " " +
                    Name(production.result) + "}";
        } else {
            bool const isFork = state->next->alternate != nullptr;
            tree += std::string(Name(state->expected)) + " " + (isFork ? "(" : "") + Tree(state->next) +
                    (isFork ? ")" : "");
        }
    }
    return tree;
}

TheProduction const kPlain{nullptr, 1, SimpleVersion};
TheProduction const kOther{nullptr, 2, BugfixVersion};

// A chain of up to three states behind the first symbol.
struct Chain {
    explicit Chain(TheProduction const& production) : end(production) {}
    State end;
};
struct ChainOfOne : Chain {
    ChainOfOne(TheProduction const& production, VersionLanguage::PartOfSpeech symbol)
        : Chain(production), first(symbol, end) {}
    State first;
};
struct ChainOfTwo : Chain {
    ChainOfTwo(TheProduction const& production, VersionLanguage::PartOfSpeech one,
               VersionLanguage::PartOfSpeech two)
        : Chain(production), second(two, end), first(one, second) {}
    State second, first;
};

}  // namespace

// ---- States

TEST(GrammaticState, IsFinalAtTheEndOfItsProduction) {
    ChainOfOne const chain(kPlain, Period);
    EXPECT_TRUE(chain.end.IsFinal());
    EXPECT_EQ(CompleteVersion, chain.end.expected);
    EXPECT_FALSE(chain.first.IsFinal());
    EXPECT_EQ(Period, chain.first.expected);
    EXPECT_EQ(&chain.end, chain.first.next);
    EXPECT_EQ(&kPlain, chain.first.production);
    EXPECT_EQ(&kPlain, chain.end.production);
}

TEST(GrammaticState, FindsTheAlternateThatExpectsASymbol) {
    ChainOfOne one(kPlain, Period), two(kPlain, Number), three(kPlain, StageLetter);
    one.first.alternate = &two.first;
    two.first.alternate = &three.first;
    EXPECT_EQ(&one.first, one.first.AlternateExpecting(Period));
    EXPECT_EQ(&two.first, one.first.AlternateExpecting(Number));
    EXPECT_EQ(&three.first, one.first.AlternateExpecting(StageLetter));
    EXPECT_EQ(nullptr, one.first.AlternateExpecting(SimpleVersion));
    EXPECT_EQ(nullptr, one.first.AlternateExpecting(CompleteVersion));
    EXPECT_EQ(nullptr, two.first.AlternateExpecting(Period));
}

TEST(GrammaticState, FindsTheFirstOfTwoThatExpectASymbol) {
    ChainOfOne one(kPlain, Period), two(kOther, Period);
    one.first.alternate = &two.first;
    EXPECT_EQ(&one.first, one.first.AlternateExpecting(Period));
}

TEST(GrammaticState, FindsAFinalOneBeforeALaterOneThatExpectsTheSymbol) {
    ChainOfOne one(kPlain, Period), two(kPlain, Number);
    Chain end(kOther);
    one.first.alternate = &end.end;
    end.end.alternate = &two.first;
    EXPECT_EQ(&one.first, one.first.AlternateExpecting(Period));
    EXPECT_EQ(&end.end, one.first.AlternateExpecting(Number));
    EXPECT_EQ(&end.end, one.first.AlternateExpecting(CompleteVersion));
}

// ---- Attaching

TEST(Grammar, BeginsWithNoProduction) {
    Grammar<VersionLanguage, VersionRPNSemantics> const grammar;
    for (std::uint32_t symbol = 0; symbol < VersionLanguage::kPartsOfSpeech; ++symbol)
        EXPECT_EQ(nullptr, grammar.StartOf(static_cast<VersionLanguage::PartOfSpeech>(symbol)));
}

TEST(Grammar, StartsAProductionAtItsChain) {
    ChainOfOne chain(kPlain, Period);
    Grammar<VersionLanguage, VersionRPNSemantics> grammar;
    grammar.AttachProduction(Number, chain.first);
    EXPECT_EQ(&chain.first, grammar.StartOf(Number));
    EXPECT_EQ(nullptr, grammar.StartOf(Period));
}

TEST(Grammar, SharesTheStatesOfACommonBeginning) {
    ChainOfTwo one(kPlain, Period, Number), two(kOther, Period, StageLetter);
    Grammar<VersionLanguage, VersionRPNSemantics> grammar;
    grammar.AttachProduction(Number, one.first);
    grammar.AttachProduction(Number, two.first);
    EXPECT_EQ(&one.first, grammar.StartOf(Number));
    EXPECT_EQ(nullptr, one.first.alternate);
    EXPECT_EQ(&two.second, one.second.alternate);
    EXPECT_EQ("Period (Number {nothing: 1 Simple} | Letter {nothing: 2 Bugfix})",
              Tree(grammar.StartOf(Number)));
}

TEST(Grammar, HangsAnEndBehindWhatGoesOn) {
    ChainOfTwo longer(kPlain, Period, Number);
    ChainOfOne shorter(kOther, Period);
    Grammar<VersionLanguage, VersionRPNSemantics> grammar;
    grammar.AttachProduction(Number, longer.first);
    grammar.AttachProduction(Number, shorter.first);
    EXPECT_EQ("Period (Number {nothing: 1 Simple} | {nothing: 2 Bugfix})", Tree(grammar.StartOf(Number)));
}

TEST(Grammar, HangsWhatGoesOnBehindAnEnd) {
    ChainOfTwo longer(kPlain, Period, Number);
    ChainOfOne shorter(kOther, Period);
    Grammar<VersionLanguage, VersionRPNSemantics> grammar;
    grammar.AttachProduction(Number, shorter.first);
    grammar.AttachProduction(Number, longer.first);
    EXPECT_EQ("Period ({nothing: 2 Bugfix} | Number {nothing: 1 Simple})", Tree(grammar.StartOf(Number)));
}

TEST(Grammar, KeepsTheOrderOfAlternates) {
    ChainOfOne one(kPlain, Period), two(kPlain, StageLetter), three(kPlain, Number);
    ChainOfTwo four(kOther, StageLetter, Number);
    Grammar<VersionLanguage, VersionRPNSemantics> grammar;
    grammar.AttachProduction(Number, one.first);
    grammar.AttachProduction(Number, two.first);
    grammar.AttachProduction(Number, three.first);
    grammar.AttachProduction(Number, four.first);
    EXPECT_EQ(
        "Period {nothing: 1 Simple} | Letter ({nothing: 1 Simple} | Number {nothing: 2 Bugfix}) | "
        "Number {nothing: 1 Simple}",
        Tree(grammar.StartOf(Number)));
}

TEST(Grammar, KeepsProductionsOfEachFirstSymbolApart) {
    ChainOfOne one(kPlain, Period), two(kOther, Period);
    Grammar<VersionLanguage, VersionRPNSemantics> grammar;
    grammar.AttachProduction(Number, one.first);
    grammar.AttachProduction(StageLetter, two.first);
    EXPECT_EQ("Period {nothing: 1 Simple}", Tree(grammar.StartOf(Number)));
    EXPECT_EQ("Period {nothing: 2 Bugfix}", Tree(grammar.StartOf(StageLetter)));
}

// ---- Of versions

TEST(VersionLanguage, HasTheProductionsOfItsForms) {
    auto const& grammar = VersionLanguage::TheGrammar();
    EXPECT_EQ("Period Number {vers: 3 Simple} | {single: 1 Complete}", Tree(grammar.StartOf(Number)));
    EXPECT_EQ(
        "Period Number {bug: 3 Bugfix} | Letter (Number {stage2: 3 Complete} | {stage1: 2 Complete}) | "
        "{nothing: 1 Complete}",
        Tree(grammar.StartOf(SimpleVersion)));
    EXPECT_EQ(
        "Letter (Number {stage2: 3 Complete} | {stage1: 2 Complete}) | Period Number {stage3: 3 Complete} | "
        "{nothing: 1 Complete}",
        Tree(grammar.StartOf(BugfixVersion)));
    for (auto symbol : {Period, StageLetter, CompleteVersion}) EXPECT_EQ(nullptr, grammar.StartOf(symbol));
}

TEST(VersionLanguage, HasOneGrammar) {
    EXPECT_EQ(&VersionLanguage::TheGrammar(), &VersionLanguage::TheGrammar());
}

TEST(VersionLanguage, NumbersItsPartsOfSpeech) {
    static_assert(Number == 0 && Period == 1 && StageLetter == 2 && SimpleVersion == 3 &&
                  BugfixVersion == 4 && CompleteVersion == 5);
    static_assert(sizeof(VersionLanguage::PartOfSpeech) == 4);
}
