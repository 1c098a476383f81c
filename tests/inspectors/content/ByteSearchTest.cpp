// What is searched many bytes at a time, against plain loops, in memory of exactly the size.

#include "content/ByteSearch.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "Fork.h"

using Inspectors::FindLineEnd;
using Inspectors::FindLineEndings;
using Inspectors::LineEndings;
using Inspectors::TextFinder;

namespace {

unsigned char const* FindText(ConstData bytes, ConstData text) { return TextFinder(text).FindIn(bytes); }

bool IsLineEnd(char byte) { return byte == '\r' || byte == '\n'; }

// A copy of bytes that the address sanitizer guards, so many bytes behind the beginning of its memory.
class Guarded {
  public:
    explicit Guarded(std::string_view bytes, std::size_t offset = 0)
        : memory(std::make_unique<unsigned char[]>(offset + bytes.size())),
          from(memory.get() + offset),
          size(bytes.size()) {
        std::copy(bytes.begin(), bytes.end(), from);
    }
    operator ConstData() const { return {from, size}; }
    std::ptrdiff_t OffsetOf(unsigned char const* place) const { return place == nullptr ? -1 : place - from; }

  private:
    std::unique_ptr<unsigned char[]> memory;
    unsigned char* from;
    std::size_t size;
};

std::ptrdiff_t PlainlyFindText(std::string_view bytes, std::string_view text) {
    std::size_t const found = bytes.find(text);
    return found == std::string_view::npos ? -1 : static_cast<std::ptrdiff_t>(found);
}

struct Endings {
    std::int64_t count = 0;
    std::ptrdiff_t end = -1;

    friend bool operator==(Endings const&, Endings const&) = default;
    friend std::ostream& operator<<(std::ostream& out, Endings const& endings) {
        return out << endings.count << " endings to " << endings.end;
    }
};

Endings PlainlyFindEndings(std::string_view bytes, bool othersMayFollow) {
    Endings endings;
    for (std::size_t i = 0; i < bytes.size();) {
        if (!IsLineEnd(bytes[i])) {
            ++i;
            continue;
        }
        bool const isLast = i + 1 == bytes.size();
        if (isLast && othersMayFollow) break;
        i += !isLast && bytes[i + 1] != bytes[i] && IsLineEnd(bytes[i + 1]) ? 2 : 1;
        ++endings.count;
        endings.end = static_cast<std::ptrdiff_t>(i);
    }
    return endings;
}

void ExpectSameEndings(std::string_view bytes, std::size_t offset = 0) {
    for (bool const othersMayFollow : {false, true}) {
        Guarded const guarded(bytes, offset);
        LineEndings const found = FindLineEndings(guarded, othersMayFollow);
        EXPECT_EQ(PlainlyFindEndings(bytes, othersMayFollow),
                  (Endings{found.count, guarded.OffsetOf(found.end)}))
            << Dump(bytes) << (othersMayFollow ? ", others may follow" : "");
    }
}

}  // namespace

TEST(TextFinder, FindsTheTextAtEveryOffsetInEveryLength) {
    for (std::size_t length = 0; length <= 200; ++length) {
        for (std::size_t size : {1, 2, 3, 16, 64, 65}) {
            for (std::size_t at = 0; at + size <= length; ++at) {
                std::string bytes(length, '-');
                std::string const text = std::string(size - 1, 'a') + "b";
                bytes.replace(at, size, text);
                Guarded const guarded(bytes, at % 17);
                Guarded const part(text);
                ASSERT_EQ(static_cast<std::ptrdiff_t>(at), guarded.OffsetOf(FindText(guarded, part)))
                    << size << " bytes in " << length;
            }
        }
    }
}

TEST(TextFinder, DoesNotFindWhatIsNearlyThere) {
    for (std::size_t length = 1; length <= 200; ++length) {
        for (std::size_t size : {2, 3, 17, 64}) {
            // Everywhere the beginning and the end of the text, but not what is between.
            std::string const text = "a" + std::string(size - 2, 'x') + "b";
            std::string bytes;
            while (bytes.size() < length) bytes += "a" + std::string(size - 2, 'y') + "b";
            bytes.resize(length);
            Guarded const guarded(bytes);
            ASSERT_EQ(PlainlyFindText(bytes, text), guarded.OffsetOf(FindText(guarded, Guarded(text))))
                << size << " bytes in " << length;
        }
    }
}

TEST(TextFinder, FindsTheFirstOfMany) {
    Guarded const bytes(std::string(150, '-') + std::string(80, 'a'));
    EXPECT_EQ(150, bytes.OffsetOf(FindText(bytes, Guarded("aaa"))));
}

TEST(TextFinder, FindsTheEmptyTextAtTheFront) {
    Guarded const bytes("abc");
    EXPECT_EQ(0, bytes.OffsetOf(FindText(bytes, {})));
    Guarded const empty("");
    EXPECT_EQ(0, empty.OffsetOf(FindText(empty, Guarded(""))));
}

TEST(TextFinder, DoesNotFindWhatIsLonger) {
    Guarded const bytes("abc");
    EXPECT_EQ(nullptr, FindText(bytes, Guarded("abcd")));
    EXPECT_EQ(nullptr, FindText({}, Guarded("a")));
    EXPECT_EQ(nullptr, FindText(bytes, Guarded(std::string(5000, 'a'))));
}

TEST(TextFinder, FindsAgainAndAgain) {
    Guarded const text("common and rare: q");
    TextFinder const finder(text);
    EXPECT_EQ(18u, finder.TextSize());
    for (std::size_t at : {0, 1, 63, 64, 100}) {
        Guarded const bytes(std::string(at, 'q') + "common and rare: q" + std::string(at, 'c'));
        EXPECT_EQ(static_cast<std::ptrdiff_t>(at), bytes.OffsetOf(finder.FindIn(bytes)));
    }
}

TEST(TextFinder, ComparesAllBytesAndBytesOfAllValues) {
    for (int value = 0; value < 256; ++value) {
        std::string bytes(130, static_cast<char>(value ^ 0x80));
        bytes[129] = static_cast<char>(value);
        Guarded const guarded(bytes);
        EXPECT_EQ(129, guarded.OffsetOf(FindText(guarded, Guarded(bytes.substr(129))))) << value;
        EXPECT_EQ(127, guarded.OffsetOf(FindText(guarded, Guarded(bytes.substr(127))))) << value;
    }
}

TEST(TextFinder, FindsWhatAPlainLoopFinds) {
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        std::string bytes(random() % 201, '\0'), text(random() % (i % 2 == 0 ? 5 : 70), '\0');
        for (char& byte : bytes) byte = "ab\0"[random() % (1 + i % 3)];
        for (char& byte : text) byte = "ab\0"[random() % (1 + i % 3)];
        Guarded const guarded(bytes, random() % 16);
        ASSERT_EQ(PlainlyFindText(bytes, text), guarded.OffsetOf(FindText(guarded, Guarded(text))))
            << Dump(text) << " in " << Dump(bytes);
    }
}

TEST(FindLineEnd, FindsTheFirstAtEveryOffsetInEveryLength) {
    for (std::size_t length = 0; length <= 200; ++length) {
        for (std::size_t at = 0; at <= length; ++at) {
            for (char const* ending : {"\r", "\n", "\r\n", "\n\r", "\n\n\n"}) {
                std::string bytes(length, 'a');
                bytes = (bytes.replace(at, std::string::npos, ending) + bytes).substr(0, length);
                Guarded const guarded(bytes, length % 17);
                ASSERT_EQ(static_cast<std::ptrdiff_t>(at), guarded.OffsetOf(FindLineEnd(guarded)))
                    << length << " bytes";
            }
        }
    }
}

TEST(FindLineEnd, TakesNoOtherByteForAnEnding) {
    std::string bytes;
    for (int value = 0; value < 256; ++value) {
        if (!IsLineEnd(static_cast<char>(value))) bytes += static_cast<char>(value);
    }
    Guarded const guarded(bytes);
    EXPECT_EQ(254, guarded.OffsetOf(FindLineEnd(guarded)));
}

TEST(FindLineEndings, CountsPairsOnce) {
    for (char const* bytes : {"", "a", "\n", "\r", "a\n", "\r\n", "\n\r", "\n\n", "\r\r", "\r\n\r",
                              "\r\n\r\n", "\n\r\r\n", "\r\r\n", "a\r\nb\n\rc", "\n\n\r", "a\nb"})
        ExpectSameEndings(bytes);
}

TEST(FindLineEndings, TellsNoneByNull) {
    Guarded const bytes("no ending");
    EXPECT_EQ(0, FindLineEndings(bytes, false).count);
    EXPECT_EQ(nullptr, FindLineEndings(bytes, false).end);
    EXPECT_EQ(nullptr, FindLineEndings(Guarded("\r"), true).end);
}

TEST(FindLineEndings, LeavesALastByteThatCouldBeHalfAnEnding) {
    Guarded const bytes("a\nb\r");
    EXPECT_EQ(1, FindLineEndings(bytes, true).count);
    EXPECT_EQ(2, bytes.OffsetOf(FindLineEndings(bytes, true).end));
    EXPECT_EQ(2, FindLineEndings(bytes, false).count);
    EXPECT_EQ(4, bytes.OffsetOf(FindLineEndings(bytes, false).end));
}

TEST(FindLineEndings, CountsRunsOfEveryLengthFromEveryOffset) {
    for (std::size_t at = 0; at <= 140; ++at) {
        for (std::size_t length = 0; at + length <= 200; length += length < 12 ? 1 : 23) {
            for (std::string_view const run : {"\r\n", "\n\r", "\n", "\r", "\r\n\n", "\r\r\n"}) {
                std::string bytes(at, 'a');
                while (bytes.size() < at + length) bytes += run[(bytes.size() - at) % run.size()];
                ExpectSameEndings(bytes, at % 3);
                ExpectSameEndings(bytes + "b");
            }
            if (HasFailure()) return;
        }
    }
}

TEST(FindLineEndings, CountsMoreThanAByteCanCount) {
    for (std::string const ending : {"\n", "\r", "\r\n"}) {
        std::string bytes;
        for (int i = 0; i < 20000; ++i) bytes += (i % 3 == 0 ? "a" : "") + ending;
        ExpectSameEndings(bytes);
    }
}

TEST(FindLineEndings, CountsWhatAPlainLoopCounts) {
    std::mt19937 random(2);
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        std::string bytes(random() % (i % 10 == 0 ? 2100 : 201), '\0');
        std::size_t const kinds = 1 + random() % 7;
        for (char& byte : bytes) byte = "\n\rabcdef"[random() % kinds];
        if (i % 3 == 0) std::replace(bytes.begin(), bytes.end(), '\r', 'a');
        ExpectSameEndings(bytes, random() % 16);
    }
}
