#include "Evaluator/Exceptions.h"
#include "versions/Version.h"
#include "versions/VersionAutomaton.h"
#include "versions/VersionLexer.h"
#include "versions/VersionParser.h"

MacVersion TextToVersion(ConstData const& text) {
    static VersionAutomaton automaton;
    static VersionParser parser(automaton);
    static VersionLexer lexer(parser);
    try {
        lexer.Start();
        lexer.Receive(text);
        lexer.ReceiveEnd();
        return automaton.Result();
    } catch (...) {
        MacVersion textual;
        textual.text.assign(text.begin(), text.end());
        return textual;
    }
}
