#include "Transcription.h"

#include <strings.h>

#include <algorithm>

namespace Transcription {
namespace {

constexpr char kCR = 13;
constexpr char kLF = 10;

bool EndsLines(char byte) { return byte == kCR || byte == kLF; }
bool IsBlank(char byte) { return byte == ' ' || byte == '\t'; }

bool StartsWith(std::string_view text, std::string_view prefix) {
    if (prefix.size() > text.size()) return false;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        if (text[i] != prefix[i]) return false;
    }
    return true;
}

bool Contains(std::string_view text, std::string_view part) {
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (StartsWith(text.substr(i), part)) return true;
    }
    return false;
}

std::size_t SkipBlanks(std::string const& line, std::size_t from) {
    while (from < line.size() && IsBlank(line[from])) ++from;
    return from;
}

// Requires: the line has as many bytes behind `from`.
bool SameButForCase(std::string const& line, std::size_t from, std::string const& asked) {
    return strncasecmp(line.c_str() + from, asked.c_str(), asked.size()) == 0;
}

}  // namespace

Scanner::Scanner(std::string_view fork, std::size_t bufferSize, std::uint32_t start)
    : fork(fork), buffer(bufferSize) {
    Start(start);
}

// Starts the reader, fills the whole buffer once, and scans the first line.
void Scanner::Start(std::uint32_t start) {
    position = start;
    length = static_cast<std::uint32_t>(fork.size());
    ReadFromFile(0, buffer.size());
    ScanForLine(0, 0);
}

// As much of the fork as there is and as there is room for; nothing at its end and behind it.
std::size_t Scanner::TolerantRead(std::size_t into, std::size_t room) {
    std::size_t count = 0;
    while (count < room && static_cast<std::size_t>(position) < fork.size()) {
        buffer[into + count] = fork[static_cast<std::size_t>(position)];
        ++position;
        ++count;
    }
    return count;
}

// The data end at the end of what was read.
void Scanner::ReadFromFile(std::size_t into, std::size_t room) { dataEnd = into + TolerantRead(into, room); }

// The position is not below the length.
bool Scanner::AtEnd() const { return position >= static_cast<std::int64_t>(length); }

// The first CR or LF, or the end.
std::size_t Scanner::FindLineEnd(std::size_t from, std::size_t end) const {
    for (std::size_t i = from; i != end; ++i) {
        if (EndsLines(buffer[i])) return i;
    }
    return end;
}

Scanner::Span Scanner::InitialLineEnding(std::size_t from, std::size_t end, bool atEnd) const {
    // No bytes: no ending.
    if (from == end) return {from, from};
    // One byte: the ending at the end of the fork; none while there is more, for the caller to read it.
    if (end - from == 1) return {from, atEnd ? from + 1 : from};
    // The second byte belongs to it when it is the other one of the two.
    bool const isPair = buffer[from + 1] != buffer[from] && EndsLines(buffer[from + 1]);
    return {from, from + (isPair ? 2 : 1)};
}

void Scanner::ScanForLine(std::size_t lineStart, std::size_t scanFrom) {
    line = {lineStart, FindLineEnd(scanFrom, dataEnd)};
    ending = InitialLineEnding(line.end, dataEnd, AtEnd());
}

Scanner& Scanner::operator++() {
    // The next line begins behind the ending.
    ScanForLine(ending.end, ending.end);
    if (ending.begin != ending.end) return *this;
    // It fills the buffer and is cut here.
    if (line.begin == 0) return *this;
    // The last line, without an ending.
    if (AtEnd()) return *this;
    // The text alone goes to the front, without an ending byte that stands behind it; the rest is read.
    std::size_t const text = line.end - line.begin;
    for (std::size_t i = 0; i < text; ++i) buffer[i] = buffer[line.begin + i];
    ReadFromFile(text, buffer.size() - text);
    ScanForLine(0, text);
    return *this;
}

// Everything has been read, and the line begins where the data ends.
bool Scanner::IsExhausted() const { return AtEnd() && line.begin == dataEnd; }

std::string Scanner::Line() const { return {buffer.data() + line.begin, buffer.data() + line.end}; }

std::string Scanner::Ending() const { return {buffer.data() + ending.begin, buffer.data() + ending.end}; }

std::uint32_t Scanner::CurrentLineLength() const {
    if (ending.begin == ending.end) return static_cast<std::uint32_t>(line.end - line.begin);
    return static_cast<std::uint32_t>(ending.end - line.begin);
}

std::optional<Line> NumberedLine(std::string_view fork, std::int64_t number) {
    if (number == 0) return std::nullopt;
    Scanner scanner(fork, kLineBuffer, 0);
    std::int64_t counter = 0;
    std::uint32_t offset = 0;
    while (!scanner.IsExhausted() && counter < number - 1) {
        offset += scanner.CurrentLineLength();
        ++counter;
        ++scanner;
    }
    if (scanner.IsExhausted()) return std::nullopt;
    // The number of a negative one is kept.
    return Line{scanner.Line(), number - 1, offset, offset + scanner.CurrentLineLength()};
}

std::vector<Line> Lines(std::string_view fork) {
    std::vector<Line> lines;
    std::uint32_t offset = 0;
    std::int64_t number = 0;
    for (Scanner scanner(fork, kLineBuffer, 0); !scanner.IsExhausted(); ++scanner) {
        std::uint32_t const end = offset + scanner.CurrentLineLength();
        lines.push_back({scanner.Line(), number, offset, end});
        offset = end;
        ++number;
    }
    return lines;
}

std::vector<Line> LinesStartingWith(std::vector<Line> const& lines, std::string_view text) {
    std::vector<Line> found;
    for (Line const& line : lines) {
        if (StartsWith(line.text, text)) found.push_back(line);
    }
    return found;
}

std::vector<Line> LinesContaining(std::vector<Line> const& lines, std::string_view text) {
    std::vector<Line> found;
    for (Line const& line : lines) {
        if (Contains(line.text, text)) found.push_back(line);
    }
    return found;
}

std::optional<Line> PreviousLine(std::string_view fork, Line const& line) {
    if (line.number == 0) return std::nullopt;
    std::uint32_t offset = line.begin - std::min(static_cast<std::uint32_t>(kLineBuffer), line.begin);
    Scanner scanner(fork, kLineBuffer, offset);
    for (;;) {
        std::uint32_t const end = offset + scanner.CurrentLineLength();
        if (!(end < line.begin)) return Line{scanner.Line(), line.number - 1, offset, end};
        offset = end;
        ++scanner;
    }
}

std::optional<Line> NextLine(std::string_view fork, Line const& line) {
    Scanner const scanner(fork, kLineBuffer, line.end);
    if (scanner.IsExhausted()) return std::nullopt;
    return Line{scanner.Line(), line.number + 1, line.end, line.end + scanner.CurrentLineLength()};
}

std::optional<std::string> ValueForKey(std::string const& key, std::string const& line) {
    std::size_t at = SkipBlanks(line, 0);
    // The key must have at least one byte behind it.
    if (at + key.size() + 1 > line.size() || !SameButForCase(line, at, key)) return std::nullopt;
    at = SkipBlanks(line, at + key.size());
    if (at == line.size()) return std::nullopt;
    if (line[at] != '=' && line[at] != ':') return std::nullopt;
    at = SkipBlanks(line, at + 1);
    // An empty value counts as none.
    if (at == line.size()) return std::nullopt;
    std::size_t end = at;
    while (end < line.size() && line[end] != ';') ++end;
    while (end > at + 1 && IsBlank(line[end - 1])) --end;
    return line.substr(at, end - at);
}

bool FindSectionStart(std::string const& name, std::string const& line, char& open, char& close) {
    std::size_t const at = SkipBlanks(line, 0);
    if (!(at + name.size() < line.size())) return false;
    char matching = 0;
    if (line[at] == '<') matching = '>';
    if (line[at] == '(') matching = ')';
    if (line[at] == '[') matching = ']';
    if (line[at] == '{') matching = '}';
    if (matching == 0) return false;
    open = line[at];
    close = matching;
    // The name, and the closing one right behind it.
    if (!SameButForCase(line, at + 1, name)) return false;
    std::size_t const behind = at + 1 + name.size();
    return behind < line.size() && line[behind] == matching;
}

bool FindSectionEnd(std::string const& line, char open, char close) {
    std::size_t const at = SkipBlanks(line, 0);
    if (at == line.size()) return false;
    if (line[at] != open) return false;
    for (std::size_t i = at + 1; i < line.size(); ++i) {
        if (line[i] == close) return true;
    }
    return false;
}

std::optional<std::string> KeyOfFile(std::string_view fork, std::string const& key) {
    for (Scanner scanner(fork, kSectionBuffer, 0); !scanner.IsExhausted(); ++scanner) {
        if (auto value = ValueForKey(key, scanner.Line())) return value;
    }
    return std::nullopt;
}

std::optional<Section> SectionOfFile(std::string_view fork, std::string const& name) {
    Scanner scanner(fork, kSectionBuffer, 0);
    char open = 0;
    char close = 0;
    std::uint32_t offset = 0;
    bool found = false;
    while (!scanner.IsExhausted() && !found) {
        found = FindSectionStart(name, scanner.Line(), open, close);
        offset += scanner.CurrentLineLength();
        ++scanner;
    }
    // Also a header that is the last line.
    if (scanner.IsExhausted()) return std::nullopt;
    std::uint32_t end = offset;
    bool ended = false;
    while (!scanner.IsExhausted() && !ended) {
        ended = FindSectionEnd(scanner.Line(), open, close);
        if (!ended) {
            end += scanner.CurrentLineLength();
            ++scanner;
        }
    }
    // An empty one has the end 0.
    return Section{offset, end > offset ? end : 0};
}

std::optional<std::string> KeyOfSection(std::string_view fork, std::string const& key, Section section) {
    std::uint32_t offset = section.start;
    for (Scanner scanner(fork, kSectionBuffer, section.start); !scanner.IsExhausted() && offset < section.end;
         ++scanner) {
        if (auto value = ValueForKey(key, scanner.Line())) return value;
        offset += scanner.CurrentLineLength();
    }
    return std::nullopt;
}

}  // namespace Transcription
