#pragma once

#include "versions/VersionLanguage.h"
#include "versions/VersionLexer.h"

/// Turns tokens into parts of speech and drives the grammar. Throws ParsingFailure for a token that no
/// version has, and what the grammar and the semantics throw.
class VersionParser final : public VersionLexemeAcceptor {
  public:
    /// The semantics must outlive the parser.
    explicit VersionParser(VersionRPNSemantics& itsSemantics)
        : semantics(itsSemantics), engine(VersionLanguage::TheGrammar(), itsSemantics) {}
    ~VersionParser() override = default;

    void AcceptReservedWord(VersionParsingAction action) override;
    void AcceptOrdinaryWord(ConstData word) override;
    void AcceptWordOverflow() override;
    void Reset() override;
    void AcceptNumeral(unsigned long long number) override;
    void AcceptCharacter(unsigned char byte) override;
    void AcceptNumeralOverflow() override;
    void AcceptEnd() override;

  private:
    void Accept(VersionLanguage::PartOfSpeech partOfSpeech, unsigned long number);

    VersionRPNSemantics& semantics;
    Parser<VersionLanguage, VersionRPNSemantics> engine;
};
