#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/Owned.h"

TEST(Objects, AreBornWithOneReference) {
    Owned<CFStringRef> const text(NewString("a"));
    EXPECT_EQ(1, CFGetRetainCount(text));
}

TEST(Objects, RetainReturnsTheObjectAndReleaseGivesTheReferenceBack) {
    Owned<CFStringRef> const text(NewString("a"));
    EXPECT_EQ(text, CFRetain(text));
    EXPECT_EQ(2, CFGetRetainCount(text));
    CFRelease(text);
    EXPECT_EQ(1, CFGetRetainCount(text));
}

TEST(Objects, CountsAreRightWhenManyThreadsShareOne) {
    Owned<CFStringRef> const text(NewString("a"));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int j = 0; j < 10000; ++j) {
                CFRetain(text);
                CFRelease(text);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(1, CFGetRetainCount(text));
}

TEST(Objects, KnowTheirTypes) {
    Owned<CFStringRef> const text(NewString("a"));
    Owned<CFURLRef> const url(NewURL("/a"));
    EXPECT_EQ(CFStringGetTypeID(), CFGetTypeID(text));
    EXPECT_EQ(CFURLGetTypeID(), CFGetTypeID(url));
    EXPECT_NE(CFStringGetTypeID(), CFURLGetTypeID());
}

TEST(Objects, OfDifferentTypesAreNotEqual) {
    Owned<CFStringRef> const text(NewString("/a"));
    Owned<CFURLRef> const url(NewURL("/a"));
    EXPECT_FALSE(CFEqual(text, url));
    EXPECT_TRUE(CFEqual(text, text));
}

TEST(Objects, WithEqualContentsAreEqualAndHashAlike) {
    Owned<CFStringRef> const utf8(NewString("\xC3\xA9"));
    Owned<CFStringRef> const macRoman(NewString("\x8E", kCFStringEncodingMacRoman));
    Owned<CFStringRef> const other(NewString("e"));
    EXPECT_TRUE(CFEqual(utf8, macRoman));
    EXPECT_EQ(CFHash(utf8), CFHash(macRoman));
    EXPECT_FALSE(CFEqual(utf8, other));
}

TEST(Objects, CopyOfAStringOwnsItsReference) {
    CFStringRef const text = NewString("a");
    Owned<CFStringRef> const copy(CFStringCreateCopy(kCFAllocatorDefault, text));
    CFRelease(text);
    EXPECT_EQ("a", NameBytes(copy));
}

TEST(Objects, UrlKeepsItsBaseAlive) {
    CFURLRef const base = NewURL("/base", true);
    Owned<CFURLRef> const url(CFURLCreateFromFileSystemRepresentationRelativeToBase(
        kCFAllocatorDefault, Bytes("name"), 4, false, base));
    EXPECT_EQ(2, CFGetRetainCount(base));
    CFRelease(base);
    EXPECT_EQ("/base/name", PathOf(url));
}

TEST(ObjectsDeathTest, NullReferenceStopsTheProcess) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(CFRelease(nullptr), "CFRelease: the reference is null");
    EXPECT_DEATH(CFRetain(nullptr), "CFRetain: the reference is null");
}
