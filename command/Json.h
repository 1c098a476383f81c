#pragma once

// What the command knows, as JSON.

#include <string>
#include <string_view>

#include "Evaluator/Embedding.h"

namespace Command {

/// A string; {"base64": …} where the text is not UTF-8.
std::string JsonOfText(std::string_view text);
/// Integers and booleans as such, tuples as arrays, everything else as its text.
std::string JsonOfValue(Evaluator::Result const& value);
/// The members of an object that tell of a problem, without its braces: kind, message, hint (null: none),
/// begin and end (null where it is about no place in the query).
std::string JsonMembersOf(Evaluator::Problem const& problem, std::string_view kind);
std::string JsonOfRegistration(Evaluator::RegistrationInfo const& registration);

}  // namespace Command
