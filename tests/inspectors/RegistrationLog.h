#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Evaluator/Registration.h"

/// One registration as it was received.
struct Registration {
    /// The kind and the texts in order, such as `property "time" "times" of "hours": "integer"`; an index
    /// type stands in brackets, a dependency marker as "pure" at the end.
    std::string row;
    void* record = nullptr;
    unsigned long recordSize = 0;
    /// Of a type's value or an iteration's state.
    unsigned long valueSize = 0;
    DestroyFunction destroy = nullptr;
    ConstructFunction construct = nullptr;
    FingerprintFunction fingerprint = nullptr;
    /// Of an iterated property the first step.
    PropertyFunction get = nullptr;
    PropertyFunction next = nullptr;
    CastFunction cast = nullptr;
    BinaryOperatorFunction compute = nullptr;
    ClearCacheFunction clear = nullptr;
    void* reserved = nullptr;
    void const* context = nullptr;
    DependencyFunction dependency = nullptr;
};

/// What has been registered and not withdrawn, in order.
std::vector<Registration> const& Registered();
/// Its rows alone.
std::vector<std::string> RegisteredRows();
/// The only registration with the row; a test failure and an empty one if there is none or there are several.
Registration RegisteredAs(std::string const& row);
/// The rows of what was withdrawn since the last ForgetWithdrawn(), in order.
std::vector<std::string> const& Withdrawn();
void ForgetWithdrawn();

using Rows = std::vector<std::string>;

/// Constructs a module, which must register these rows in this order and withdraw them in the opposite one.
template <class Module>
void ExpectRows(Rows rows) {
    ForgetWithdrawn();
    {
        Module const module;
        EXPECT_EQ(rows, RegisteredRows());
    }
    EXPECT_TRUE(Registered().empty());
    std::reverse(rows.begin(), rows.end());
    EXPECT_EQ(rows, Withdrawn());
}
