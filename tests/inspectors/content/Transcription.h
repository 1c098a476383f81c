#pragma once

// Lines, sections and keys once more: each rule put down byte by byte, without a thought for speed, for tests
// and fuzz targets to hold the inspectors against. A text in memory stands for the fork; nothing changes it.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Transcription {

inline constexpr std::size_t kLineBuffer = 2048;
inline constexpr std::size_t kSectionBuffer = 65536;

/// Cuts a fork into lines. Places are indexes into the buffer.
class Scanner {
  public:
    Scanner(std::string_view fork, std::size_t bufferSize, std::uint32_t start);

    Scanner& operator++();
    bool IsExhausted() const;
    /// The text of the line at hand, and its length with its ending.
    std::string Line() const;
    std::string Ending() const;
    std::uint32_t CurrentLineLength() const;

  private:
    struct Span {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    void Start(std::uint32_t start);
    std::size_t TolerantRead(std::size_t into, std::size_t room);
    void ReadFromFile(std::size_t into, std::size_t room);
    void ScanForLine(std::size_t lineStart, std::size_t scanFrom);
    std::size_t FindLineEnd(std::size_t from, std::size_t end) const;
    Span InitialLineEnding(std::size_t from, std::size_t end, bool atEnd) const;
    bool AtEnd() const;

    std::string_view fork;
    std::vector<char> buffer;
    std::int64_t position = 0;
    std::uint32_t length = 0;
    std::size_t dataEnd = 0;
    Span line;
    Span ending;
};

/// A line as a file_line tells it: numbered from 0, with the offsets of its first byte and behind its ending.
struct Line {
    std::string text;
    std::int64_t number = 0;
    std::uint32_t begin = 0;
    std::uint32_t end = 0;

    friend bool operator==(Line const&, Line const&) = default;
};

// What is not there is an empty optional.

/// Requires: the number is not the least of all.
std::optional<Line> NumberedLine(std::string_view fork, std::int64_t number);
std::vector<Line> Lines(std::string_view fork);
/// Of all lines of a fork those.
std::vector<Line> LinesStartingWith(std::vector<Line> const& lines, std::string_view text);
std::vector<Line> LinesContaining(std::vector<Line> const& lines, std::string_view text);
/// Requires: the line is one of the fork.
std::optional<Line> PreviousLine(std::string_view fork, Line const& line);
std::optional<Line> NextLine(std::string_view fork, Line const& line);

struct Section {
    std::uint32_t start = 0;
    std::uint32_t end = 0;

    friend bool operator==(Section const&, Section const&) = default;
};

std::optional<std::string> KeyOfFile(std::string_view fork, std::string const& key);
std::optional<Section> SectionOfFile(std::string_view fork, std::string const& name);
std::optional<std::string> KeyOfSection(std::string_view fork, std::string const& key, Section section);

// Of one line.

std::optional<std::string> ValueForKey(std::string const& key, std::string const& line);
bool FindSectionStart(std::string const& name, std::string const& line, char& open, char& close);
bool FindSectionEnd(std::string const& line, char open, char close);

}  // namespace Transcription
