#pragma once

// What the tests of stopping and of the stack have in common: the library of nasty inspectors, of whose
// values none may be left behind.

#include <gtest/gtest.h>

#include "evaluator/Asking.h"

class NastyTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(Messages(Evaluator::LoadInspectorLibrary(TestLibrary("NastyInspectors"))), "");
    }
    // After whatever happened the same process answers, and nothing is left of what the queries made.
    void TearDown() override {
        EXPECT_EQ(Answer("living trouble; living round; kind of trouble 7"), "0|0|7");
        EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("NastyInspectors.dylib"));
    }
};
