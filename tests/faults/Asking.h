#pragma once

// Verbs of the tests that ask about files with the command.

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "command/Running.h"

/// A query about an item, which stands where the query has a '%'.
inline std::string About(std::string const& item, std::string query) {
    return query.replace(query.find('%'), 1, item);
}

/// The command, as a user who may not pass over permissions, as root may.
inline Ran RunUnprivileged(std::string const& query) {
    std::vector<std::string> command{Zelq(), query};
    if (geteuid() == 0)
        command.insert(command.begin(), {"setpriv", "--bounding-set=-dac_override,-dac_read_search"});
    return RunProgram(command);
}

/// The message alone, without the query below it.
inline std::string MessageOf(Ran const& ran) { return ran.err.substr(0, ran.err.find('\n')); }

inline void ExpectAnswer(std::string const& answer, Ran const& ran) {
    EXPECT_EQ(answer, ran.out);
    EXPECT_EQ("", ran.err);
    EXPECT_EQ(0, ran.status);
}

inline void ExpectNoSuchObject(Ran const& ran) {
    EXPECT_EQ("", ran.out);
    EXPECT_EQ("error: no such object", MessageOf(ran));
    EXPECT_EQ(1, ran.status);
}

/// A phrase that failed, and words of the reason.
inline void ExpectFailure(std::string const& phrase, std::string const& reason, Ran const& ran) {
    EXPECT_EQ("", ran.out);
    EXPECT_EQ(0u, MessageOf(ran).find("error: \"" + phrase + "\" failed: ")) << ran.err;
    EXPECT_NE(std::string::npos, MessageOf(ran).find(reason)) << ran.err;
    EXPECT_EQ(1, ran.status);
}
