#include "RandomFiles.h"

#include <algorithm>

namespace {

using namespace std::string_view_literals;

// Bytes that a file is made of.
constexpr std::string_view kKinds[] = {
    "ab\r\n"sv,
    "\r\n"sv,
    "abcdefgh\n"sv,
    "abcdefghijklmnopqrstuvwxyz \r\n"sv,
    "\0\n\r\xFF\x80\x8D\x8A"sv,
    "[]<>(){}=:; \tab\r\n"sv,
    "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab\n"sv,
    "a\r"sv,
};

}  // namespace

std::string RandomFiles::Ending() {
    return OneOf({"\n", "\r", "\r\n", "\n\r", "\n\n", "\r\r", "\r\n\r\n", "\r\n\r", "\n\r\n"});
}

// Without line endings.
std::string RandomFiles::Filling(std::size_t size) {
    std::string filling(size, "ab \0="[Below(5)]);
    if (OneIn(2)) {
        for (char& byte : filling) byte = static_cast<char>('a' + Below(26));
    }
    return filling;
}

std::string RandomFiles::OfSize(std::size_t size) {
    std::string_view const kind = kKinds[Below(std::size(kKinds))];
    std::string file(size, '\0');
    bool const inRuns = OneIn(3);
    for (std::size_t i = 0; i < size;) {
        std::size_t const run = inRuns ? std::min(1 + Below(OneIn(20) ? 3000 : 8), size - i) : 1;
        std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(i), run, kind[Below(kind.size())]);
        i += run;
    }
    return file;
}

std::string RandomFiles::Small() {
    if (OneIn(200)) return {};
    if (OneIn(3)) return Settings(Below(12));
    return OfSize(Below(OneIn(3) ? 8 : 150));
}

void RandomFiles::PutEndingsAround(std::string& file, std::size_t multiple) {
    for (std::size_t place = multiple; place < file.size() + 4; place += multiple) {
        if (OneIn(4)) continue;
        std::size_t const at = place - Below(4);
        std::string const ending = Ending();
        for (std::size_t i = 0; i < ending.size() && at + i < file.size(); ++i) file[at + i] = ending[i];
    }
}

std::string RandomFiles::EndingAtBufferEnds(std::size_t bufferSize) {
    std::string file;
    // A buffer is full where the line that begins in it and does not end there has that many bytes.
    std::size_t full = bufferSize;
    for (std::size_t buffers = 1 + Below(bufferSize < 4096 && OneIn(3) ? 20 : 4); buffers > 0; --buffers) {
        while (file.size() + 300 < full && !OneIn(4))
            file += Filling(Below(OneIn(3) ? full - file.size() - 200 : 100)) + Ending();
        std::size_t const lineStart = file.size();
        std::size_t const end = full - 2 + Below(5);
        if (end > file.size()) file += Filling(end - file.size());
        if (!OneIn(5)) file += Ending();
        if (OneIn(2)) file += Filling(Below(20));
        full = (OneIn(3) ? file.size() : lineStart) + bufferSize;
    }
    if (OneIn(2)) file += Ending();
    return file;
}

std::string RandomFiles::Name() {
    return OneOf({"a", "A", "b", "name", "Name", "key", "key word", "x", "", " ", "a ", "a]", "=", "[a"});
}

std::string RandomFiles::Settings(std::size_t lines) {
    std::string file;
    auto const blanks = [&] { return OneOf({"", "", "", " ", "\t", " \t "}); };
    for (; lines > 0; --lines) {
        file += blanks();
        if (OneIn(3)) {
            std::size_t const kind = Below(4);
            file += "[<({"[kind];
            file += blanks() + Name() + blanks();
            if (!OneIn(6)) file += "]>)}"[OneIn(6) ? Below(4) : kind];
            file += blanks() + OneOf({"", "", "; x", "]", "x"});
        } else {
            file += Name() + blanks() + OneOf({"=", "=", ":", "", "=="}) + blanks();
            file += OneOf({"1", "value", "two words", "", ";", "a;b", "\"q ; r\"", "=", "1 \t", "x]", ">)"}) +
                    blanks();
            file += OneOf({"", "", "; comment", ";"});
        }
        if (lines > 1 || !OneIn(3)) file += OneIn(8) ? OneOf({"\n\n", "\r\r\n", "\n \n"}) : Ending();
    }
    return file;
}

std::string RandomFiles::TextFor(std::string_view file) {
    std::string text;
    if (!file.empty() && !OneIn(6)) {
        std::size_t const size = OneIn(10) ? Below(3000) : 1 + Below(6);
        text = file.substr(Below(file.size()), size);
        // Mostly what can stand in a line.
        if (!OneIn(5)) std::erase_if(text, [](char byte) { return byte == '\r' || byte == '\n'; });
        if (!text.empty() && OneIn(4)) text[Below(text.size())] ^= 1;
        if (!text.empty() && OneIn(8)) text.pop_back();
    } else {
        text = OneOf({"", "a", "\n", "\r", "absent", "b\n", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"});
        if (OneIn(20)) text = std::string(2049, 'a');
    }
    return text;
}
