#include "versions/VersionParser.h"

#include <cstdint>
#include <limits>

#include "Evaluator/Exceptions.h"

void VersionParser::AcceptReservedWord(VersionParsingAction action) {
    Accept(action.partOfSpeech, action.value);
}

void VersionParser::AcceptOrdinaryWord(ConstData) { throw ParsingFailure(); }
void VersionParser::AcceptWordOverflow() { throw ParsingFailure(); }

void VersionParser::Reset() {
    engine.Reset();
    semantics.Reset();
}

void VersionParser::AcceptNumeral(unsigned long long number) {
    if (number > std::numeric_limits<std::uint32_t>::max()) throw ParsingFailure();
    Accept(VersionLanguage::Number, number);
}

void VersionParser::AcceptCharacter(unsigned char byte) {
    if (byte != '.') throw ParsingFailure();
    engine.Append(VersionLanguage::Period);
    engine.Shift();
}

void VersionParser::AcceptNumeralOverflow() { throw ParsingFailure(); }
void VersionParser::AcceptEnd() { engine.Flush(); }

void VersionParser::Accept(VersionLanguage::PartOfSpeech partOfSpeech, unsigned long number) {
    engine.Append(partOfSpeech);
    semantics.PushNumber(number);
    engine.Shift();
}
