// Calls that do not come back, made of locks.

#include "files/Patience.h"

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <future>
#include <memory>
#include <set>
#include <thread>

#include "files/CheckIn.h"

using Platform::CallPatiently;
using Platform::SlowMount;
using namespace std::chrono_literals;

namespace {

std::atomic<bool> mayGoOn;
std::atomic<UInt32> itemsTold;
Boolean CheckIn(UInt32 items) {
    itemsTold += items;
    return mayGoOn;
}

// What work waits for, until the test lets it go on.
class Gate {
  public:
    void Wait() const { opened.wait(); }
    void Open() { promise.set_value(); }

  private:
    std::promise<void> promise;
    std::shared_future<void> opened = promise.get_future().share();
};

class Patience : public testing::Test {
  protected:
    Patience() {
        mayGoOn = true;
        itemsTold = 0;
        PlatformSetCheckIn(CheckIn);
    }
    ~Patience() override { PlatformSetCheckIn(nullptr); }

    // Work that hangs, and whose end can be waited for.
    OSErr CallThatHangs(SlowMount const& mount, std::optional<std::chrono::milliseconds> patience) {
        auto const shared = gate;
        return CallPatiently(mount, patience, [shared]() -> OSErr {
            shared->Wait();
            return noErr;
        });
    }
    static OSErr CallThatReturns(SlowMount const& mount, OSErr result = noErr) {
        return CallPatiently(mount, std::nullopt, [=] { return result; });
    }
    // Waits until the helpers have noticed that the work that was given up came back.
    static void WaitUntilAnswering(SlowMount const& mount) {
        while (CallThatReturns(mount) != noErr) std::this_thread::yield();
    }
    static std::string Unresponsive() {
        char buffer[100];
        OSErr const code = PlatformUnresponsiveMount(buffer, sizeof buffer);
        return std::to_string(code) + " " + buffer;
    }

    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
    SlowMount const mount{1, "/net/dead"};
    SlowMount const other{2, "/net/alive"};
};

}  // namespace

TEST_F(Patience, ResultIsThatOfTheWork) {
    EXPECT_EQ(noErr, CallThatReturns(mount));
    EXPECT_EQ(fnfErr, CallThatReturns(mount, fnfErr));
    EXPECT_EQ("0 ", Unresponsive());
}

TEST_F(Patience, WorkIsDoneOnAnotherThreadThatTakesNoSignals) {
    std::thread::id worker;
    bool blocked = false;
    auto const work = [&]() -> OSErr {
        worker = std::this_thread::get_id();
        sigset_t mask;
        pthread_sigmask(SIG_BLOCK, nullptr, &mask);
        blocked = sigismember(&mask, SIGINT) == 1 && sigismember(&mask, SIGTERM) == 1;
        return noErr;
    };
    ASSERT_EQ(noErr, CallPatiently(mount, std::nullopt, work));
    EXPECT_NE(std::this_thread::get_id(), worker);
    EXPECT_TRUE(blocked);
    sigset_t mine;
    pthread_sigmask(SIG_BLOCK, nullptr, &mine);
    EXPECT_EQ(0, sigismember(&mine, SIGINT));
}

TEST_F(Patience, WorkWithinWorkIsDoneThereAndThen) {
    OSErr const result = CallPatiently(mount, std::nullopt, [this]() -> OSErr {
        auto const outer = std::this_thread::get_id();
        return CallPatiently(other, std::nullopt,
                             [=]() -> OSErr { return outer == std::this_thread::get_id() ? fnfErr : ioErr; });
    });
    EXPECT_EQ(fnfErr, result);
}

TEST_F(Patience, EndsWhenTheHostSaysStop) {
    std::thread host([] {
        std::this_thread::sleep_for(10ms);
        mayGoOn = false;
    });
    EXPECT_EQ(userCanceledErr, CallThatHangs(mount, std::nullopt));
    EXPECT_EQ("-128 /net/dead", Unresponsive());
    host.join();
    gate->Open();
    mayGoOn = true;
    WaitUntilAnswering(mount);
}

TEST_F(Patience, StopBeforeTheStartBeginsNothing) {
    mayGoOn = false;
    EXPECT_EQ(userCanceledErr, CallThatReturns(mount));
    EXPECT_EQ("0 ", Unresponsive()) << "no mount was waited for";
}

TEST_F(Patience, OfACallMayBeBounded) {
    EXPECT_EQ(volOffLinErr, CallThatHangs(mount, 1ms));
    EXPECT_EQ("-53 /net/dead", Unresponsive());
    gate->Open();
    WaitUntilAnswering(mount);
}

// And an earlier failure stays known.
TEST_F(Patience, OfABriefCallIsBoundedAndItsEndIsNoFailure) {
    auto const shared = gate;
    auto const hang = [shared]() -> OSErr {
        shared->Wait();
        return noErr;
    };
    EXPECT_EQ(volOffLinErr, Platform::CallBriefly(mount, hang));
    EXPECT_EQ("0 ", Unresponsive());
    EXPECT_EQ(volOffLinErr, CallThatHangs(other, 1ms));
    EXPECT_EQ(volOffLinErr, Platform::CallBriefly(mount, hang)) << "at once";
    EXPECT_EQ("-53 /net/alive", Unresponsive());
    mayGoOn = false;
    SlowMount const third{3, "/net/third"};
    EXPECT_EQ(userCanceledErr, Platform::CallBriefly(third, hang));
    mayGoOn = true;
    gate->Open();
    WaitUntilAnswering(mount);
    WaitUntilAnswering(other);
}

TEST_F(Patience, FailureIsNotedUntilTheNext) {
    EXPECT_FALSE(PlatformHasUnnotedMount());
    EXPECT_EQ(volOffLinErr, CallThatHangs(mount, 1ms));
    EXPECT_TRUE(PlatformHasUnnotedMount());
    PlatformNoteUnresponsiveMount();
    EXPECT_FALSE(PlatformHasUnnotedMount());
    EXPECT_EQ("-53 /net/dead", Unresponsive());
    EXPECT_EQ(volOffLinErr, CallThatReturns(mount));
    EXPECT_TRUE(PlatformHasUnnotedMount());
    gate->Open();
    WaitUntilAnswering(mount);
}

TEST_F(Patience, MountWithACallThatHasNotComeBackIsRefusedAtOnce) {
    ASSERT_EQ(volOffLinErr, CallThatHangs(mount, 1ms));
    EXPECT_EQ(noErr, CallThatReturns(other));
    PlatformSetCheckIn(CheckIn);
    ASSERT_EQ("0 ", Unresponsive());
    bool begun = false;
    auto const work = [&]() -> OSErr {
        begun = true;
        return noErr;
    };
    EXPECT_EQ(volOffLinErr, CallPatiently(mount, std::nullopt, work));
    EXPECT_FALSE(begun);
    EXPECT_EQ("-53 /net/dead", Unresponsive());
    SlowMount const successor{3, mount.mountPoint};
    EXPECT_EQ(noErr, CallThatReturns(successor)) << "another mount in its place is not the dead one";
    gate->Open();
    WaitUntilAnswering(mount);
}

TEST_F(Patience, LookUpsOfACallThatWasGivenUpAreRefused) {
    auto const shared = gate;
    auto const answer = std::make_shared<std::promise<bool>>();
    static std::atomic<bool> hasAsked = false;
    PlatformSetCheckIn([](UInt32) -> Boolean { return !hasAsked; });
    ASSERT_EQ(userCanceledErr, CallPatiently(mount, std::nullopt, [=]() -> OSErr {
                  bool const before = Platform::MayGoOn(1);
                  hasAsked = true;
                  shared->Wait();
                  answer->set_value(before && !Platform::MayGoOn(1));
                  return noErr;
              }));
    gate->Open();
    EXPECT_TRUE(answer->get_future().get());
    PlatformSetCheckIn(CheckIn);
    WaitUntilAnswering(mount);
}

TEST_F(Patience, ItemsThatTheWorkLooksAtAreToldOnTheWaitingThread) {
    static std::thread::id asked;
    PlatformSetCheckIn([](UInt32 items) -> Boolean {
        asked = std::this_thread::get_id();
        itemsTold += items;
        return true;
    });
    ASSERT_EQ(noErr, CallPatiently(mount, std::nullopt, []() -> OSErr {
                  return Platform::MayGoOn(3) && Platform::MayGoOn(4) ? noErr : ioErr;
              }));
    EXPECT_EQ(7u, itemsTold);
    EXPECT_EQ(std::this_thread::get_id(), asked);
}

TEST_F(Patience, WhatTheWorkOwnsIsGoneWhenTheCallReturns) {
    auto const owned = std::make_shared<int>(5);
    ASSERT_EQ(noErr, CallPatiently(mount, std::nullopt, [owned]() -> OSErr { return noErr; }));
    EXPECT_EQ(1, owned.use_count());
}

TEST_F(Patience, WorkWithoutMemoryIsAResult) {
    EXPECT_EQ(memFullErr, CallPatiently(mount, std::nullopt, []() -> OSErr { throw std::bad_alloc(); }));
}

TEST_F(Patience, ThreadsAreUsedAgain) {
    auto const worker = [&] {
        std::thread::id id;
        EXPECT_EQ(noErr, CallPatiently(mount, std::nullopt, [&]() -> OSErr {
                      id = std::this_thread::get_id();
                      return noErr;
                  }));
        return id;
    };
    std::set<std::thread::id> workers;
    for (int i = 0; i < 100; ++i) {
        workers.insert(worker());
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_LT(workers.size(), 50u);
}

TEST_F(Patience, UnresponsiveMountIsCutToItsBuffer) {
    ASSERT_EQ(volOffLinErr, CallThatHangs(mount, 1ms));
    char buffer[5] = "----";
    EXPECT_EQ(volOffLinErr, PlatformUnresponsiveMount(buffer, sizeof buffer));
    EXPECT_STREQ("/net", buffer);
    EXPECT_EQ(volOffLinErr, PlatformUnresponsiveMount(nullptr, 0));
    std::thread([] { EXPECT_EQ("0 ", Unresponsive()) << "it is another thread's failure"; }).join();
    gate->Open();
    WaitUntilAnswering(mount);
}
