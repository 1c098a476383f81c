#include "RandomTexts.h"

#include <iterator>
#include <string_view>

using namespace std::literals;

namespace {

// Those that versions are made of, and some others.
constexpr std::string_view kBytes = "0123456789.....aAbBdDfFceGz -_+~\n\x80\xE9\xFF\0"sv;
constexpr std::string_view kLetters = "abdfABDF"sv;
// Around what 16, 32 and 64 bits hold.
constexpr std::string_view kEdges[] = {"65534"sv,
                                       "65535"sv,
                                       "65536"sv,
                                       "99999"sv,
                                       "131071"sv,
                                       "4294967295"sv,
                                       "4294967296"sv,
                                       "4294967297"sv,
                                       "18446744073709551615"sv,
                                       "18446744073709551616"sv,
                                       "18446744073709551617"sv,
                                       "184467440737095516160"sv};

}  // namespace

std::string RandomTexts::Any() {
    switch (Below(8)) {
        case 0:
        case 1:
        case 2:
            return Version();
        case 3:
        case 4:
        case 5:
            return NearVersion();
        case 6:
            return Tokens();
        default:
            return AnyBytes();
    }
}

std::string RandomTexts::Version() {
    std::string text = Number();
    if (OneIn(8)) return text;
    text += "." + Number();
    if (OneIn(2)) text += "." + Number();
    if (OneIn(3)) return text;
    if (OneIn(3)) return text + "." + Number();
    text += Letter();
    return OneIn(3) ? text : text + Number();
}

std::string RandomTexts::NearVersion() {
    std::string text = Version();
    for (std::size_t changes = 1 + Below(3); changes > 0; --changes) {
        std::size_t const place = Below(text.size() + 1);
        bool const isEnd = place == text.size();
        switch (Below(5)) {
            case 0:
                text.insert(place, 1, Byte());
                break;
            case 1:
                if (!isEnd) text[place] = Byte();
                break;
            case 2:
                if (!isEnd) text.erase(place, 1 + Below(2));
                break;
            case 3:
                if (!isEnd) text.insert(place, 1, text[place]);
                break;
            default:
                text = text.substr(0, place);
        }
    }
    return text;
}

std::string RandomTexts::Tokens() {
    std::string text;
    for (std::size_t count = Below(8); count > 0; --count) {
        switch (Below(4)) {
            case 0:
                text += ".";
                break;
            case 1:
                text += Letter();
                break;
            default:
                text += Number();
        }
    }
    return text;
}

std::string RandomTexts::AnyBytes() {
    std::string text(Below(10), '\0');
    for (char& c : text) c = OneIn(4) ? static_cast<char>(Below(256)) : Byte();
    return text;
}

std::string RandomTexts::Number() {
    std::string const zeros(OneIn(8) ? Below(4) : 0, '0');
    if (OneIn(12)) return zeros + std::string(kEdges[Below(std::size(kEdges))]);
    return zeros + std::to_string(OneIn(2) ? Below(12) : OneIn(8) ? Below(70000) : Below(1000));
}

std::string RandomTexts::Letter() { return std::string(1, kLetters[Below(kLetters.size())]); }

char RandomTexts::Byte() { return kBytes[Below(kBytes.size())]; }
