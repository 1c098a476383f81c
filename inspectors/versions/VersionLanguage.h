#pragma once

// The language of version texts. N is a row of digits, S one of the letters a, b, d and f of either case:
//
//     N   N.N   N.N.N   N.NS   N.NSN   N.N.NS   N.N.NSN   N.N.N.N
//
// It is parsed in three stages. VersionLexer cuts the text into numbers, words and single characters;
// VersionParser turns these into parts of speech and recognises the productions of the grammar;
// VersionAutomaton computes the version as they are recognised, with a stack of numbers.

#include <cstddef>
#include <cstdint>

#include "versions/ShiftReduce.h"

/// What is computed of a text. Numbers are pushed as they come; an action takes those that it needs from the
/// top. The actions throw VersionDataOutOfBounds for a number that its field cannot hold.
class VersionRPNSemantics {
  public:
    virtual void Reset() = 0;
    /// Requires: the number has 32 bits.
    virtual void PushNumber(unsigned long number) = 0;
    virtual void BuildSingle() = 0;  // major
    virtual void BuildVers() = 0;    // major minor
    virtual void Addbugrev() = 0;    // bug revision
    virtual void AddStage1() = 0;    // stage
    virtual void AddStage2() = 0;    // stage number
    virtual void AddStage3() = 0;    // fourth number

  protected:
    ~VersionRPNSemantics() = default;
};

struct VersionLanguage {
    enum PartOfSpeech : std::uint32_t {
        Number,
        Period,
        StageLetter,
        SimpleVersion,    // major "." minor
        BugfixVersion,    // major "." minor "." bug revision
        CompleteVersion,  // a whole text; also its end
    };
    static constexpr std::size_t kPartsOfSpeech = 6;

    /// The grammar, built when it is first asked for.
    static Grammar<VersionLanguage, VersionRPNSemantics> const& TheGrammar();
};

/// What a reserved word is, and its number.
struct VersionParsingAction {
    VersionLanguage::PartOfSpeech partOfSpeech;
    std::uint32_t value;
};
