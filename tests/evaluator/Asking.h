#pragma once

// Asks queries of the evaluator as a program does, and keeps what came of it.

#include <filesystem>
#include <string>
#include <vector>

#include "Evaluator/Embedding.h"
#include "support/OwnPath.h"

/// What a query came to: its values, and the problems as a person reads them.
struct Outcome {
    std::vector<std::string> values;
    std::string problems;
    friend bool operator==(Outcome const&, Outcome const&) = default;
};

inline void PrintTo(Outcome const& outcome, std::ostream* out) {
    for (std::string const& value : outcome.values) *out << "\n  " << value;
    *out << "\n" << outcome.problems;
}

inline Outcome Ask(std::string_view text, Evaluator::RunOptions const& options = {}) {
    Outcome outcome;
    auto [query, problems] = Evaluator::Query::Compile(text, options.limits);
    auto consumer = [&](Evaluator::Result const& result) {
        outcome.values.push_back(result.Text());
        return true;
    };
    if (query)
        if (auto problem = query->Run(consumer, options)) problems.push_back(*problem);
    for (Evaluator::Problem const& problem : problems) outcome.problems += Evaluator::Render(problem, text);
    return outcome;
}

/// The values of a query that must have no problems, joined with "|".
inline std::string Answer(std::string_view text) {
    Outcome outcome = Ask(text);
    if (!outcome.problems.empty()) return outcome.problems;
    std::string joined;
    for (std::size_t i = 0; i < outcome.values.size(); ++i) joined += (i ? "|" : "") + outcome.values[i];
    return joined;
}

/// A library that the tests were built with.
inline std::filesystem::path TestLibrary(std::string const& name) {
    return ownPath.parent_path() / "libraries" / (name + ".dylib");
}

inline std::string Messages(std::vector<Evaluator::Problem> const& problems) {
    std::string messages;
    for (Evaluator::Problem const& problem : problems) messages += problem.message + "\n";
    return messages;
}
