#pragma once

// Runs programs as a shell would and keeps what came of it.

#include <string>
#include <vector>

struct Ran {
    int status = -1;  ///< exit status; 128 + the signal's number when a signal ended it
    std::string out, err;
};

/// Runs the program with the arguments and an empty standard input.
Ran RunProgram(std::vector<std::string> const& arguments);
/// Runs the built command.
Ran RunZelq(std::vector<std::string> arguments);
/// The folder that holds bin/ and lib/ of this build.
std::string BuildFolder();
