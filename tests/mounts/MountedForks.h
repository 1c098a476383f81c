#pragma once

// Verbs of the tests of forks on a mount whose server stops answering.

#include <Platform/Items.h>

#include <chrono>
#include <thread>

#include "mounts/StoppableServer.h"
#include "platform/ForkVerbs.h"

namespace Mounts {

/// A test that has such a mount in a folder of its own.
class MountedForkTest : public ForkTest {
  protected:
    using Clock = std::chrono::steady_clock;

    /// Runs the body apart from the other mounts, with a file of these bytes on the mount.
    template <class Body>
    void ApartWithAServer(std::string const& bytes, Body const& body) {
        ApartWithAServer(bytes, {}, body);
    }
    /// The same, and with a companion of these bytes.
    template <class Body>
    void ApartWithAServer(std::string const& bytes, std::string const& companion, Body const& body) {
        Apart([&] {
            StoppableServer const server(here.Path("net"), bytes, StoppableServer::Closing::Told, companion);
            body(server);
        });
    }
    std::string Path() const { return here.Path("net/file"); }

    /// How a call ends that is asked to stop while it waits, with what is told of mounts then.
    template <class Call>
    std::string Stopped(Call const& call) const {
        static Clock::time_point end;
        end = Clock::now() + std::chrono::milliseconds(100);
        PlatformSetCheckIn([](UInt32) -> Boolean { return Clock::now() < end; });
        OSErr const error = call();
        std::string const told = Unresponsive();
        PlatformSetCheckIn(nullptr);
        return std::to_string(error) + ", " + told;
    }
    std::string Unresponsive() const {
        char mountPoint[4096];
        OSErr const code = PlatformUnresponsiveMount(mountPoint, sizeof mountPoint);
        return std::to_string(code) + " " + mountPoint;
    }
    std::string GivenUp() const { return "-128, -128 " + here.Path("net"); }

    /// Holds that a file, which is open, is closed at once and without asking anybody while the server is
    /// stopped, and is closed after all when that goes on.
    template <class Close>
    void HoldClosing(StoppableServer const& server, Close const& close) const {
        std::ptrdiff_t const before = OpenFiles();
        server.Stop();
        PlatformSetCheckIn([](UInt32) -> Boolean {
            ADD_FAILURE() << "asked";
            return false;
        });
        auto const begun = Clock::now();
        close();
        EXPECT_GT(std::chrono::seconds(1), Clock::now() - begun);
        EXPECT_EQ("0 ", Unresponsive()) << "nobody waited for it";
        PlatformSetCheckIn(nullptr);
        server.GoOn();
        FSRef reference;
        EXPECT_EQ(noErr, WhenItAnswers([&] {
                      return static_cast<OSErr>(FSPathMakeRef(Bytes(Path().c_str()), &reference, nullptr));
                  }));
        EXPECT_EQ(before - 1, OpenFiles()) << "closed after all";
    }

    /// Repeats a call until the mount answers again.
    template <class Call>
    static OSErr WhenItAnswers(Call const& call) {
        for (;;) {
            OSErr const error = call();
            if (error != volOffLinErr) return error;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
};

}  // namespace Mounts
