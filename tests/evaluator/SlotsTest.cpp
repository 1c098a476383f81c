#include "values/Slots.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <set>
#include <vector>

using namespace Evaluator;

namespace {

std::vector<void*> Slots(std::size_t count, std::size_t size) {
    std::vector<void*> slots;
    for (std::size_t i = 0; i < count; ++i) slots.push_back(std::memset(AllocateSlot(size), 1, size));
    return slots;
}

}  // namespace

TEST(Slots, OfEachSizeAreApartAndAligned) {
    for (std::size_t size : {1u, 16u, 17u, 100u, 512u, 513u, 100000u}) {
        std::set<std::uintptr_t> places;
        for (void* slot : Slots(50, size)) places.insert(reinterpret_cast<std::uintptr_t>(slot));
        std::uintptr_t behind = 0;
        for (std::uintptr_t const place : places) {
            EXPECT_EQ(0u, place % alignof(std::max_align_t)) << size;
            EXPECT_LE(behind, place) << size;
            behind = place + size;
        }
        for (std::uintptr_t const place : places) FreeSlot(reinterpret_cast<void*>(place), size);
    }
}

TEST(Slots, OfSeveralBlocksKeepWhatTheyHold) {
    constexpr std::size_t size = 112, count = 100000;  // more than five blocks
    auto const slots = Slots(count, size);
    for (std::size_t i = 0; i < count; ++i) std::memcpy(slots[i], &i, sizeof i);
    for (std::size_t i = 1; i < count; i += 2) FreeSlot(slots[i], size);
    auto const others = Slots(count / 2, size);
    for (std::size_t i = 0; i < count; i += 2) {
        std::size_t held = 0;
        std::memcpy(&held, slots[i], sizeof held);
        ASSERT_EQ(i, held);
        FreeSlot(slots[i], size);
    }
    for (void* slot : others) FreeSlot(slot, size);
}

#ifndef ZELQ_ADDRESS_SANITIZER  // which keeps what was freed

namespace {

// Bytes of memory that the process has now.
std::size_t Resident() {
    std::size_t all = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace

TEST(Slots, AreGivenBackThoughOneIsInUse) {
    constexpr std::size_t size = 112, count = 300000;
    std::size_t const before = Resident();
    auto const slots = Slots(count, size);
    std::size_t const most = Resident();
    EXPECT_LT(before + size * count, most);
    for (std::size_t i = 0; i < count; ++i)
        if (i != count / 2) FreeSlot(slots[i], size);
    EXPECT_GT(before + size * count / 4, Resident());
    FreeSlot(slots[count / 2], size);
}

TEST(Slots, OneAtATimeAreTheSameOne) {
    void* const first = AllocateSlot(48);
    FreeSlot(first, 48);
    for (int i = 0; i < 1000; ++i) {
        void* const slot = AllocateSlot(40);
        EXPECT_EQ(first, slot);
        FreeSlot(slot, 40);
    }
}
#endif
