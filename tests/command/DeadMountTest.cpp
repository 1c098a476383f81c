// Files on a mount whose server never answers.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "command/Running.h"
#include "mounts/Namespace.h"

// The process ends, whatever its threads wait for.
TEST(DeadMount, IsLeftByCtrlC) {
    TemporaryFolder const here;
    Mounts::Apart([&] {
        Mounts::DeadServer const server(here.Path("dead"));
        std::string const query = "1; number of descendants of folder \"" + here.Path("dead") + "\"";
        // A search for leaks would stop all threads first, and wait for the one that waits for the server.
        setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
        Started started({Zelq(), query});
        started.AwaitOutput();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        started.Send(SIGINT);
        Ran const ran = started.Wait();
        EXPECT_EQ("1\n", ran.out);
        EXPECT_EQ("error: the evaluation was cancelled\n  " + query +
                      "\n                              ^~~~~~\n  hint: the file system mounted at \"" +
                      here.Path("dead") + "\" does not answer\n",
                  ran.err);
        EXPECT_EQ(130, ran.status);
    });
}
