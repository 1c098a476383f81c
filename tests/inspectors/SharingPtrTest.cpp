#include "frame/SharingPtr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <memory>
#include <vector>

namespace {

// Counts the objects of its kind that live.
struct Resource {
    explicit Resource(int& count) : living(count) { ++living; }
    ~Resource() { --living; }
    int& living;
};

using Sharer = std::unique_ptr<SharingPtr<Resource>>;

}  // namespace

TEST(SharingPtr, HoldingNullDestroysNothing) {
    SharingPtr<Resource> const none(nullptr);
    EXPECT_EQ(nullptr, none.operator->());
    SharingPtr<Resource> const copy(none);
    EXPECT_EQ(nullptr, copy.operator->());
}

TEST(SharingPtr, DestroysTheObjectWithItsOnlySharer) {
    int living = 0;
    {
        SharingPtr<Resource> const sharer(new Resource(living));
        EXPECT_EQ(1, living);
        EXPECT_EQ(&living, &sharer->living);
        EXPECT_EQ(&living, &(*sharer).living);
    }
    EXPECT_EQ(0, living);
}

TEST(SharingPtr, DestroysTheObjectWithTheLastOfThreeInAnyOrder) {
    std::vector<int> order{0, 1, 2};
    do {
        int living = 0;
        std::vector<Sharer> sharers;
        sharers.push_back(std::make_unique<SharingPtr<Resource>>(new Resource(living)));
        sharers.push_back(std::make_unique<SharingPtr<Resource>>(*sharers[0]));
        sharers.push_back(std::make_unique<SharingPtr<Resource>>(*sharers[0]));
        sharers[order[0]].reset();
        sharers[order[1]].reset();
        EXPECT_EQ(1, living);
        EXPECT_EQ(1, (*sharers[order[2]])->living);
        sharers[order[2]].reset();
        EXPECT_EQ(0, living);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(SharingPtr, AssignedToItselfStaysAsItIs) {
    int living = 0;
    {
        SharingPtr<Resource> alone(new Resource(living));
        SharingPtr<Resource> const& same = alone;
        alone = same;
        EXPECT_EQ(1, living);
        EXPECT_EQ(&living, &alone->living);
    }
    EXPECT_EQ(0, living);
}

TEST(SharingPtr, AssignedToItselfOrToASharerStaysInTheRing) {
    int living = 0;
    Sharer first = std::make_unique<SharingPtr<Resource>>(new Resource(living));
    Sharer second = std::make_unique<SharingPtr<Resource>>(*first);
    SharingPtr<Resource> const& same = *first;
    *first = same;
    *second = *first;
    *first = *second;
    first.reset();
    EXPECT_EQ(1, living);
    second.reset();
    EXPECT_EQ(0, living);
}

TEST(SharingPtr, AssignmentDestroysTheOldObjectWithItsLastSharer) {
    int old = 0;
    int shared = 0;
    {
        SharingPtr<Resource> target(new Resource(old));
        SharingPtr<Resource> const source(new Resource(shared));
        target = source;
        EXPECT_EQ(0, old);
        EXPECT_EQ(&source->living, &target->living);
        EXPECT_EQ(1, shared);
    }
    EXPECT_EQ(0, shared);
}

TEST(SharingPtr, AssignmentLeavesTheOldObjectToItsOtherSharers) {
    int old = 0;
    int shared = 0;
    {
        SharingPtr<Resource> target(new Resource(old));
        SharingPtr<Resource> const keeper(target);
        {
            SharingPtr<Resource> const source(new Resource(shared));
            target = source;
        }
        EXPECT_EQ(1, old);
        EXPECT_EQ(1, shared);
        EXPECT_EQ(&shared, &target->living);
        target = SharingPtr<Resource>(nullptr);
        EXPECT_EQ(0, shared);
        EXPECT_EQ(1, old);
    }
    EXPECT_EQ(0, old);
}

TEST(SharingPtr, LivesInContainers) {
    int living = 0;
    {
        std::deque<SharingPtr<Resource>> stack;
        for (int depth = 0; depth < 100; ++depth) stack.push_back(SharingPtr<Resource>(new Resource(living)));
        SharingPtr<Resource> const kept = stack.back();
        stack.erase(stack.begin(), stack.begin() + 50);
        EXPECT_EQ(50, living);
        stack.clear();
        EXPECT_EQ(1, living);
    }
    EXPECT_EQ(0, living);
}

TEST(SharingLink, IsAloneUntilItIsCopiedAndAgainAfterwards) {
    SharingLink link;
    EXPECT_TRUE(link.IsAlone());
    {
        SharingLink const copy(link);
        EXPECT_FALSE(link.IsAlone());
        EXPECT_FALSE(copy.IsAlone());
    }
    EXPECT_TRUE(link.IsAlone());
}

namespace {

// The two neighbours of a link as they lie in memory: the next one, then the previous one.
struct Neighbours {
    SharingLink const* next;
    SharingLink const* prev;
    friend bool operator==(Neighbours const&, Neighbours const&) = default;
};

Neighbours NeighboursOf(SharingLink const& link) {
    static_assert(sizeof(Neighbours) == sizeof(SharingLink));
    Neighbours neighbours;
    std::memcpy(&neighbours, static_cast<void const*>(&link), sizeof neighbours);
    return neighbours;
}

}  // namespace

TEST(SharingLink, JoinsDirectlyAfterTheOther) {
    SharingLink const first;
    EXPECT_EQ((Neighbours{&first, &first}), NeighboursOf(first));
    SharingLink const third(first);
    {
        SharingLink const second(first);
        EXPECT_EQ((Neighbours{&second, &third}), NeighboursOf(first));
        EXPECT_EQ((Neighbours{&third, &first}), NeighboursOf(second));
        EXPECT_EQ((Neighbours{&first, &second}), NeighboursOf(third));
    }
    EXPECT_EQ((Neighbours{&third, &third}), NeighboursOf(first));
    EXPECT_EQ((Neighbours{&first, &first}), NeighboursOf(third));
}

TEST(SharingLink, AssignedLeavesItsRingAndStandsDirectlyAfterTheOther) {
    SharingLink moving;
    SharingLink const left(moving);
    SharingLink const first;
    SharingLink const last(first);
    moving = first;
    EXPECT_EQ((Neighbours{&left, &left}), NeighboursOf(left));
    EXPECT_EQ((Neighbours{&last, &first}), NeighboursOf(moving));
    EXPECT_EQ((Neighbours{&moving, &last}), NeighboursOf(first));
}

TEST(SharingLink, SwapExchangesTheRings) {
    SharingLink alone;
    auto first = std::make_unique<SharingLink>();
    SharingLink second(*first);
    alone.swap(*first);
    EXPECT_TRUE(first->IsAlone());
    EXPECT_FALSE(alone.IsAlone());
    first.reset();
    EXPECT_FALSE(second.IsAlone());  // shares with the one that was alone
    SharingLink other;
    alone.swap(other);
    EXPECT_TRUE(alone.IsAlone());
    EXPECT_FALSE(second.IsAlone());
    EXPECT_FALSE(other.IsAlone());
}

namespace {

// A ring of `size` links in which the links at two places are swapped; then the links leave in the order
// given. The ring must stay whole: only the last one to leave is alone.
void SwapAndLeave(int size, int one, int other, std::vector<int> const& order) {
    std::vector<std::unique_ptr<SharingLink>> links;
    links.push_back(std::make_unique<SharingLink>());
    while (static_cast<int>(links.size()) < size)
        links.push_back(std::make_unique<SharingLink>(*links.back()));
    links[one]->swap(*links[other]);
    int left = size;
    for (int leaving : order) {
        EXPECT_EQ(left == 1, links[leaving]->IsAlone()) << size << ": " << one << " and " << other;
        links[leaving].reset();
        --left;
    }
}

}  // namespace

TEST(SharingLink, SwapWithinOneRingKeepsItWhole) {
    for (int size = 1; size <= 4; ++size) {
        for (int one = 0; one < size; ++one) {
            for (int other = 0; other < size; ++other) {
                std::vector<int> order(size);
                for (int place = 0; place < size; ++place) order[place] = place;
                do SwapAndLeave(size, one, other, order);
                while (std::next_permutation(order.begin(), order.end()));
            }
        }
    }
}
