#pragma once

// Decimal numbers in texts. Pure.

#include <charconv>
#include <cstddef>
#include <optional>
#include <string_view>
#include <system_error>

namespace Platform {

/// Takes the number at the front of a text. Gives std::errc() when there is one; result_out_of_range when it
/// is too large, and then its digits are taken, too; invalid_argument when there is none.
template <class Number>
std::errc TakeNumber(std::string_view& text, Number& number) {
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc::invalid_argument) text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error;
}

/// The number that a text is as a whole; empty for any other text.
template <class Number>
std::optional<Number> NumberIn(std::string_view text) {
    Number number{};
    bool const isNumber = TakeNumber(text, number) == std::errc() && text.empty();
    return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace Platform
