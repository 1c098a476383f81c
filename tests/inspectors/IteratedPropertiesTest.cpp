#include "frame/IteratedProperties.h"

#include <gtest/gtest.h>

#include "RegistrationLog.h"
#include "Slot.h"

namespace {

// Counts up to the limit that it is asked for; the limit comes again at every step.
struct Limit {
    long long number;
};

int statesAlive;
int steps;

// Where an iterator stands that has not been asked for its first value: a Next in First's place finds
// nothing.
constexpr long long beforeFirst = 1000;

class CountingIterator {
  public:
    CountingIterator() { ++statesAlive; }
    ~CountingIterator() { --statesAlive; }
    CountingIterator(CountingIterator const&) = delete;

    integer First(Limit const& limit) { return position = 0, Next(limit); }
    integer Next(Limit const& limit) {
        ++steps;
        if (position >= limit.number) throw NoSuchObject();
        return ++position;
    }
    integer First() { return First(Limit{3}); }
    integer Next() { return Next(Limit{3}); }
    integer First(unsigned char const*, unsigned long length) {
        return First(Limit{static_cast<long long>(length)});
    }
    integer Next(unsigned char const*, unsigned long length) {
        return Next(Limit{static_cast<long long>(length)});
    }

  private:
    long long position = beforeFirst;
};

// Steps that are chosen by the record; the ones that count are virtual.
class SteppingIterator {
  public:
    virtual ~SteppingIterator() = default;
    virtual integer FirstUp(Of, Limit const& limit) { return position = 0, NextUp(Of(), limit); }
    virtual integer NextUp(Of, Limit const& limit) { return Step(1, limit); }
    integer FirstByTwo(Of, Limit const& limit) { return position = 0, NextByTwo(Of(), limit); }
    integer NextByTwo(Of, Limit const& limit) { return Step(2, limit); }
    integer FirstBy(integer const& stride, Of, Limit const& limit) {
        return position = 0, NextBy(stride, Of(), limit);
    }
    integer NextBy(integer const& stride, Of, Limit const& limit) { return Step(stride, limit); }
    integer FirstOfWorld() { return position = 0, NextOfWorld(); }
    integer NextOfWorld() { return Step(1, Limit{2}); }
    integer FirstBelow(Limit const& limit) { return position = 0, NextBelow(limit); }
    integer NextBelow(Limit const& limit) { return Step(1, limit); }

  protected:
    integer Step(long long stride, Limit const& limit) {
        ++steps;
        position += stride;
        if (position > limit.number) throw NoSuchObject();
        return position;
    }

  private:
    long long position = beforeFirst;
};

class NegatingIterator : public SteppingIterator {
  public:
    integer NextUp(Of, Limit const& limit) override { return -Step(1, limit); }
};

Limit const three{3};
Limit const none{0};
inspector_string const fourLetters(reinterpret_cast<unsigned char const*>("four"), 4);

// Iterates as the host does, with a step without a slot before each, which must have no effect.
template <class It>
std::vector<long long> Values(std::string const& row, void const* argument, void const* object) {
    Registration const one = RegisteredAs(row);
    EXPECT_EQ(128u, one.recordSize);
    EXPECT_EQ(sizeof(It), one.valueSize);
    EXPECT_EQ(one.record, one.context);
    EXPECT_EQ(nullptr, one.dependency);
    Slot<It> state;
    one.construct(state);
    std::vector<long long> values;
    try {
        for (PropertyFunction step = one.get;; step = one.next) {
            steps = 0;
            step(nullptr, argument, object, state, one.context);
            EXPECT_EQ(0, steps);
            Slot<integer> slot;
            step(slot, argument, object, state, one.context);
            values.push_back(slot.Value());
        }
    } catch (NoSuchObject const&) {
        one.destroy(state);
    }
    return values;
}

using Numbers = std::vector<long long>;

}  // namespace

TEST(IteratorBasics, ConstructsNothingInNoMemory) {
    statesAlive = 0;
    IteratorBasics<CountingIterator>::Construct(nullptr);
    EXPECT_EQ(0, statesAlive);
    Slot<CountingIterator> state;
    IteratorBasics<CountingIterator>::Construct(state);
    EXPECT_EQ(1, statesAlive);
    IteratorBasics<CountingIterator>::Destroy(state);
    EXPECT_EQ(0, statesAlive);
}

TEST(IteratedProperty, YieldsUntilNoSuchObject) {
    IteratedProperty<CountingIterator, Limit, integer> const record{"step", "steps", "limit", "integer"};
    std::string const row = "iterated property \"step\" \"steps\" of \"limit\": \"integer\"";
    EXPECT_EQ((Numbers{1, 2, 3}), Values<CountingIterator>(row, nullptr, &three));
}

TEST(IteratedProperty, WithoutValuesEndsAtFirstAndTheStateIsStillDestroyed) {
    IteratedProperty<CountingIterator, Limit, integer> const record{"step", "steps", "limit", "integer"};
    statesAlive = 0;
    std::string const row = "iterated property \"step\" \"steps\" of \"limit\": \"integer\"";
    EXPECT_EQ(Numbers{}, Values<CountingIterator>(row, nullptr, &none));
    EXPECT_EQ(0, statesAlive);
}

TEST(IteratedProperty, IsWithdrawnWithItsRecord) {
    { IteratedProperty<CountingIterator, Limit, integer> const record{"step", "steps", "limit", "integer"}; }
    EXPECT_TRUE(Registered().empty());
}

TEST(IteratedGlobalProperty, NeedsNoObject) {
    IteratedGlobalProperty<CountingIterator, integer> const record{"step", "steps", "integer"};
    EXPECT_EQ((Numbers{1, 2, 3}), Values<CountingIterator>(
                                      "iterated property \"step\" \"steps\": \"integer\"", nullptr, nullptr));
}

TEST(IteratedNamedGlobalProperty, GetsTheNameAtEveryStep) {
    IteratedNamedGlobalProperty<CountingIterator, integer> const record{"step", "steps", "integer"};
    std::string const row = "iterated property \"step\" \"steps\" [\"string\"]: \"integer\"";
    EXPECT_EQ((Numbers{1, 2, 3, 4}), Values<CountingIterator>(row, &fourLetters, nullptr));
}

TEST(IteratedPropertyOfObject, CallsTheStepsOfItsRecord) {
    using Record = IteratedPropertyOfObject<SteppingIterator, integer, Limit>;
    Record const up{
        "step", "steps", "limit", "integer", &SteppingIterator::FirstUp, &SteppingIterator::NextUp};
    Record const byTwo{
        "leap", "leaps", "limit", "integer", &SteppingIterator::FirstByTwo, &SteppingIterator::NextByTwo};
    EXPECT_EQ((Numbers{1, 2, 3}),
              Values<SteppingIterator>("iterated property \"step\" \"steps\" of \"limit\": \"integer\"",
                                       nullptr, &three));
    EXPECT_EQ((Numbers{2}),
              Values<SteppingIterator>("iterated property \"leap\" \"leaps\" of \"limit\": \"integer\"",
                                       nullptr, &three));
}

TEST(IteratedPropertyOfObject, CallsVirtualStepsOfTheStatesOwnClass) {
    using Record = IteratedPropertyOfObject<NegatingIterator, integer, Limit>;
    integer (NegatingIterator::*first)(Of, Limit const&) = &NegatingIterator::FirstUp;
    integer (NegatingIterator::*next)(Of, Limit const&) = &NegatingIterator::NextUp;
    Record const record{"step", "steps", "limit", "integer", first, next};
    EXPECT_EQ((Numbers{-1, -2, -3}),
              Values<NegatingIterator>("iterated property \"step\" \"steps\" of \"limit\": \"integer\"",
                                       nullptr, &three));
}

TEST(IteratedPropertyByIndexOfObject, GetsTheIndexAtEveryStep) {
    IteratedPropertyByIndexOfObject<SteppingIterator, integer, integer, Limit> const record{
        "step",
        "steps",
        "integer",
        "limit",
        "integer",
        &SteppingIterator::FirstBy,
        &SteppingIterator::NextBy};
    integer const stride = 3;
    std::string const row = "iterated property \"step\" \"steps\" [\"integer\"] of \"limit\": \"integer\"";
    EXPECT_EQ((Numbers{3}), Values<SteppingIterator>(row, &stride, &three));
}

TEST(IteratedPropertyOfWorld, NeedsNoObject) {
    IteratedPropertyOfWorld<SteppingIterator, integer> const record{
        "step", "steps", "integer", &SteppingIterator::FirstOfWorld, &SteppingIterator::NextOfWorld};
    EXPECT_EQ((Numbers{1, 2}), Values<SteppingIterator>("iterated property \"step\" \"steps\": \"integer\"",
                                                        nullptr, nullptr));
}

TEST(IteratedPropertyByIndexOfWorld, GetsTheIndexAtEveryStep) {
    IteratedPropertyByIndexOfWorld<SteppingIterator, integer, Limit> const record{
        "step", "steps", "limit", "integer", &SteppingIterator::FirstBelow, &SteppingIterator::NextBelow};
    std::string const row = "iterated property \"step\" \"steps\" [\"limit\"]: \"integer\"";
    EXPECT_EQ((Numbers{1, 2, 3}), Values<SteppingIterator>(row, &three, nullptr));
}
