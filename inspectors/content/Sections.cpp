#include "content/Sections.h"

#include <locale.h>
#include <strings.h>

#include <algorithm>
#include <optional>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Text.h"
#include "content/ExclusionList.h"
#include "content/FileLineLoop.h"
#include "content/FileReading.h"

using MacintoshPlatform::FileLocation;

namespace {

using Place = unsigned char const*;

bool IsBlank(unsigned char byte) { return byte == ' ' || byte == '\t'; }
Place SkipBlanks(Place place, Place end) { return std::find_if_not(place, end, IsBlank); }

// Whether the bytes at a place, of which there are enough, are those of the text but for the case of letters:
// of ASCII letters, whatever locale the program has.
bool StandsAt(Place place, inspector_string const& text) {
    static locale_t const plain = newlocale(LC_ALL_MASK, "C", nullptr);
    return text.length == 0 ||
           strncasecmp_l(reinterpret_cast<char const*>(place), reinterpret_cast<char const*>(text.begin()),
                         text.length, plain) == 0;
}

// The value of the key in a line; empty when it does not have the key, or no value.
std::optional<ConstData> ValueOf(inspector_string const& key, ConstData const& line) {
    Place const end = line.end();
    Place place = SkipBlanks(line.begin(), end);
    if (end - place <= std::int64_t{key.length} || !StandsAt(place, key)) return std::nullopt;
    place = SkipBlanks(place + key.length, end);
    if (place == end || (*place != '=' && *place != ':')) return std::nullopt;
    place = SkipBlanks(place + 1, end);
    if (place == end) return std::nullopt;
    Place valueEnd = std::find(place, end, ';');
    while (valueEnd - place > 1 && IsBlank(*(valueEnd - 1))) --valueEnd;
    return ConstData(place, valueEnd);
}

// The lines of a settings file from an offset on, one at a time.
class Lines {
  public:
    Lines(FileLocation const& location, std::uint32_t start) : offset(start) {
        path.OpenInternal(location, fsRdPerm);
        loop.Start(path, start);
    }
    Lines(Lines const&) = delete;
    Lines& operator=(Lines const&) = delete;

    bool AreExhausted() const { return loop.IsExhausted(); }
    ConstData Line() const { return loop.Line(); }
    /// Of the line at hand.
    std::uint32_t Offset() const { return offset; }
    void Advance() {
        offset += LineLength(loop);
        ++loop;
    }

  private:
    FileReadingPath path;
    unsigned char buffer[65536];
    FileLineLoop loop{Data(buffer, sizeof buffer)};
    std::uint32_t offset;
};

void RefuseExcluded(file const& object) {
    if (DoNotReadFile(object)) throw NoSuchObject();
}

}  // namespace

file_section::file_section(FileLocation const& itsLocation, unsigned long itsStart, unsigned long itsEnd)
    : location(itsLocation),
      start(static_cast<std::uint32_t>(itsStart)),
      end(static_cast<std::uint32_t>(itsEnd)) {
    if (end <= start) end = 0;
}

inspector_string key_of_file(inspector_string const& key, Of, file const& object) {
    RefuseExcluded(object);
    for (Lines lines(object, 0); !lines.AreExhausted(); lines.Advance())
        if (auto const value = ValueOf(key, lines.Line())) return MakeString(*value);
    throw NoSuchObject();
}

file_section section_of_file(inspector_string const& name, Of, file const& object) {
    RefuseExcluded(object);
    Lines lines(object, 0);
    char open = 0, close = 0;
    for (bool isFound = false; !isFound && !lines.AreExhausted(); lines.Advance())
        isFound = FindSectionStart(name, lines.Line(), open, close);
    // A header that nothing follows begins no section.
    if (lines.AreExhausted()) throw NoSuchObject();
    std::uint32_t const start = lines.Offset();
    while (!lines.AreExhausted() && !FindSectionEnd(lines.Line(), open, close)) lines.Advance();
    return {object, start, lines.Offset()};
}

inspector_string key_of_section(inspector_string const& key, Of, file_section const& section) {
    for (Lines lines(section.location, section.start); !lines.AreExhausted() && lines.Offset() < section.end;
         lines.Advance())
        if (auto const value = ValueOf(key, lines.Line())) return MakeString(*value);
    throw NoSuchObject();
}

inspector_string GetValueForKey(inspector_string const& key, ConstData const& line) {
    auto const value = ValueOf(key, line);
    if (!value) throw KeyNotFoundInLine();
    return MakeString(*value);
}

bool FindSectionStart(inspector_string const& name, ConstData const& line, char& open, char& close) {
    Place const place = SkipBlanks(line.begin(), line.end());
    if (line.end() - place <= std::int64_t{name.length}) return false;
    switch (*place) {
        case '<':
            close = '>';
            break;
        case '(':
            close = ')';
            break;
        case '[':
            close = ']';
            break;
        case '{':
            close = '}';
            break;
        default:
            return false;
    }
    open = static_cast<char>(*place);
    Place const behind = place + 1 + name.length;
    return behind != line.end() && *behind == static_cast<unsigned char>(close) && StandsAt(place + 1, name);
}

bool FindSectionEnd(ConstData const& line, char open, char close) {
    Place const place = SkipBlanks(line.begin(), line.end());
    if (place == line.end() || *place != static_cast<unsigned char>(open)) return false;
    return std::find(place + 1, line.end(), static_cast<unsigned char>(close)) != line.end();
}
