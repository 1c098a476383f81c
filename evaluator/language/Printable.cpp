#include "language/Printable.h"

#include <fmt/format.h>

#include <algorithm>

#include "values/Utf8.h"

namespace Evaluator {

std::string Printable(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        auto byte = static_cast<unsigned char>(text[at]);
        std::size_t length = Utf8SequenceLength(text.substr(at));
        bool control = byte < 0x20 || byte == 0x7F ||
                       (length == 2 && byte == 0xC2 && static_cast<unsigned char>(text[at + 1]) < 0xA0);
        if (length > 0 && !control) {
            result += text.substr(at, length);
            at += length;
            continue;
        }
        if (byte == '\t')
            result += "\\t";
        else if (byte == '\n')
            result += "\\n";
        else if (byte == '\r')
            result += "\\r";
        else
            result += fmt::format("\\x{:02X}", byte);
        ++at;
    }
    return result;
}

std::size_t Columns(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace Evaluator
