#include <gtest/gtest.h>

#include "Evaluator/CoreFoundationHolders.h"
#include "support/Owned.h"

TEST(AHolder, ReleasesWhatItTookOver) {
    Owned<CFStringRef> const text(NewString("a"));
    {
        AutoCFString const holder(Duplicate(text));
        EXPECT_EQ(2, CFGetRetainCount(text));
        EXPECT_EQ(text, static_cast<CFStringRef>(holder));
    }
    EXPECT_EQ(1, CFGetRetainCount(text));
}

TEST(AHolder, TakesAReferenceOfItsOwnWhenItIsCopied) {
    Owned<CFURLRef> const url(NewURL("/a"));
    AutoCFURL const first(Duplicate(url));
    {
        AutoCFURL const second(first);
        AutoCFURL third;
        third = second;
        EXPECT_EQ(4, CFGetRetainCount(url));
    }
    EXPECT_EQ(2, CFGetRetainCount(url));
}

TEST(AHolder, GivesItsReferenceAwayWhenItIsMoved) {
    Owned<CFURLRef> const url(NewURL("/a"));
    AutoCFURL first(Duplicate(url));
    AutoCFURL const second(std::move(first));
    EXPECT_EQ(2, CFGetRetainCount(url));
    EXPECT_EQ(url, static_cast<CFURLRef>(second));
}

TEST(AHolder, LetsItsOldReferenceGoWhenItIsAssigned) {
    Owned<CFURLRef> const url(NewURL("/a"));
    AutoCFURL holder(Duplicate(url));
    holder = AutoCFURL(NewURL("/b"));
    EXPECT_EQ(1, CFGetRetainCount(url));
    AutoCFURL& same = holder;
    holder = same;
    EXPECT_EQ(1, CFGetRetainCount(holder));
}

TEST(NullReferences, AreNeitherDuplicatedNorDisposedOf) {
    EXPECT_EQ(nullptr, Duplicate(CFStringRef{}));
    EXPECT_EQ(nullptr, Duplicate(CFURLRef{}));
    AutoCFString::DisposeCFStringRef(nullptr);
    AutoCFURL::DisposeCFURLRef(nullptr);
    AutoCFURL const empty;
    AutoCFURL const copy(empty);
    EXPECT_EQ(nullptr, static_cast<CFURLRef>(copy));
}

TEST(Disposing, GivesTheReferenceBack) {
    Owned<CFStringRef> const text(NewString("a"));
    Owned<CFURLRef> const url(NewURL("/a"));
    AutoCFString::DisposeCFStringRef(Duplicate(text));
    AutoCFURL::DisposeCFURLRef(Duplicate(url));
    EXPECT_EQ(1, CFGetRetainCount(text));
    EXPECT_EQ(1, CFGetRetainCount(url));
}
