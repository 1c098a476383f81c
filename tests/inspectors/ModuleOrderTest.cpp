#include <gtest/gtest.h>

#include <algorithm>

#include "RegistrationLog.h"
#include "frame/Adapters.h"

namespace {

struct Thing {
    integer number;
};

integer number_of(Thing const& thing) { return thing.number; }
Thing thing_of() { return Thing{1}; }
bool operator==(Thing const& left, Thing const& right) { return left.number == right.number; }
void Forget(void*) {}

class ThingModule {
    TypeRecord<Thing> type{"thing"};
    Property<Thing, integer> number{"number", "numbers", "thing", "integer", number_of};
    GlobalProperty<Thing> thing{"thing", "things", "thing", thing_of};
    Cast<Thing, integer> asInteger{"integer", "thing", "integer", number_of};
    RelationEqual<Thing, Thing> equal{"thing", "thing"};
    CacheRecord cache{Forget};
};

}  // namespace

TEST(AModule, RegistersInTheOrderOfItsMembersAndWithdrawsInTheOpposite) {
    std::vector<std::string> rows{"type \"thing\"",
                                  "property \"number\" \"numbers\" of \"thing\": \"integer\"",
                                  "property \"thing\" \"things\": \"thing\"",
                                  "cast \"integer\" of \"thing\": \"integer\"",
                                  "operator 6 \"thing\" \"thing\": \"boolean\"",
                                  "cache"};
    ForgetWithdrawn();
    {
        ThingModule const module;
        EXPECT_EQ(rows, RegisteredRows());
    }
    EXPECT_TRUE(Registered().empty());
    std::reverse(rows.begin(), rows.end());
    EXPECT_EQ(rows, Withdrawn());
}

TEST(AModule, CanBeLoadedAgain) {
    { ThingModule const module; }
    ThingModule const again;
    EXPECT_EQ(6u, Registered().size());
}
