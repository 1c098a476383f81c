// Giving time back to the host, whatever the host's context is.

#include "frame/Yielding.h"

#include <gtest/gtest.h>

#include <string>

#include "Evaluator/Context.h"

namespace {

InspectorContext* present = nullptr;

struct PlainContext : InspectorContext {};

// Notes which hook was called, and with what.
struct NotingContext : InspectorContext, InspectorYieldContext {
    NotingContext() {
        yieldTimeSlice = [](InspectorContext* context) { Note(context, "slice "); };
        trickle = [](InspectorContext* context) { Note(context, "trickle "); };
    }
    static void Note(InspectorContext* context, char const* what) {
        static_cast<NotingContext*>(context)->noted += what;
    }
    std::string noted;
};

class Yielding : public testing::Test {
  protected:
    ~Yielding() override { present = nullptr; }
};

}  // namespace

InspectorContext* Get_Generic_Inspector_Context() { return present; }

TEST_F(Yielding, CallsTheHookOfTheContext) {
    NotingContext context;
    present = &context;
    Trickle();
    YieldTimeSlice();
    Trickle();
    EXPECT_EQ("trickle slice trickle ", context.noted);
}

TEST_F(Yielding, DoesNothingOutsideAnEvaluation) {
    Trickle();
    YieldTimeSlice();
}

TEST_F(Yielding, DoesNothingInAContextThatDoesNotYield) {
    PlainContext context;
    present = &context;
    Trickle();
    YieldTimeSlice();
}

TEST_F(Yielding, DoesNothingWithoutAHook) {
    NotingContext context;
    context.trickle = nullptr;
    present = &context;
    Trickle();
    EXPECT_EQ("", context.noted);
    YieldTimeSlice();
    EXPECT_EQ("slice ", context.noted);
    context.yieldTimeSlice = nullptr;
    YieldTimeSlice();
    EXPECT_EQ("slice ", context.noted);
}

TEST_F(Yielding, LetsPassWhatTheHostThrows) {
    NotingContext context;
    context.trickle = [](InspectorContext*) { throw 7; };
    present = &context;
    EXPECT_THROW(Trickle(), int);
}
