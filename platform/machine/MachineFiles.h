#pragma once

// The kernel's files that tell facts of the machine, below /proc and /sys, and the like of a recorded
// machine: see MachinePath. The kernel answers at once; what only waits, as a pipe does, is not waited for.
//
// Functions give 0 or a value of errno.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// As much of a fact as is read where nothing else is said.
inline constexpr std::size_t kMostOfFact = 4096;

/// Reads the beginning of the file at a path, `most` bytes of it. On failure the text is as it was.
int ReadBeginning(std::string const& path, std::size_t most, std::string& text);
/// The same for a fact of the machine, such as "proc/meminfo".
int ReadFact(std::string_view path, std::string& text, std::size_t most = kMostOfFact);
/// A fact of one line, without white space around it; empty where it cannot be read.
std::string FactLine(std::string_view path);
/// Gets the names in a folder of facts, sorted bytewise. On failure there are none.
int ListFacts(std::string_view path, std::vector<std::string>& names);

}  // namespace Platform
