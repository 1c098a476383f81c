// Any bytes as a file, cut into lines: as the plain rules cut it, and the same whichever way a line is found.

#include <vector>

#include "Answers.h"
#include "Invariants.h"
#include "Memory.h"

namespace {

using Transcription::Line;

// The input's first bytes say what is asked for, how many bytes stand before the others in the file, so that
// these may lie across the end of the scanner's buffer, and whether they come again and again, over many
// bufferfuls.
struct Input {
    Input(std::uint8_t const* data, std::size_t length) {
        std::string const bytes(data, data + length);
        auto const at = [&](std::size_t place) {
            return place < length ? static_cast<unsigned char>(bytes[place]) : std::size_t{0};
        };
        bool const isFilled = at(0) % 2 != 0;
        std::size_t const textSize = at(0) / 2 % 16;
        bool const isRepeated = at(0) >= 128;
        std::size_t const rest = std::min(length, 3 + textSize);
        if (length > 3) text = bytes.substr(3, textSize);
        if (isFilled) file.assign((at(1) + 256 * at(2)) % (2 * kLineBufferSize + 2), '-');
        std::size_t const size = file.size() + (isRepeated ? 1024 * (at(2) % 24) : 0);
        do {
            file += bytes.substr(rest);
        } while (rest < bytes.size() && file.size() < size);
        part = at(1);
    }

    std::string text;
    std::string file;
    std::size_t part;  // of 256 parts of the lines, the number that is asked for
};

// What lines have in common, however they were cut.
void HoldLines(std::vector<Line> const& lines) {
    std::uint32_t offset = 0;
    std::int64_t number = 0;
    for (Line const& line : lines) {
        Fuzz::Hold(line.number == number++, "lines are numbered one after the other");
        Fuzz::Hold(line.begin == offset && line.end > line.begin, "a line begins where the last one ends");
        Fuzz::Hold(line.end - line.begin - line.text.size() <= 2, "an ending has two bytes at most");
        Fuzz::Hold(line.text.size() <= kLineBufferSize, "a line is no longer than the buffer");
        Fuzz::Hold(line.text.find_first_of("\r\n") == std::string::npos, "a line holds no ending");
        offset = line.end;
    }
}

void HoldNeighbours(file_line const& line, std::string const& bytes) {
    Fuzz::Hold(AsLine(LineBefore(line)) == Transcription::PreviousLine(bytes, AsLine(line)),
               "the previous line is that of the plain rules");
    Fuzz::Hold(AsLine(LineBehind(line)) == Transcription::NextLine(bytes, AsLine(line)),
               "the next line is that of the plain rules");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Fork fork;
    Input const input(data, size);
    fork.Write(input.file);
    file const& object = fork.AsFile();

    std::vector<Line> const expected = Transcription::Lines(input.file);
    std::vector<file_line> const lines = LinesOf(object);
    HoldLines(expected);
    Fuzz::Hold(AsLines(lines) == expected, "lines are those of the plain rules");
    Fuzz::Hold(
        AsLines(LinesContaining(input.text, object)) == Transcription::LinesContaining(expected, input.text),
        "lines that contain a text are those of the plain rules");
    Fuzz::Hold(AsLines(LinesStartingWith(input.text, object)) ==
                   Transcription::LinesStartingWith(expected, input.text),
               "lines that start with a text are those of the plain rules");

    auto const count = static_cast<std::int64_t>(lines.size());
    auto const within = count * static_cast<std::int64_t>(input.part) / 256;
    for (std::int64_t number : {within, within + 1, count, count + 1}) {
        auto const line = AsLine(LineOf(number, object));
        bool const isThere = number > 0 && number <= count;
        Fuzz::Hold(isThere ? line == expected[static_cast<std::size_t>(number - 1)] : !line,
                   "the line of a number is the one that the iteration comes to");
    }
    std::size_t const step = 1 + lines.size() / 16;
    for (std::size_t i = 0; i < lines.size(); i += step)
        HoldNeighbours(lines[lines.size() - 1 - i], input.file);
    ReleaseInspectorMemory();
    return 0;
}
