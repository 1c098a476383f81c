#pragma once

// What the line and section inspectors answer, as the transcription of their rules tells it.

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "Evaluator/Exceptions.h"
#include "Fork.h"
#include "Transcription.h"
#include "content/FileLines.h"
#include "content/Sections.h"

/// What a question gives; empty when there is no such object.
template <class Question>
auto Asked(Question const& question) -> std::optional<decltype(question())> {
    try {
        return question();
    } catch (NoSuchObject const&) {
        return std::nullopt;
    }
}

inline Transcription::Line AsLine(file_line const& line) {
    return {TextOf(line.text), line.number, line.range.begin, line.range.end};
}
inline std::optional<Transcription::Line> AsLine(std::optional<file_line> const& line) {
    if (!line) return std::nullopt;
    return AsLine(*line);
}
inline std::vector<Transcription::Line> AsLines(std::vector<file_line> const& lines) {
    std::vector<Transcription::Line> answers;
    for (file_line const& line : lines) answers.push_back(AsLine(line));
    return answers;
}

/// What an iteration gives, to its end.
template <class First, class Next>
std::vector<file_line> Iterated(First const& first, Next const& next) {
    std::vector<file_line> lines;
    line_iterator iterator;
    for (auto line = Asked([&] { return first(iterator); }); line;
         line = Asked([&] { return next(iterator); }))
        lines.push_back(*line);
    return lines;
}

inline std::vector<file_line> LinesOf(file const& object) {
    return Iterated([&](line_iterator& lines) { return lines.First({}, object); },
                    [&](line_iterator& lines) { return lines.Next({}, object); });
}
inline std::vector<file_line> LinesStartingWith(std::string_view text, file const& object) {
    return Iterated([&](line_iterator& lines) { return lines.FirstStartingWith(StringOf(text), {}, object); },
                    [&](line_iterator& lines) { return lines.NextStartingWith(StringOf(text), {}, object); });
}
inline std::vector<file_line> LinesContaining(std::string_view text, file const& object) {
    return Iterated([&](line_iterator& lines) { return lines.FirstContaining(StringOf(text), {}, object); },
                    [&](line_iterator& lines) { return lines.NextContaining(StringOf(text), {}, object); });
}

inline std::optional<file_line> LineOf(long long number, file const& object) {
    return Asked([&] { return NumberedLine(number, {}, object); });
}
inline std::optional<file_line> LineBefore(file_line const& line) {
    return Asked([&] { return PreviousLine({}, line); });
}
inline std::optional<file_line> LineBehind(file_line const& line) {
    return Asked([&] { return NextLine({}, line); });
}

inline std::optional<file_section> SectionOf(std::string_view name, file const& object) {
    return Asked([&] { return section_of_file(StringOf(name), {}, object); });
}
inline std::optional<Transcription::Section> AsSection(std::optional<file_section> const& section) {
    if (!section) return std::nullopt;
    return Transcription::Section{section->start, section->end};
}

inline std::optional<std::string> KeyOf(std::string_view key, file const& object) {
    return Asked([&] { return TextOf(key_of_file(StringOf(key), {}, object)); });
}
inline std::optional<std::string> KeyOf(std::string_view key, file_section const& section) {
    return Asked([&] { return TextOf(key_of_section(StringOf(key), {}, section)); });
}

// ---- Shown, cut where they are long

inline std::string Show(std::string const& text) { return Dump(text); }
inline std::string Show(Transcription::Line const& line) {
    return "line " + std::to_string(line.number) + " [" + std::to_string(line.begin) + ", " +
           std::to_string(line.end) + ") " + Dump(line.text);
}
inline std::string Show(Transcription::Section const& section) {
    return "section [" + std::to_string(section.start) + ", " + std::to_string(section.end) + ")";
}
template <class Answer>
std::string Show(std::optional<Answer> const& answer) {
    return answer ? Show(*answer) : "nothing";
}

namespace Transcription {

inline std::ostream& operator<<(std::ostream& out, Line const& line) { return out << Show(line); }
inline std::ostream& operator<<(std::ostream& out, Section const& section) { return out << Show(section); }

}  // namespace Transcription
