// Any bytes as a desktop entry, as a written value, and as the value of a command.

#include "applications/DesktopEntry.h"

#include "Invariants.h"

using namespace Platform;

namespace {

void HoldValue(std::string_view text, std::string_view group, std::string_view key) {
    auto const value = ValueInGroup(text, group, key);
    if (!value || value->empty()) return;
    Fuzz::Hold(value->data() >= text.data() && value->data() + value->size() <= text.data() + text.size(),
               "a value lies within its text");
    Fuzz::Hold(value->find('\n') == value->npos, "a value is of one line");
}

// The text as it would be written.
std::string Escaped(std::string_view text) {
    std::string value;
    for (char const c : text) {
        constexpr std::string_view meanings = " \n\t\r\\", letters = "sntr\\";
        std::size_t const which = meanings.find(c);
        if (which != meanings.npos) value += '\\';
        value += which != meanings.npos ? letters[which] : c;
    }
    return value;
}

std::string Quoted(std::string_view word) {
    std::string quoted = "\"";
    for (char const c : word) {
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos) quoted += '\\';
        quoted += c;
    }
    return quoted + "\" ";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const text = Fuzz::AsQuery(data, size);
    HoldValue(text, "Desktop Entry", "Exec");
    HoldValue(text, "a", "a");
    ParseDesktopEntry(text);
    ParseDesktopEntry("[Desktop Entry]\nType=Application\nX-Creator-Code=" + std::string(text));
    Fuzz::Hold(Unescaped(Escaped(text)) == text, "what is escaped is read as it was");
    for (std::string const& element : ElementsOf(text)) Fuzz::Hold(!element.empty(), "elements have bytes");
    std::vector<std::string> const command = CommandOf(text);
    std::string quoted;
    for (std::string const& word : command) {
        Fuzz::Hold(!word.empty(), "words have bytes");
        quoted += Quoted(word);
    }
    Fuzz::Hold(CommandOf(quoted) == command, "quoted words are what they were");
    return 0;
}
