// References that are taken for those of a type.

#include "plist/Lists.h"
#include "plist/PlatformValues.h"

TEST(Casts, GiveAnObjectOfTheType) {
    List const list("<string>a</string>");
    EXPECT_EQ(list.Root(), CFCast<CFStringRef>(list.Root()));
}

TEST(Casts, FailForEveryOtherType) {
    for (std::string_view const other : {"<true/>", "<integer>1</integer>", "<data>MQ==</data>",
                                         "<date>2001-01-01T00:00:00Z</date>", "<array/>", "<dict/>"}) {
        EXPECT_THROW(CFCast<CFStringRef>(List(other).Root()), CFCastError<__CFString const*>) << other;
    }
}

TEST(Casts, FailByTheirCommonBase) {
    EXPECT_THROW(CFCast<CFStringRef>(List("<true/>").Root()), GenericCFCastError);
    EXPECT_THROW(CFCast<CFDictionaryRef>(List("<array/>").Root()), GenericCFCastError);
}

TEST(Casts, TakeNoReference) {
    List const list("<array/>");
    CFIndex const before = list.Count();
    CFCast<CFArrayRef>(list.Root());
    EXPECT_THROW(CFCast<CFStringRef>(list.Root()), GenericCFCastError);
    EXPECT_EQ(before, list.Count());
}
