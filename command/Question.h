#pragma once

#include <optional>
#include <string>

namespace Command {

/// The query, and where it stands.
struct Question {
    std::string text;
    std::string source;  ///< the file, as messages name it; empty: the command line
};

/// Reads the query that a file holds, without the line end behind it; "-" is standard input. Of a file that
/// is longer than a query can be, no more than tells so. Returns nothing when it cannot be read, with the
/// reason in `why`.
std::optional<Question> ReadQuestion(std::string const& file, std::string& why);

}  // namespace Command
