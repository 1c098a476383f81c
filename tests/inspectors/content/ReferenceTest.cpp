// Lines, sections and keys of many random files, held against the plain rules. The inspectors search and
// count whole buffers at once and read ahead; that must never show.

#include <gtest/gtest.h>

#include <functional>
#include <iostream>

#include "Answers.h"
#include "Memory.h"
#include "RandomFiles.h"
#include "Transcription.h"

namespace {

#ifdef ZELQ_ADDRESS_SANITIZER
constexpr int kShare = 20;
#else
constexpr int kShare = 1;
#endif

class Reference : public testing::Test {
  protected:
    /// Compares the answers for as many files.
    void Hold(int cases, std::uint64_t seed, std::function<std::string(RandomFiles&)> const& make) {
        std::cout << "seed " << seed << std::endl;
        for (number = 0; number < cases / kShare && !HasFailure(); ++number) {
            RandomFiles random(seed + static_cast<std::uint64_t>(number));
            name = "seed " + std::to_string(seed) + ", case " + std::to_string(number);
            bytes = make(random);
            fork.Write(bytes);
            std::vector<Transcription::Line> const expected = Transcription::Lines(bytes);
            HoldLines(expected, random);
            HoldLinesByText(expected, random);
            HoldSettings(random);
            ReleaseInspectorMemory();
        }
    }

  private:
    template <class Answer>
    void Same(std::string const& question, Answer const& expected, Answer const& answer) {
        if (expected == answer) return;
        ADD_FAILURE() << name << "\nfile: " << Dump(bytes) << "\n"
                      << question << "\nexpected: " << Show(expected) << "\n  answer: " << Show(answer);
    }
    void Same(std::string const& question, std::vector<Transcription::Line> const& expected,
              std::vector<Transcription::Line> const& answer) {
        if (expected == answer) return;
        std::size_t const count = std::min(expected.size(), answer.size());
        std::size_t first = 0;
        while (first < count && expected[first] == answer[first]) ++first;
        auto const at = [&](auto const& lines) {
            return first < lines.size() ? Show(lines[first]) : std::string("no more");
        };
        ADD_FAILURE() << name << "\nfile: " << Dump(bytes) << "\n"
                      << question << ", answer " << first << "\nexpected: " << at(expected)
                      << "\n  answer: " << at(answer);
    }

    void HoldLines(std::vector<Transcription::Line> const& expected, RandomFiles& random) {
        std::vector<file_line> const lines = LinesOf(fork.AsFile());
        Same("lines", expected, AsLines(lines));
        if (HasFailure()) return;
        auto const count = static_cast<std::int64_t>(lines.size());
        HoldLine(random.OneIn(2) ? count : count + 1);
        for (int i = bytes.size() > kLineBufferSize ? 3 : 1; i > 0; --i)
            HoldLine(static_cast<std::int64_t>(random.Below(lines.size() + 3)));
        if (random.OneIn(8)) HoldLine(-static_cast<std::int64_t>(random.Below(5)));
        // Of the neighbours at most so many: each reads a buffer.
        std::size_t const step = 1 + lines.size() / 8;
        for (std::size_t i = random.Below(step); i < lines.size(); i += step) HoldNeighbours(lines[i]);
        if (!lines.empty()) HoldNeighbours(lines.back());
    }

    void HoldLine(std::int64_t line) {
        std::optional<file_line> const answer = LineOf(line, fork.AsFile());
        Same("line " + std::to_string(line), Transcription::NumberedLine(bytes, line), AsLine(answer));
        if (answer && !HasFailure()) HoldNeighbours(*answer);
    }

    // Also of the previous line's previous one, whose range may begin anywhere.
    void HoldNeighbours(file_line const& line) {
        auto const question = [&](char const* which) {
            return std::string(which) + " line of " + Show(AsLine(line));
        };
        std::optional<file_line> const before = LineBefore(line);
        std::optional<file_line> const behind = LineBehind(line);
        auto const expected = Transcription::PreviousLine(bytes, AsLine(line));
        Same(question("previous"), expected, AsLine(before));
        Same(question("next"), Transcription::NextLine(bytes, AsLine(line)), AsLine(behind));
        if (!before || HasFailure()) return;
        Same(question("previous line of previous"), Transcription::PreviousLine(bytes, *expected),
             AsLine(LineBefore(*before)));
        Same(question("next line of previous"), Transcription::NextLine(bytes, *expected),
             AsLine(LineBehind(*before)));
    }

    void HoldLinesByText(std::vector<Transcription::Line> const& lines, RandomFiles& random) {
        std::string text = random.TextFor(bytes);
        Same("lines containing " + Dump(text), Transcription::LinesContaining(lines, text),
             AsLines(LinesContaining(text, fork.AsFile())));
        if (random.OneIn(2)) text = text.substr(0, 1 + random.Below(3));
        Same("lines starting with " + Dump(text), Transcription::LinesStartingWith(lines, text),
             AsLines(LinesStartingWith(text, fork.AsFile())));
    }

    void HoldSettings(RandomFiles& random) {
        std::string const key = random.Name();
        std::string const section = random.Name();
        Same("key " + Dump(key), Transcription::KeyOfFile(bytes, key), KeyOf(key, fork.AsFile()));
        std::optional<file_section> const found = SectionOf(section, fork.AsFile());
        Same("section " + Dump(section), Transcription::SectionOfFile(bytes, section), AsSection(found));
        if (!found || HasFailure()) return;
        Same("key " + Dump(key) + " of section " + Dump(section),
             Transcription::KeyOfSection(bytes, key, *AsSection(found)), KeyOf(key, *found));
    }

    Fork fork;
    int number = 0;
    std::string name;
    std::string bytes;
};

}  // namespace

TEST_F(Reference, SmallFiles) {
    Hold(70000, 1000000, [](RandomFiles& random) { return random.Small(); });
}

TEST_F(Reference, SettingsFiles) {
    Hold(20000, 2000000, [](RandomFiles& random) { return random.Settings(1 + random.Below(40)); });
}

TEST_F(Reference, FilesAroundTheLineBuffer) {
    Hold(9000, 3000000, [](RandomFiles& random) {
        if (random.OneIn(2)) return random.EndingAtBufferEnds(kLineBufferSize);
        std::string file = random.OfSize(kLineBufferSize * (1 + random.Below(2)) - 1 + random.Below(3));
        if (random.OneIn(2)) random.PutEndingsAround(file, kLineBufferSize);
        return file;
    });
}

TEST_F(Reference, FilesAroundTheSectionBuffer) {
    Hold(500, 4000000, [](RandomFiles& random) {
        if (random.OneIn(3)) return random.EndingAtBufferEnds(Transcription::kSectionBuffer);
        std::string file = random.OfSize(Transcription::kSectionBuffer - 1 + random.Below(3));
        if (random.OneIn(2)) random.PutEndingsAround(file, kLineBufferSize);
        return file;
    });
}

// Headers and keys that lie across the buffer's end.
TEST_F(Reference, SettingsFilesLongerThanTheirBuffer) {
    Hold(500, 5000000, [](RandomFiles& random) {
        std::string file = random.Settings(1 + random.Below(4)) + "\n";
        std::string const behind = random.Settings(10);
        std::size_t const size = Transcription::kSectionBuffer - std::min<std::size_t>(random.Below(60), 50);
        while (file.size() < size) {
            std::size_t const line = std::min(size - file.size(), 1 + random.Below(5000));
            file += std::string(line, ';') + (random.OneIn(2) ? "\n" : "\r\n");
        }
        return file.substr(0, size) + behind;
    });
}
