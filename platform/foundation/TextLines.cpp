#include "foundation/TextLines.h"

#include <algorithm>

namespace Platform {

std::string_view WithoutByteOrderMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (text.starts_with(mark)) text.remove_prefix(mark.size());
    return text;
}

std::string_view TakeLine(std::string_view& text) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view white = " \t\r";
    std::size_t const begin = text.find_first_not_of(white);
    if (begin == text.npos) return {};
    return text.substr(begin, text.find_last_not_of(white) + 1 - begin);
}

std::string_view FirstLine(std::string_view text) { return Trimmed(TakeLine(text)); }

std::string VariableIn(std::string_view text, std::string_view name) {
    std::string result;
    while (!text.empty()) {
        std::string_view const line = TakeLine(text);
        std::size_t const sign = line.find('=');
        if (sign == line.npos || Trimmed(line.substr(0, sign)) != name) continue;
        std::string_view value = Trimmed(line.substr(sign + 1));
        bool const isQuoted = value.size() > 1 && value.front() == value.back() &&
                              (value.front() == '"' || value.front() == '\'');
        result = isQuoted ? value.substr(1, value.size() - 2) : value;
    }
    return result;
}

}  // namespace Platform
