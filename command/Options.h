#pragma once

#include <optional>
#include <string>

namespace Command {

/// What the command line asks for.
struct Options {
    std::string query;       ///< empty with `registrations`
    std::string inspectors;  ///< folder or library; empty: the standard folder
    bool registrations = false;
};

/// Reads the command line. Where that is all there is to do (help, version, wrong use), says so on the right
/// stream and returns nothing, with the exit status in `status`.
std::optional<Options> ReadOptions(int argc, char** argv, int& status);

}  // namespace Command
