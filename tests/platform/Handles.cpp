#include <Carbon/MacMemory.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <thread>

namespace {

// A value that is no handle, and that leads nowhere.
Handle const kWild = reinterpret_cast<Handle>(std::uintptr_t{0x10});

// A block of a test.
class Block {
  public:
    explicit Block(Size size) : handle(NewHandle(size)) {}
    ~Block() {
        if (handle != nullptr) DisposeHandle(handle);
    }
    Block(Block const&) = delete;
    Block& operator=(Block const&) = delete;
    operator Handle() const { return handle; }

  private:
    Handle const handle;
};

}  // namespace

TEST(Handles, HaveTheSizeThatWasAskedFor) {
    Block const block(16);
    ASSERT_NE(nullptr, block);
    EXPECT_EQ(noErr, MemError());
    EXPECT_EQ(16, GetHandleSize(block));
    EXPECT_EQ(std::string(16, '\0'), std::string(*static_cast<Handle>(block), 16));
}

TEST(Handles, OfNoBytesHaveAnAddress) {
    Block const block(0);
    ASSERT_NE(nullptr, block);
    EXPECT_NE(nullptr, *static_cast<Handle>(block));
    EXPECT_EQ(0, GetHandleSize(block));
    EXPECT_EQ(noErr, MemError());
}

TEST(Handles, KeepTheirBytesWhenTheyAreResized) {
    Block const block(3);
    std::memcpy(*static_cast<Handle>(block), "abc", 3);
    SetHandleSize(block, 100000);
    EXPECT_EQ(noErr, MemError());
    EXPECT_EQ(100000, GetHandleSize(block));
    EXPECT_EQ("abc", std::string(*static_cast<Handle>(block), 3));
    SetHandleSize(block, 2);
    EXPECT_EQ(2, GetHandleSize(block));
    EXPECT_EQ("ab", std::string(*static_cast<Handle>(block), 2));
    SetHandleSize(block, 0);
    EXPECT_EQ(noErr, MemError());
    EXPECT_EQ(0, GetHandleSize(block));
}

TEST(Handles, OfImpossibleSizesAreRefusedAndTheBlockStays) {
    EXPECT_EQ(nullptr, NewHandle(-1));
    EXPECT_EQ(paramErr, MemError());
    EXPECT_EQ(nullptr, NewHandle(std::numeric_limits<Size>::max()));
    EXPECT_EQ(memFullErr, MemError());
    Block const block(2);
    std::memcpy(*static_cast<Handle>(block), "ab", 2);
    SetHandleSize(block, -1);
    EXPECT_EQ(paramErr, MemError());
    SetHandleSize(block, Size{0x80000000});
    EXPECT_EQ(memFullErr, MemError());
    EXPECT_EQ(2, GetHandleSize(block));
    EXPECT_EQ("ab", std::string(*static_cast<Handle>(block), 2));
}

TEST(Handles, ThatAreNoneAreToldByTheirValue) {
    struct Row {
        Handle handle;
        OSErr error;
    };
    for (auto const& [handle, error] : {Row{nullptr, nilHandleErr}, Row{kWild, memWZErr}}) {
        EXPECT_EQ(0, GetHandleSize(handle));
        EXPECT_EQ(error, MemError());
        SetHandleSize(handle, 1);
        EXPECT_EQ(error, MemError());
        DisposeHandle(handle);
        EXPECT_EQ(error, MemError());
    }
}

TEST(Handles, AreDisposedOfOnce) {
    Handle const handle = NewHandle(4);
    DisposeHandle(handle);
    EXPECT_EQ(noErr, MemError());
    DisposeHandle(handle);
    EXPECT_EQ(memWZErr, MemError());
    EXPECT_EQ(0, GetHandleSize(handle));
    EXPECT_EQ(memWZErr, MemError());
}

TEST(Handles, HaveAnErrorOfEachThread) {
    GetHandleSize(kWild);
    OSErr ofOther = memWZErr;
    std::thread([&] { ofOther = MemError(); }).join();
    EXPECT_EQ(noErr, ofOther);
    EXPECT_EQ(memWZErr, MemError());
}
