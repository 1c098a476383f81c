#include "foundation/TextLines.h"

#include <algorithm>

namespace Platform {

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

}  // namespace Platform
