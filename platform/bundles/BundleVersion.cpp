#include "bundles/BundleVersion.h"

#include <cstddef>
#include <optional>

namespace Platform {

namespace {

// A number of at most so many digits, which are taken off the text; empty where there is none.
std::optional<UInt32> TakeNumber(std::u16string_view& text, std::size_t mostDigits) {
    UInt32 number = 0;
    std::size_t digits = 0;
    for (; digits < mostDigits && digits < text.size() && text[digits] >= u'0' && text[digits] <= u'9';
         ++digits)
        number = 10 * number + (text[digits] - u'0');
    text.remove_prefix(digits);
    return digits > 0 ? std::optional(number) : std::nullopt;
}

// A digit behind a dot, or 0 where there is no dot.
std::optional<UInt32> TakeRevision(std::u16string_view& text) {
    if (!text.starts_with(u'.')) return 0;
    text.remove_prefix(1);
    return TakeNumber(text, 1);
}

std::optional<UInt32> TakeStage(std::u16string_view& text) {
    constexpr UInt32 stageOfFinal = 0x80;
    if (text.empty()) return stageOfFinal;
    char16_t const letter = text.front();
    text.remove_prefix(1);
    switch (letter) {
        case u'd':
            return 0x20;
        case u'a':
            return 0x40;
        case u'b':
            return 0x60;
        case u'f':
            return stageOfFinal;
        default:
            return std::nullopt;
    }
}

}  // namespace

UInt32 PackedVersion(std::u16string_view text) {
    constexpr std::size_t mostCharacters = 10;
    if (text.size() > mostCharacters) return 0;
    auto const major = TakeNumber(text, 2);
    if (!major && !text.starts_with(u'.')) return 0;
    auto const minor = TakeRevision(text);
    auto const bug = minor ? TakeRevision(text) : std::nullopt;
    auto const stage = bug ? TakeStage(text) : std::nullopt;
    if (!stage) return 0;
    UInt32 const build = TakeNumber(text, 3).value_or(0);
    if (!text.empty() || build > 0xFF) return 0;
    UInt32 const whole = major.value_or(0);
    return whole / 10 << 28 | whole % 10 << 24 | *minor << 20 | *bug << 16 | *stage << 8 | build;
}

}  // namespace Platform
