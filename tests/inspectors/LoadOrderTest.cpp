#include "modules/LoadOrder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "RegistrationLog.h"

TEST(LoadOrder, WithdrawsEverythingInTheOppositeOrderOfRegistration) {
    ForgetWithdrawn();
    std::vector<std::string> rows;
    {
        Inspectors::LoadOrder const modules;
        rows = RegisteredRows();
    }
    EXPECT_GT(rows.size(), 20u);
    EXPECT_TRUE(Registered().empty());
    std::reverse(rows.begin(), rows.end());
    EXPECT_EQ(Withdrawn(), rows);
}

TEST(LoadOrder, RegistersTheSameAgain) {
    std::vector<std::string> first, second;
    {
        Inspectors::LoadOrder const modules;
        first = RegisteredRows();
    }
    Inspectors::LoadOrder const modules;
    EXPECT_EQ(RegisteredRows(), first);
}
