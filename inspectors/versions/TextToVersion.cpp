#include <algorithm>
#include <string_view>

#include "Evaluator/Text.h"
#include "versions/Version.h"
#include "versions/VersionAutomaton.h"
#include "versions/VersionLexer.h"
#include "versions/VersionParser.h"

namespace {

// The bytes of which numeric versions are made. A text with another one is refused at once: the parser would
// refuse it too, but with an exception, which takes twenty times as long.
constexpr Evaluator::ByteSet kBytesOfVersions([](unsigned char byte) {
    return std::string_view("0123456789.abdfABDF").find(static_cast<char>(byte)) != std::string_view::npos;
});

bool MayBeNumeric(ConstData text) {
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char byte) { return kBytesOfVersions.Contains(byte); });
}

MacVersion TextualVersion(ConstData text) {
    MacVersion version;
    version.text.assign(text.begin(), text.end());
    return version;
}

}  // namespace

MacVersion TextToVersion(ConstData const& text) {
    if (!MayBeNumeric(text)) return TextualVersion(text);
    static VersionAutomaton automaton;
    static VersionParser parser(automaton);
    static VersionLexer lexer(parser);
    try {
        lexer.Start();
        lexer.Receive(text);
        lexer.ReceiveEnd();
        return automaton.Result();
    } catch (...) {
        return TextualVersion(text);
    }
}
