#pragma once

#include <string>

#include "Evaluator/Values.h"

/// The bytes of a span as a string that tests can compare and print.
inline std::string TextOf(ConstData bytes) { return {bytes.begin(), bytes.end()}; }

/// The bytes of a text, which may hold NUL bytes and must outlive the span.
inline ConstData BytesOf(std::string const& text) {
    return {reinterpret_cast<unsigned char const*>(text.data()), text.size()};
}

/// A string whose bytes lie in `text`.
inline inspector_string StringOf(std::string const& text) {
    return {BytesOf(text).begin(), static_cast<std::uint32_t>(text.size())};
}
