#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace Command {

/// How the values are written.
enum class Format { lines, nulls, json, ndjson };

/// What the command line asks for.
struct Options {
    std::string query;
    std::optional<std::string> file;  ///< holds the query instead; "-": standard input does
    std::string inspectors;           ///< folder or library; empty: the standard folder
    bool registrations = false;
    bool explain = false;  ///< tell how the query is understood, instead of answering it
    Format format = Format::lines;
    bool errorsAsJson = false;
    bool quiet = false;                   ///< show no progress
    std::chrono::nanoseconds timeout{0};  ///< zero: none
};

/// Reads the command line. Where that is all there is to do (help, version, wrong use), says so on the right
/// stream and returns nothing, with the exit status in `status`.
std::optional<Options> ReadOptions(int argc, char** argv, int& status);

}  // namespace Command
