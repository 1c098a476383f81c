// Whether files hold texts, and their single bytes.

#include "content/Content.h"

#include <Platform/Items.h>
#include <sys/stat.h>

#include <functional>
#include <random>

#include "Evaluator/Context.h"
#include "Files.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "modules/FileContentModule.h"
#include "support/Unprivileged.h"

namespace {

InspectorContext* present = nullptr;

// Counts how often it is given time, and does something then.
struct Host : InspectorContext, InspectorYieldContext {
    Host() {
        trickle = [](InspectorContext* context) {
            auto* const host = static_cast<Host*>(context);
            ++host->trickles;
            if (host->act) host->act();
        };
        yieldTimeSlice = [](InspectorContext*) { ADD_FAILURE() << "a search trickles"; };
        present = this;
    }
    ~Host() override { present = nullptr; }
    int trickles = 0;
    std::function<void()> act;
};

constexpr std::size_t kChunk = 32768;

inspector_string StringOf(std::string_view text) {
    return inspector_string(Bytes(text), static_cast<std::uint32_t>(text.size()));
}

class Content : public testing::Test {
  protected:
    Content() {
        ClearFileCaches(nullptr);
        FolderAt("/");  // what the platform keeps open for itself is open from now on
    }
    ~Content() override { PlatformSetCheckIn(nullptr); }

    file Holding(std::string_view bytes) const {
        ClearFileCaches(nullptr);
        return FileAt(here.Write("file", bytes));
    }
    static bool Has(file const& object, std::string_view text) {
        return Contains(content_of(object), StringOf(text));
    }

    TemporaryFolder const here;
};

std::string const kNone = Name<NoSuchObject>();

// Text of a file without a repetition in it that could be found by mistake.
std::string Filler(std::size_t size) {
    std::string text(size, '-');
    for (std::size_t i = 0; i < size; i += 7) text[i] = static_cast<char>('0' + i % 10);
    return text;
}

}  // namespace

InspectorContext* Get_Generic_Inspector_Context() { return present; }

// ---- The search

TEST_F(Content, HoldsWhatStandsInTheFile) {
    file const object = Holding("one two\nthree");
    for (char const* text : {"one", "two\nthree", "three", "e", "one two\nthree"})
        EXPECT_TRUE(Has(object, text)) << text;
    for (char const* text : {"four", "twothree", "One", "one  two", "three!"})
        EXPECT_FALSE(Has(object, text)) << text;
}

TEST_F(Content, IsBytes) {
    std::string const bytes("a\0b\xFF\xFE\r\n", 7);
    file const object = Holding(bytes);
    EXPECT_TRUE(Has(object, bytes));
    EXPECT_TRUE(Has(object, std::string("\0b", 2)));
    EXPECT_TRUE(Has(object, "\xFF\xFE"));
    EXPECT_FALSE(Has(object, "\xFE\xFF"));
}

TEST_F(Content, EmptyTextIsInEveryFile) {
    EXPECT_TRUE(Has(Holding("text"), ""));
    EXPECT_TRUE(Has(Holding(""), ""));
    EXPECT_TRUE(Has(file(MissingItem()), ""));
    EXPECT_TRUE(Has(file(FolderAt(here.Path())), ""));
}

TEST_F(Content, OfAFileShorterThanTheText) {
    file const object = Holding("abc");
    EXPECT_TRUE(Has(object, "abc"));
    EXPECT_FALSE(Has(object, "abcd"));
    EXPECT_FALSE(Has(object, std::string(kChunk, 'a')));
    EXPECT_FALSE(Has(Holding(""), "a"));
}

TEST_F(Content, TextsOf32768BytesAreLookedFor) {
    std::string const text = Filler(kChunk);
    file const object = Holding("before" + text + "behind");
    EXPECT_TRUE(Has(object, text));
    EXPECT_FALSE(Has(object, text.substr(1) + "#"));
    EXPECT_EQ(kNone, Thrown([&] { Has(object, text + "b"); })) << "longer ones are not, be they there or not";
    EXPECT_EQ(kNone, Thrown([&] { Has(Holding(""), text + "b"); }));
}

TEST_F(Content, TextThatEndsTheFileIsFound) {
    for (std::size_t const size : {kChunk - 1, kChunk, kChunk + 1, 2 * kChunk, 2 * kChunk + 1})
        EXPECT_TRUE(Has(Holding(Filler(size) + "end"), "end")) << size;
}

// Each place around the boundaries of chunks, for texts that are short and those that are as long as a chunk.
TEST_F(Content, TextAcrossChunksIsFound) {
    for (std::size_t const length : {1u, 2u, 3u, 4u, 7u, 64u}) {
        std::string text(length, '*');
        text.back() = '!';
        for (std::size_t const boundary : {kChunk, 2 * kChunk}) {
            for (std::size_t at = boundary - length - 2; at <= boundary + 2; ++at) {
                std::string bytes = Filler(3 * kChunk);
                bytes.replace(at, length, text);
                EXPECT_TRUE(Has(Holding(bytes), text)) << length << " bytes at " << at;
                bytes[at] = '?';
                EXPECT_FALSE(Has(Holding(bytes), text)) << length << " bytes at " << at;
            }
        }
    }
}

TEST_F(Content, LongTextAcrossChunksIsFound) {
    for (std::size_t const length : {kChunk, kChunk - 1, kChunk / 2}) {
        std::string text(length, '*');
        text.back() = '!';
        for (std::size_t const at :
             {std::size_t{0}, std::size_t{1}, kChunk - 2, kChunk - 1, kChunk, kChunk + 1, 2 * kChunk - 1,
              2 * kChunk, 3 * kChunk - length, 4 * kChunk - length - 1, 4 * kChunk - length}) {
            std::string bytes = Filler(4 * kChunk);
            bytes.replace(at, length, text);
            EXPECT_TRUE(Has(Holding(bytes), text)) << length << " bytes at " << at;
            bytes[at + length / 2] = '?';
            EXPECT_FALSE(Has(Holding(bytes), text)) << length << " bytes at " << at;
        }
    }
}

TEST_F(Content, BytesOfAFormerChunkAreNotFoundTwice) {
    std::string bytes = Filler(kChunk - 2) + "ab";
    EXPECT_FALSE(Has(Holding(bytes + "Xb"), "abb"));
    EXPECT_FALSE(Has(Holding(bytes + "cd"), "abab"));
    EXPECT_TRUE(Has(Holding(bytes + "cd"), "abcd"));
}

// Random texts of few letters, so that beginnings of them are everywhere.
TEST_F(Content, IsSearchedAsAPlainSearchWould) {
    std::mt19937 random(20260417);
    auto const below = [&](std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
    };
    int found = 0;
    constexpr int turns = 300;
    for (int turn = 0; turn < turns; ++turn) {
        std::size_t const letters = 2 + below(3);
        std::string bytes(below(100'001), ' ');
        for (char& byte : bytes) byte = static_cast<char>('a' + below(letters));
        file const object = Holding(bytes);
        for (int i = 0; i < 4; ++i) {
            std::size_t const length = i == 0 ? 1 + below(kChunk) : 1 + below(24);
            std::string text;
            if (below(2) == 0 && bytes.size() > length) {
                text = bytes.substr(below(bytes.size() - length), length);
                if (below(2) == 0) text[below(length)] ^= 3;
            } else {
                for (std::size_t k = 0; k < length; ++k) text += static_cast<char>('a' + below(letters));
            }
            bool const expected = bytes.find(text) != std::string::npos;
            found += expected;
            ASSERT_EQ(expected, Has(object, text))
                << "turn " << turn << ", " << text.size() << " bytes in " << bytes.size();
        }
    }
    EXPECT_LT(turns, found) << "both answers are frequent";
    EXPECT_GT(3 * turns, found);
}

// ---- Cases

TEST_F(Content, InUppercaseHoldsNoSmallLetters) {
    file const object = Holding("abc Def 12");
    content const upper = AsUppercase(content_of(object));
    for (char const* text : {"ABC", "DEF 12", "C D"}) EXPECT_TRUE(Contains(upper, StringOf(text))) << text;
    for (char const* text : {"abc", "Def", "def", "Abc"})
        EXPECT_FALSE(Contains(upper, StringOf(text))) << text;
}

TEST_F(Content, InLowercaseHoldsNoCapitals) {
    file const object = Holding("abc Def 12");
    content const lower = AsLowercase(content_of(object));
    for (char const* text : {"abc", "def 12", "c d"}) EXPECT_TRUE(Contains(lower, StringOf(text))) << text;
    for (char const* text : {"ABC", "Def", "DEF"}) EXPECT_FALSE(Contains(lower, StringOf(text))) << text;
}

TEST_F(Content, LastCastCounts) {
    file const object = Holding("aB");
    content const plain = content_of(object);
    EXPECT_TRUE(Contains(plain, StringOf("aB")));
    EXPECT_TRUE(Contains(AsLowercase(AsUppercase(plain)), StringOf("ab")));
    EXPECT_FALSE(Contains(AsLowercase(AsUppercase(plain)), StringOf("AB")));
    EXPECT_TRUE(Contains(AsUppercase(AsLowercase(plain)), StringOf("AB")));
    EXPECT_FALSE(Contains(AsUppercase(AsLowercase(plain)), StringOf("ab")));
    EXPECT_TRUE(Contains(plain, StringOf("aB"))) << "a cast changes nothing but its own result";
    EXPECT_TRUE(CaseMode::AsIs == plain.mode && static_cast<int>(CaseMode::AsIs) == 0);
    EXPECT_EQ(1, static_cast<int>(AsLowercase(plain).mode));
    EXPECT_EQ(2, static_cast<int>(AsUppercase(plain).mode));
}

TEST_F(Content, CaseIsThatOfAsciiLettersOnly) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    std::string upper = bytes, lower = bytes;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        upper[static_cast<unsigned char>(letter)] = static_cast<char>(letter - 'a' + 'A');
        lower[static_cast<unsigned char>(letter - 'a' + 'A')] = letter;
    }
    file const object = Holding(bytes);
    EXPECT_TRUE(Contains(content_of(object), StringOf(bytes)));
    EXPECT_TRUE(Contains(AsUppercase(content_of(object)), StringOf(upper)));
    EXPECT_TRUE(Contains(AsLowercase(content_of(object)), StringOf(lower)));
    EXPECT_FALSE(Contains(AsLowercase(content_of(object)), StringOf(bytes)));
}

TEST_F(Content, CaseHoldsInEveryChunk) {
    std::string bytes = Filler(3 * kChunk);
    bytes.replace(2 * kChunk - 2, 4, "wOrD");
    bytes.replace(3 * kChunk - 4, 4, "lAsT");
    file const object = Holding(bytes);
    EXPECT_TRUE(Contains(AsUppercase(content_of(object)), StringOf("WORD")));
    EXPECT_TRUE(Contains(AsUppercase(content_of(object)), StringOf("LAST")));
    EXPECT_TRUE(Contains(AsLowercase(content_of(object)), StringOf("word")));
}

// ---- Time for the host

TEST_F(Content, SearchTricklesOnceForEachChunk) {
    struct Row {
        std::size_t size;
        int trickles;
    };
    for (Row const& row : {Row{0, 0}, {1, 1}, {kChunk, 1}, {kChunk + 1, 2}, {3 * kChunk, 3}, {100'000, 4}}) {
        file const object = Holding(std::string(row.size, 'a'));
        Host host;
        EXPECT_FALSE(Has(object, "b"));
        EXPECT_EQ(row.trickles, host.trickles) << row.size;
    }
}

TEST_F(Content, SearchTricklesAfterAMatchAndNoMore) {
    std::string bytes(3 * kChunk, 'a');
    bytes[kChunk + 5] = 'b';
    file const object = Holding(bytes);
    Host host;
    EXPECT_TRUE(Has(object, "b"));
    EXPECT_EQ(2, host.trickles);
}

TEST_F(Content, SearchThatNeedNotLookDoesNotTrickle) {
    Host host;
    file const object = Holding("abc");
    EXPECT_TRUE(Has(object, ""));
    EXPECT_FALSE(Has(object, "abcd"));
    EXPECT_EQ(0, host.trickles);
}

// One chunk more is read, if there is one.
TEST_F(Content, SearchTakesItsStepAfterAMatch) {
    auto const questions = [&](std::size_t size) {
        file const object = Holding(std::string(size, 'a'));
        static int asked;
        asked = 0;
        PlatformSetCheckIn([](UInt32) -> Boolean { return ++asked != 0; });
        EXPECT_TRUE(Has(object, "a"));
        PlatformSetCheckIn(nullptr);
        return asked;
    };
    int const one = questions(kChunk);
    EXPECT_EQ(one + 1, questions(kChunk + 1));
    EXPECT_EQ(one + 1, questions(5 * kChunk));
}

// ---- Failures

TEST_F(Content, EveryFailureIsNoSuchObject) {
    std::string const path = here.Write("file", "text");
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    std::ptrdiff_t const before = OpenFiles();
    EXPECT_EQ(kNone, Thrown([&] { Has(file(MissingItem()), "a"); }));
    EXPECT_EQ(kNone, Thrown([&] { Has(file(FolderAt(here.Path())), "a"); }));
    file const object = FileAt(path);
    ASSERT_EQ(0, chmod(path.c_str(), 0));
    {
        Unprivileged const nobody;
        EXPECT_EQ(kNone, Thrown([&] { Has(object, "a"); }));
    }
    std::filesystem::remove(path);
    EXPECT_EQ(kNone, Thrown([&] { Has(object, "a"); }));
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(Content, ThatCannotBeReadOnIsNoSuchObject) {
    file const object = Holding(std::string(3 * kChunk, 'a'));
    std::ptrdiff_t const before = OpenFiles();
    Host host;
    host.act = [] { PlatformSetCheckIn([](UInt32) -> Boolean { return false; }); };
    EXPECT_EQ(kNone, Thrown([&] { Has(object, "b"); }));
    EXPECT_EQ(1, host.trickles);
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(Content, ThatShrinksIsSearchedToItsPresentEnd) {
    file const object = Holding(std::string(3 * kChunk, 'a'));
    std::ptrdiff_t const before = OpenFiles();
    Host host;
    host.act = [&] { std::filesystem::resize_file(here.Path("file"), kChunk); };
    EXPECT_FALSE(Has(object, "b"));
    Holding(std::string(3 * kChunk, 'a'));
    EXPECT_TRUE(Has(object, "a")) << "also where nothing follows the chunk with the text any more";
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(Content, ThatGrowsIsSearchedToItsFormerEnd) {
    file const object = Holding(std::string(kChunk + 5, 'a'));
    Host host;
    host.act = [&] { std::ofstream(here.Path("file"), std::ios::app) << "b"; };
    EXPECT_FALSE(Has(object, "b"));
    EXPECT_TRUE(Has(object, "b")) << "and the next search to its new one";
}

TEST_F(Content, WhatTheHostThrowsIsNoSuchObjectToo) {
    file const object = Holding("abc");
    Host host;
    host.act = [] { throw 7; };
    EXPECT_EQ(kNone, Thrown([&] { Has(object, "a"); }));
}

TEST_F(Content, OfFourGibibytesIsTakenModuloThem) {
    std::uintmax_t const whole = std::uintmax_t{1} << 32;
    ClearFileCaches(nullptr);
    file const object = FileAt(here.Write("file", "head"));
    std::filesystem::resize_file(here.Path("file"), whole);
    EXPECT_FALSE(Has(object, "h")) << "its length counts as 0";
    std::filesystem::resize_file(here.Path("file"), whole + 2);
    EXPECT_TRUE(Has(object, "he"));
    EXPECT_FALSE(Has(object, "hea"));
}

TEST_F(Content, OfAFileThatIsMadeWhenItIsRead) {
    EXPECT_TRUE(Has(FileAt("/proc/version"), "Linux"));
    EXPECT_FALSE(Has(FileAt("/dev/zero"), std::string(1, '\0')));
}

// ---- Single bytes

namespace {

class ByteOf : public Content {};

}  // namespace

TEST_F(ByteOf, IsItsValue) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    file const object = Holding(bytes);
    for (unsigned index = 0; index < 256; ++index) EXPECT_EQ(index, byte_of(index, object));
    EXPECT_EQ(200, byte_of(200, object));
}

TEST_F(ByteOf, CountsFromZeroToBeforeTheEnd) {
    file const one = Holding("A");
    EXPECT_EQ(65, byte_of(0, one));
    EXPECT_EQ(kNone, Thrown([&] { byte_of(1, one); }));
    EXPECT_EQ(kNone, Thrown([&] { byte_of(~0ull, one); }));
    EXPECT_EQ(kNone, Thrown([&] { byte_of(0, Holding("")); }));
}

TEST_F(ByteOf, IsAddressedWith32Bits) {
    std::uintmax_t const whole = std::uintmax_t{1} << 32;
    file const object = FileAt(WriteSparse(here, whole + 3, "xyz123"));
    EXPECT_EQ('y', byte_of(whole - 2, object));
    EXPECT_EQ('z', byte_of(whole - 1, object));
    EXPECT_EQ(0, byte_of(0, object));
    EXPECT_EQ(kNone, Thrown([&] { byte_of(whole, object); })) << "though it is there";
    EXPECT_EQ(kNone, Thrown([&] { byte_of(whole + 3, object); }));
}

TEST_F(ByteOf, EndIsThatWhichTheFileHadWhenItWasLookedUp) {
    file const object = Holding("abc");
    std::ofstream(here.Path("file"), std::ios::app) << "def";
    EXPECT_EQ('c', byte_of(2, object));
    EXPECT_EQ(kNone, Thrown([&] { byte_of(3, object); }));
    std::filesystem::resize_file(here.Path("file"), 1);
    EXPECT_EQ('a', byte_of(0, object));
    EXPECT_EQ(kNone, Thrown([&] { byte_of(1, object); })) << "or an earlier one that it has now";
    ClearFileCaches(nullptr);
    EXPECT_EQ(kNone, Thrown([&] { byte_of(0, FileAt("/proc/version")); })) << "which is 0 by the catalog";
}

TEST_F(ByteOf, EveryFailureIsNoSuchObject) {
    EXPECT_EQ(kNone, Thrown([&] { byte_of(0, file(MissingItem())); }));
    EXPECT_EQ(kNone, Thrown([&] { byte_of(0, file(FolderAt(here.Path()))); }));
    file const object = Holding("abc");
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(here.Path("file").c_str(), 0));
    {
        Unprivileged const nobody;
        EXPECT_EQ(kNone, Thrown([&] { byte_of(0, object); }));
    }
    std::filesystem::remove(here.Path("file"));
    std::ptrdiff_t const before = OpenFiles();
    EXPECT_EQ(kNone, Thrown([&] { byte_of(0, object); }));
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(ByteOf, ClosesTheFile) {
    file const object = Holding("abc");
    std::ptrdiff_t const before = OpenFiles();
    EXPECT_EQ('b', byte_of(1, object));
    EXPECT_TRUE(Has(object, "b"));
    EXPECT_EQ(before, OpenFiles());
}

// ---- The module

namespace {

class Recorder : public Fingerprinter {
  public:
    void Add(ConstData bytes) override { all.append(bytes.begin(), bytes.end()); }
    std::string all;
};

template <class Object>
std::string FingerprintOf(Object const& object) {
    Recorder recorder;
    recorder << object;
    return recorder.all;
}

}  // namespace

TEST_F(Content, FingerprintIsThatOfTheFile) {
    file const object = Holding("abc");
    std::string const print = FingerprintOf(object);
    EXPECT_FALSE(print.empty());
    EXPECT_EQ(print, FingerprintOf(content_of(object)));
    EXPECT_EQ(print, FingerprintOf(AsUppercase(content_of(object))));
    EXPECT_EQ(print, FingerprintOf(AsLowercase(content_of(object))));
    EXPECT_NE(print, FingerprintOf(content_of(Holding("abcd"))));
}

TEST_F(Content, RefersToTheFile) {
    file const object = Holding("abc");
    EXPECT_EQ(&object, &content_of(object).owner);
    EXPECT_EQ(&object, &AsLowercase(AsUppercase(content_of(object))).owner);
    static_assert(sizeof(content) == 2 * sizeof(void*), "a reference and a number of 32 bits");
    static_assert(sizeof(CaseMode) == 4);
}

TEST(FileContentModule, RegistersItsTableInOrder) {
    ExpectRows<FileContentModule>(
        {"type \"file content\"", "operator 11 \"file content\" \"string\": \"boolean\" pure",
         "property \"content\" \"contents\" of \"file\": \"file content\"",
         "cast \"uppercase\" of \"file content\": \"file content\" pure",
         "cast \"lowercase\" of \"file content\": \"file content\" pure",
         "property \"byte\" \"bytes\" [\"integer\"] of \"file\": \"integer\" pure"});
}

TEST_F(Content, RowsAreComputedByTheirFunctions) {
    FileContentModule const module;
    file const object = Holding("aB");
    Registration const type = RegisteredAs("type \"file content\"");
    EXPECT_EQ(sizeof(content), type.valueSize);
    EXPECT_NE(nullptr, type.fingerprint);
    Registration const get = RegisteredAs("property \"content\" \"contents\" of \"file\": \"file content\"");
    Slot<content> slot;
    get.get(slot, nullptr, &object, nullptr, get.context);
    Registration const contains = RegisteredAs("operator 11 \"file content\" \"string\": \"boolean\" pure");
    for (std::string const word : {"uppercase", "lowercase"}) {
        Registration const cast =
            RegisteredAs("cast \"" + word + "\" of \"file content\": \"file content\" pure");
        Slot<content> folded;
        cast.cast(folded, static_cast<void*>(slot), cast.context);
        EXPECT_EQ(word == "uppercase", Contains(folded.Value(), StringOf("AB")));
        EXPECT_EQ(word == "lowercase", Contains(folded.Value(), StringOf("ab")));
    }
    for (char const* text : {"aB", "ab"}) {
        inspector_string const part = StringOf(text);
        Slot<boolean> answer;
        contains.compute(answer, static_cast<void*>(slot), &part, contains.context);
        EXPECT_EQ(text == std::string("aB"), bool(answer.Value()));
    }
}
