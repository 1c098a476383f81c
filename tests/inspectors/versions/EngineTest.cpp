// The shift-reduce parser, with the grammar of versions and with grammars made for one rule each.

#include <gtest/gtest.h>

#include <deque>
#include <initializer_list>
#include <vector>

#include "Hearing.h"
#include "versions/ShiftReduce.h"

namespace {

using Engine = Parser<VersionLanguage, VersionRPNSemantics>;
using State = Engine::State;
using S = VersionRPNSemantics;
using PartOfSpeech = VersionLanguage::PartOfSpeech;
using enum VersionLanguage::PartOfSpeech;

// A grammar that is made of rows of symbols. The symbols mean what a test wants them to.
class Rules {
  public:
    void Add(std::initializer_list<PartOfSpeech> symbols, PartOfSpeech result, void (S::*action)()) {
        std::vector<PartOfSpeech> const row = symbols;
        productions.push_back({action, static_cast<std::uint16_t>(row.size()), result});
        states.emplace_back(productions.back());
        for (std::size_t i = row.size() - 1; i > 0; --i) {
            State& behind = states.back();
            states.emplace_back(row[i], behind);
        }
        grammar.AttachProduction(row[0], states.back());
    }
    Grammar<VersionLanguage, S> const& TheGrammar() const { return grammar; }

  private:
    std::deque<Production<VersionLanguage, S>> productions;
    std::deque<State> states;
    Grammar<VersionLanguage, S> grammar;
};

void Take(Engine& engine, std::initializer_list<PartOfSpeech> symbols) {
    for (PartOfSpeech symbol : symbols) {
        engine.Append(symbol);
        engine.Shift();
    }
}

// An engine for versions.
class VersionEngine : public testing::Test {
  protected:
    /// What the semantics hears of a whole text.
    std::string HeardOf(std::initializer_list<PartOfSpeech> symbols) {
        engine.Reset();
        Take(engine, symbols);
        engine.Flush();
        return semantics.Heard();
    }
    /// A text whose last symbol is refused.
    void ExpectRefusal(std::initializer_list<PartOfSpeech> symbols, PartOfSpeech last) {
        engine.Reset();
        Take(engine, symbols);
        EXPECT_THROW(engine.Append(last), ParsingFailure) << symbols.size() << " symbols, then " << last;
    }
    void ExpectUnfinished(std::initializer_list<PartOfSpeech> symbols) {
        engine.Reset();
        Take(engine, symbols);
        EXPECT_THROW(engine.Flush(), ParsingFailure) << symbols.size() << " symbols";
    }

    Hearing semantics;
    Engine engine{VersionLanguage::TheGrammar(), semantics};
};

// An engine for rules.
class RuleEngine : public testing::Test {
  protected:
    Rules rules;
    Hearing semantics;
    Engine engine{rules.TheGrammar(), semantics};
};

}  // namespace

// ---- Versions

TEST_F(VersionEngine, ActsOnEachForm) {
    EXPECT_EQ("single", HeardOf({Number}));
    EXPECT_EQ("vers", HeardOf({Number, Period, Number}));
    EXPECT_EQ("vers bug", HeardOf({Number, Period, Number, Period, Number}));
    EXPECT_EQ("vers stage1", HeardOf({Number, Period, Number, StageLetter}));
    EXPECT_EQ("vers stage2", HeardOf({Number, Period, Number, StageLetter, Number}));
    EXPECT_EQ("vers bug stage1", HeardOf({Number, Period, Number, Period, Number, StageLetter}));
    EXPECT_EQ("vers bug stage2", HeardOf({Number, Period, Number, Period, Number, StageLetter, Number}));
    EXPECT_EQ("vers bug stage3", HeardOf({Number, Period, Number, Period, Number, Period, Number}));
}

TEST_F(VersionEngine, ActsAsSoonAsAProductionCannotGoOn) {
    Take(engine, {Number});
    EXPECT_EQ("", semantics.Heard());
    Take(engine, {Period, Number});
    EXPECT_EQ("vers", semantics.Heard());
    Take(engine, {Period, Number});
    EXPECT_EQ("bug", semantics.Heard());
    Take(engine, {StageLetter});
    EXPECT_EQ("", semantics.Heard());
    Take(engine, {Number});
    EXPECT_EQ("stage2", semantics.Heard());
    engine.Flush();
    EXPECT_EQ("", semantics.Heard());
}

TEST_F(VersionEngine, RefusesWhatBeginsNoProduction) {
    for (PartOfSpeech symbol : {Period, StageLetter, CompleteVersion}) ExpectRefusal({}, symbol);
}

TEST_F(VersionEngine, RefusesWhatIsNotExpected) {
    ExpectRefusal({Number, Period}, Period);
    ExpectRefusal({Number, Period}, StageLetter);
    ExpectRefusal({Number, Period, Number, Period}, Period);
    ExpectRefusal({Number, Period, Number, Period}, StageLetter);
}

TEST_F(VersionEngine, RefusesWhatFollowsAWholeText) {
    ExpectRefusal({Number}, Number);
    ExpectRefusal({Number}, StageLetter);
    ExpectRefusal({Number, Period, Number}, Number);
    ExpectRefusal({Number, Period, Number, StageLetter}, Period);
    ExpectRefusal({Number, Period, Number, StageLetter}, StageLetter);
    ExpectRefusal({Number, Period, Number, StageLetter, Number}, Period);
    ExpectRefusal({Number, Period, Number, Period, Number, Period, Number}, Period);
    ExpectRefusal({Number, Period, Number, Period, Number, Period, Number}, StageLetter);
    ExpectRefusal({Number, Period, Number, Period, Number, StageLetter}, Period);
}

// The letter shows that the number was all, and comes too late.
TEST_F(VersionEngine, ActsOnTheTextBeforeWhatFollowsIt) {
    Take(engine, {Number});
    EXPECT_THROW(engine.Append(StageLetter), ParsingFailure);
    EXPECT_EQ("single", semantics.Heard());
}

TEST_F(VersionEngine, RefusesTheEndOfAnUnfinishedText) {
    ExpectUnfinished({});
    ExpectUnfinished({Number, Period});
    ExpectUnfinished({Number, Period, Number, Period});
    ExpectUnfinished({Number, Period, Number, Period, Number, Period});
}

TEST_F(VersionEngine, StaysAcceptedAtTheEnd) {
    Take(engine, {Number, Period, Number, StageLetter, Number});
    EXPECT_NO_THROW(engine.Flush());
    EXPECT_NO_THROW(engine.Flush());
    EXPECT_THROW(engine.Append(Number), ParsingFailure);
    EXPECT_EQ("vers stage2", semantics.Heard());
}

TEST_F(VersionEngine, ForgetsATextAtAnyPlace) {
    PartOfSpeech const text[] = {Number, Period, Number, Period, Number, StageLetter, Number};
    for (std::size_t taken = 0; taken <= std::size(text); ++taken) {
        for (bool isAppended : {false, true}) {
            engine.Reset();
            for (std::size_t i = 0; i < taken; ++i) Take(engine, {text[i]});
            if (isAppended && taken < std::size(text)) engine.Append(text[taken]);
            semantics.Heard();
            EXPECT_EQ("single", HeardOf({Number})) << taken;
            EXPECT_EQ("vers bug stage3", HeardOf({Number, Period, Number, Period, Number, Period, Number}));
        }
    }
}

TEST_F(VersionEngine, ForgetsAFailure) {
    Take(engine, {Number});
    EXPECT_THROW(engine.Append(StageLetter), ParsingFailure);
    semantics.Heard();
    EXPECT_EQ("vers stage1", HeardOf({Number, Period, Number, StageLetter}));
    Take(engine, {});
    EXPECT_THROW(engine.Append(Number), ParsingFailure);
    EXPECT_EQ("single", HeardOf({Number}));
}

// ---- Rules

TEST_F(RuleEngine, PutsAResultWhereItIsExpected) {
    rules.Add({Number, SimpleVersion}, CompleteVersion, &S::BuildVers);
    rules.Add({Period, StageLetter}, SimpleVersion, &S::BuildSingle);
    Take(engine, {Number, Period, StageLetter});
    engine.Flush();
    EXPECT_EQ("single vers", semantics.Heard());
}

TEST_F(RuleEngine, GoesOverToTheAlternateThatExpectsAResult) {
    rules.Add({Number, StageLetter}, CompleteVersion, &S::AddStage1);
    rules.Add({Number, SimpleVersion, Number}, CompleteVersion, &S::AddStage2);
    rules.Add({Period, StageLetter}, SimpleVersion, &S::BuildSingle);
    Take(engine, {Number, Period, StageLetter, Number});
    EXPECT_EQ("single stage2", semantics.Heard());
    engine.Reset();
    Take(engine, {Number, StageLetter});
    EXPECT_EQ("stage1", semantics.Heard());
}

TEST_F(RuleEngine, BeginsAProductionWithAResult) {
    rules.Add({Number}, SimpleVersion, &S::BuildSingle);
    rules.Add({SimpleVersion}, BugfixVersion, &S::Addbugrev);
    rules.Add({BugfixVersion, Period}, CompleteVersion, &S::AddStage1);
    Take(engine, {Number});
    EXPECT_EQ("single bug", semantics.Heard());
    Take(engine, {Period});
    EXPECT_EQ("stage1", semantics.Heard());
}

TEST_F(RuleEngine, RefusesAResultThatIsNotExpected) {
    rules.Add({Number, Period}, SimpleVersion, &S::BuildVers);
    engine.Append(Number);
    engine.Shift();
    engine.Append(Period);
    EXPECT_THROW(engine.Shift(), ParsingFailure);
    EXPECT_EQ("vers", semantics.Heard());
}

TEST_F(RuleEngine, RefusesAWholeTextWithinAnotherProduction) {
    rules.Add({Number, SimpleVersion}, CompleteVersion, &S::BuildVers);
    rules.Add({Period, StageLetter}, CompleteVersion, &S::BuildSingle);
    Take(engine, {Number, Period});
    engine.Append(StageLetter);
    EXPECT_THROW(engine.Shift(), ParsingFailure);
    EXPECT_EQ("single", semantics.Heard());
}

TEST_F(RuleEngine, DoesNothingForAProductionWithoutAnAction) {
    rules.Add({Number, Period}, CompleteVersion, nullptr);
    Take(engine, {Number, Period});
    engine.Flush();
    EXPECT_EQ("", semantics.Heard());
}

// The end that comes first in the list keeps the period from being taken in.
TEST_F(RuleEngine, ReducesAtAnEndBeforeALaterAlternate) {
    rules.Add({Number, StageLetter}, CompleteVersion, &S::AddStage2);
    rules.Add({Number}, SimpleVersion, &S::BuildSingle);
    rules.Add({Number, Period}, CompleteVersion, &S::BuildVers);
    rules.Add({SimpleVersion, Period}, CompleteVersion, &S::AddStage1);
    Take(engine, {Number, Period});
    engine.Flush();
    EXPECT_EQ("single stage1", semantics.Heard());
    engine.Reset();
    Take(engine, {Number, StageLetter});
    EXPECT_EQ("stage2", semantics.Heard());
}

TEST_F(RuleEngine, TakesALaterEndOnlyWhenNothingElseFits) {
    rules.Add({Number, Period}, CompleteVersion, &S::BuildVers);
    rules.Add({Number}, SimpleVersion, &S::BuildSingle);
    rules.Add({SimpleVersion, StageLetter}, CompleteVersion, &S::AddStage1);
    Take(engine, {Number, Period});
    engine.Flush();
    EXPECT_EQ("vers", semantics.Heard());
    engine.Reset();
    Take(engine, {Number, StageLetter});
    engine.Flush();
    EXPECT_EQ("single stage1", semantics.Heard());
}

TEST_F(RuleEngine, ReducesStepByStepAtTheEnd) {
    rules.Add({Number, Period}, CompleteVersion, &S::BuildVers);
    rules.Add({Number}, SimpleVersion, &S::BuildSingle);
    rules.Add({SimpleVersion, Period}, CompleteVersion, &S::AddStage1);
    rules.Add({SimpleVersion}, BugfixVersion, &S::Addbugrev);
    rules.Add({BugfixVersion, Period}, CompleteVersion, &S::AddStage2);
    rules.Add({BugfixVersion}, CompleteVersion, &S::AddStage3);
    Take(engine, {Number});
    EXPECT_EQ("", semantics.Heard());
    engine.Flush();
    EXPECT_EQ("single bug stage3", semantics.Heard());
}

TEST_F(RuleEngine, HasRoomForAHundredStates) {
    rules.Add({Number, SimpleVersion}, SimpleVersion, nullptr);
    for (int i = 0; i < 100; ++i) Take(engine, {Number});
    engine.Append(Number);
    EXPECT_THROW(engine.Shift(), DataOverflow);
    engine.Reset();
    EXPECT_NO_THROW(Take(engine, {Number}));
}
