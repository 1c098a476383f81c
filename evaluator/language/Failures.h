#pragma once

// Internal. What an exception that came out of an inspector means to the person who asked. For use in a catch
// clause: MissingItem and FailureOf look at the exception that is being handled.

#include <cstdint>
#include <optional>
#include <string>

#include "Evaluator/Embedding.h"
#include "registry/Registry.h"

namespace Evaluator {

/// When the exception is the platform's word that an item is not there: that word. Else nothing, and so where
/// a file system does not answer.
std::optional<std::string> MissingItem();

/// The file system that the platform gave up waiting for, when its last such call in this evaluation ended
/// with the code: words such as `the file system mounted at "/net" does not answer`. Else empty.
std::string UnresponsiveMount(std::int32_t code);

/// The problem to report when an inspector answered that something is not there, but the platform had given
/// up on a file system that does not answer, or could not use an administrator's settings: nobody knows
/// whether it is there. Else nothing, and so where an item tells of that itself.
std::optional<Problem> SilenceBehind(Entry const& entry, Range where);

/// A file that is there, but that the platform could not use since something was absent last: because it may
/// not be read, or is no property list. In words; empty when there was none.
std::string UnusableFile();

/// The problem to report: which registration failed and why, the platform's code with its meaning.
Problem FailureOf(Entry const& entry, Range where);

}  // namespace Evaluator
