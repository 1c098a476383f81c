#include "versions/VersionLanguage.h"

namespace {

using TheProduction = Production<VersionLanguage, VersionRPNSemantics>;
using State = Grammar<VersionLanguage, VersionRPNSemantics>::State;
using PartOfSpeech = VersionLanguage::PartOfSpeech;

// A production with its states, by the number of its symbols. The members stand in the order in which they
// need each other.

struct OfOne {
    TheProduction production;
    State end{production};
    State& Chain() { return end; }
};

struct OfTwo {
    TheProduction production;
    PartOfSpeech second;
    State end{production};
    State behindFirst{second, end};
    State& Chain() { return behindFirst; }
};

struct OfThree {
    TheProduction production;
    PartOfSpeech second, third;
    State end{production};
    State behindSecond{third, end};
    State behindFirst{second, behindSecond};
    State& Chain() { return behindFirst; }
};

}  // namespace

Grammar<VersionLanguage, VersionRPNSemantics> const& VersionLanguage::TheGrammar() {
    using S = VersionRPNSemantics;
    static OfThree makesimple1{{&S::BuildVers, 3, SimpleVersion}, Period, Number};
    static OfThree makesimple2{{&S::Addbugrev, 3, BugfixVersion}, Period, Number};
    static OfThree makevers1{{&S::AddStage2, 3, CompleteVersion}, StageLetter, Number};
    static OfThree makevers2{{&S::AddStage2, 3, CompleteVersion}, StageLetter, Number};
    static OfThree makevers3{{&S::AddStage3, 3, CompleteVersion}, Period, Number};
    static OfTwo makevers4{{&S::AddStage1, 2, CompleteVersion}, StageLetter};
    static OfTwo makevers5{{&S::AddStage1, 2, CompleteVersion}, StageLetter};
    static OfOne makevers6{{nullptr, 1, CompleteVersion}};
    static OfOne makevers7{{nullptr, 1, CompleteVersion}};
    static OfOne makevers8{{&S::BuildSingle, 1, CompleteVersion}};

    // Of productions that begin alike the alternates are tried in the order in which they are attached.
    static auto const g = [] {
        Grammar<VersionLanguage, VersionRPNSemantics> grammar;
        grammar.AttachProduction(Number, makesimple1.Chain());
        grammar.AttachProduction(SimpleVersion, makesimple2.Chain());
        grammar.AttachProduction(SimpleVersion, makevers1.Chain());
        grammar.AttachProduction(BugfixVersion, makevers2.Chain());
        grammar.AttachProduction(BugfixVersion, makevers3.Chain());
        grammar.AttachProduction(SimpleVersion, makevers4.Chain());
        grammar.AttachProduction(BugfixVersion, makevers5.Chain());
        grammar.AttachProduction(SimpleVersion, makevers6.Chain());
        grammar.AttachProduction(BugfixVersion, makevers7.Chain());
        grammar.AttachProduction(Number, makevers8.Chain());
        return grammar;
    }();
    return g;
}
