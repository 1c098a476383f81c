#pragma once

// Tests that use the library of stones.

#include <gtest/gtest.h>

#include "evaluator/Asking.h"

class Stones : public testing::Test {
  protected:
    static void SetUpTestSuite() { Evaluator::LoadInspectorLibrary(TestLibrary("StoneInspectors")); }
    static void TearDownTestSuite() {
        EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("StoneInspectors.dylib"));
    }
    /// How often a plural of stones was asked for its next one while the query ran.
    static long long Counted(std::string const& query) {
        long long before = std::stoll(Answer("counted stone"));
        Ask(query);
        return std::stoll(Answer("counted stone")) - before;
    }
};
