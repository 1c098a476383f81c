#include "processes/ProcTexts.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "foundation/TextLines.h"
#include "processes/SerialNumber.h"

namespace Platform {

namespace {

template <class Number>
std::optional<Number> NumberOf(std::string_view text) {
    Number number = 0;
    char const* const end = text.data() + text.size();
    auto const [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end) return std::nullopt;
    return number;
}

// Takes the text before the next blank off a line.
std::string_view TakeField(std::string_view& line) {
    std::string_view const field = line.substr(0, line.find_first_of(" \n"));
    line.remove_prefix(std::min(field.size() + 1, line.size()));
    return field;
}

}  // namespace

std::optional<ProcessStat> ParseStat(std::string_view text) {
    // The name is in parentheses, and nothing behind it has any. Fields are counted from 1.
    constexpr int state = 3, parent = 4, inUser = 14, inSystem = 15, start = 22, size = 23;
    std::size_t const name = text.find('('), behind = text.rfind(") ");
    if (name == std::string_view::npos || behind == std::string_view::npos || behind < name)
        return std::nullopt;
    text.remove_prefix(behind + 2);
    std::array<std::uint64_t, size + 1> numbers{};
    ProcessStat stat;
    for (int field = state; field <= size; ++field) {
        std::string_view const word = TakeField(text);
        if (field == state) {
            if (word.size() != 1) return std::nullopt;
            stat.state = word[0];
        } else if (field == parent || field == inUser || field == inSystem || field >= start) {
            auto const number = NumberOf<std::uint64_t>(word);
            if (!number) return std::nullopt;
            numbers[static_cast<std::size_t>(field)] = *number;
        }
    }
    if (numbers[parent] >> kProcessIdBits != 0 || numbers[start] > kLatestStart) return std::nullopt;
    stat.parent = static_cast<pid_t>(numbers[parent]);
    stat.active = numbers[inUser] + numbers[inSystem];
    stat.start = numbers[start];
    stat.size = numbers[size];
    return stat;
}

std::optional<ProcessStatus> ParseStatus(std::string_view text) {
    std::optional<pid_t> process;
    std::optional<uid_t> user;
    while (!text.empty()) {
        std::string_view line = TakeLine(text);
        std::size_t const colon = line.find(':');
        if (colon == std::string_view::npos) continue;
        std::string_view const key = line.substr(0, colon);
        std::string_view const values = Trimmed(line.substr(colon + 1));
        if (key == "Tgid" && !process) process = ProcessIdOf(values);
        if (key == "Uid" && !user) user = NumberOf<uid_t>(values.substr(0, values.find_first_of(" \t")));
    }
    if (!process || !user) return std::nullopt;
    return ProcessStatus{*process, *user};
}

std::optional<pid_t> ProcessIdOf(std::string_view text) {
    auto const number = NumberOf<std::uint32_t>(text);
    if (!number || *number == 0 || *number >> kProcessIdBits != 0 || text[0] == '0') return std::nullopt;
    return static_cast<pid_t>(*number);
}

}  // namespace Platform
