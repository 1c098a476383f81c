// Processes whose executable files lie where no server answers.

#include "mounts/Namespace.h"
#include "platform/ProcessVerbs.h"

using Mounts::Apart;
using Mounts::DeadServer;

// It is not waited for: the process would end the test by its alarm.
TEST(ProcessesOnMounts, AreDescribedWithoutAskingTheServer) {
    Apart([] {
        TemporaryFolder const folder;
        DeadServer const server(folder.MakeFolder("dead"));
        RecordedProcesses const processes;
        processes.Add(5, {.executable = folder.Path("dead/program")});
        EXPECT_EQ((std::vector<pid_t>{5}), Walk());
        Description const description = Describe(NumberOf(5));
        EXPECT_EQ(noErr, description.error);
        EXPECT_EQ(folder.Path("dead/program"), description.place);
        EXPECT_EQ("program", description.name);
        processes.Add(6, {.executable = folder.Path("dead/program (deleted)")});
        EXPECT_EQ(folder.Path("dead/program"), Describe(NumberOf(6)).place);
    });
}
