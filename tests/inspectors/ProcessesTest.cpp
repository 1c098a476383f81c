// Processes: real ones, and recorded ones of a machine of the test's.

#include "system/Processes.h"

#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/ProcessesModule.h"
#include "platform/ProcessVerbs.h"
#include "support/OwnPath.h"
#include "support/Started.h"

namespace {

carbon_process ProcessOf(pid_t pid) {
    return numbered_carbon_process_of_world(static_cast<unsigned long long>(pid));
}

// What an iterator gives, as a member of it tells.
template <class Iterator, class Tell>
auto All(Iterator iterator, Tell const& tell) {
    std::vector<decltype(tell(iterator.First()))> values;
    try {
        values.push_back(tell(iterator.First()));
        for (;;) values.push_back(tell(iterator.Next()));
    } catch (NoSuchObject const&) {
        return values;
    }
}

std::vector<long long> Pids() {
    return All(carbon_process_iterator(),
               [](carbon_process const& process) -> long long { return pid_of_carbon_process(process); });
}
std::vector<std::string> Applications() {
    return All(running_app_iterator(), [](filesystem_object const& file) { return Path(file); });
}

// Processes that cannot be looked up: their folder is a link that leads to itself.
class LoopedProcesses {
  public:
    LoopedProcesses() { folder.Link("proc", "proc"); }

  private:
    TemporaryFolder const folder;
    Variable const root{"ZELQ_MACHINE_ROOT", folder.Path()};
};

// The code that some work fails with; 0 where it does not.
template <class Work>
int CodeOf(Work const& work) {
    try {
        work();
        return 0;
    } catch (ProcessError const& error) {
        return error.Code();
    }
}

}  // namespace

// ---- The module

TEST(ProcessesModule, RegistersItsTableInOrder) {
    ExpectRows<ProcessesModule>(
        {"type \"carbon proc\"",
         "property \"carbon process\" \"carbon processes\" [\"integer\"]: \"carbon proc\"",
         "iterated property \"carbon process\" \"carbon processes\": \"carbon proc\"",
         "property \"name\" \"names\" of \"carbon proc\": \"string\"",
         "property \"pid\" \"pids\" of \"carbon proc\": \"integer\"",
         "property \"id\" \"ids\" of \"carbon proc\": \"integer\"",
         "property \"process id\" \"process ids\" of \"carbon proc\": \"integer\"",
         "property \"file\" \"files\" of \"carbon proc\": \"filesystem object\"",
         "iterated property \"running application\" \"running applications\": "
         "\"filesystem object\""});
}

TEST(ProcessesModule, RowsLeadToTheirInspectors) {
    ProcessesModule const module;
    integer const own = getpid();
    Slot<carbon_process> process;
    Registration const numbered =
        RegisteredAs("property \"carbon process\" \"carbon processes\" [\"integer\"]: \"carbon proc\"");
    numbered.get(process, &own, nullptr, nullptr, numbered.context);
    for (std::string const phrase :
         {"\"pid\" \"pids\"", "\"id\" \"ids\"", "\"process id\" \"process ids\""}) {
        Registration const one = RegisteredAs("property " + phrase + " of \"carbon proc\": \"integer\"");
        Slot<integer> pid;
        one.get(pid, nullptr, process, nullptr, one.context);
        EXPECT_EQ(own, pid.Value()) << phrase;
    }
    Registration const name = RegisteredAs("property \"name\" \"names\" of \"carbon proc\": \"string\"");
    Slot<inspector_string> text;
    name.get(text, nullptr, process, nullptr, name.context);
    EXPECT_EQ(ownPath.filename(), Text(text.Value()));
    Registration const file =
        RegisteredAs("property \"file\" \"files\" of \"carbon proc\": \"filesystem object\"");
    Slot<filesystem_object> item;
    file.get(item, nullptr, process, nullptr, file.context);
    EXPECT_EQ(ownPath, Path(item.Value()));
    item.End();
    Registration const type = RegisteredAs("type \"carbon proc\"");
    EXPECT_EQ(sizeof(carbon_process), type.valueSize);
    type.destroy(process);
}

TEST(ProcessesModule, IterationsBeginWithTheFirst) {
    RecordedProcesses const processes;
    for (pid_t const pid : {5, 6}) processes.Add(pid, {});
    ProcessesModule const module;
    Registration const all =
        RegisteredAs("iterated property \"carbon process\" \"carbon processes\": \"carbon proc\"");
    EXPECT_EQ(sizeof(carbon_process_iterator), all.valueSize);
    Slot<carbon_process_iterator> state;
    all.construct(state);
    for (bool const isFirst : {true, false}) {
        Slot<carbon_process> process;
        (isFirst ? all.get : all.next)(process, nullptr, nullptr, state, all.context);
        EXPECT_EQ(isFirst ? 5 : 6, pid_of_carbon_process(process.Value()));
        process.End();
    }
    all.destroy(state);
    Registration const applications = RegisteredAs(
        "iterated property \"running application\" \"running applications\": \"filesystem object\"");
    EXPECT_EQ(sizeof(running_app_iterator), applications.valueSize);
    Slot<running_app_iterator> walk;
    applications.construct(walk);
    Slot<filesystem_object> file;
    applications.get(file, nullptr, nullptr, walk, applications.context);
    EXPECT_EQ("/usr/bin/sleep", Path(file.Value()));
    file.End();
    applications.destroy(walk);
}

// ---- By their ids

TEST(CarbonProcesses, AreFoundByTheirIds) {
    Started const child(SleepProgram());
    carbon_process const process = ProcessOf(child.Pid());
    EXPECT_EQ(child.Pid(), pid_of_carbon_process(process));
    EXPECT_EQ("sleep", Text(name_of_carbon_process(process)));
    EXPECT_EQ(std::filesystem::canonical(SleepProgram()), Path(file_of_carbon_process(process)));
    EXPECT_EQ(getpid(), Process(process.record.processLauncher).PID());
    EXPECT_TRUE(process.HasLauncher());
}

TEST(CarbonProcesses, IdsOfNone) {
    auto const own = static_cast<unsigned long long>(getpid());
    for (unsigned long long const pid :
         {0ull, 4194304ull, (1ull << 32) - 1, 1ull << 32, (1ull << 32) + own, (1ull << 63) + own, ~0ull})
        EXPECT_THROW(numbered_carbon_process_of_world(pid), NoSuchObject) << pid;
}

TEST(CarbonProcesses, FailuresToFindOneByItsIdAreNone) {
    LoopedProcesses const processes;
    EXPECT_THROW(ProcessOf(getpid()), NoSuchObject);
}

// ---- What is known

TEST(CarbonProcesses, NamesAreThoseOfTheFiles) {
    TemporaryFolder const folder;
    for (std::string const name :
         {"a program with quite a long name, indeed", "caf\xC3\xA9", "b\xFF\xFE", ") (x) R"}) {
        std::filesystem::copy_file(SleepProgram(), folder.Path(name));
        Started const child(folder.Path(name));
        carbon_process const process = ProcessOf(child.Pid());
        EXPECT_EQ(name, Text(name_of_carbon_process(process)));
        EXPECT_EQ(folder.Path(name), Path(file_of_carbon_process(process)));
    }
}

TEST(CarbonProcesses, WhoseFileIsGoneAreStillKnown) {
    TemporaryFolder const folder;
    std::filesystem::copy_file(SleepProgram(), folder.Path("program"));
    Started const child(folder.Path("program"));
    carbon_process const before = ProcessOf(child.Pid());
    std::filesystem::remove(folder.Path("program"));
    for (carbon_process const& process : {before, ProcessOf(child.Pid())}) {
        EXPECT_EQ("program", Text(name_of_carbon_process(process)));
        EXPECT_EQ(child.Pid(), pid_of_carbon_process(process));
        try {
            file_of_carbon_process(process);
            ADD_FAILURE();
        } catch (FailedToGetFileItem const& failure) {
            EXPECT_EQ(fnfErr, failure.Code());
        }
    }
}

TEST(CarbonProcesses, RecordHasNeitherNameNorSpecification) {
    carbon_process const process = ProcessOf(getpid());
    EXPECT_EQ(sizeof(ProcessInfoRec), +process.record.processInfoLength);
    EXPECT_EQ(nullptr, +process.record.processName);
    EXPECT_EQ(nullptr, +process.record.processAppSpec);
}

TEST(CarbonProcesses, AreSnapshots) {
    auto child = std::make_unique<Started>(SleepProgram());
    carbon_process const process = ProcessOf(child->Pid());
    pid_t const pid = child->Pid();
    child.reset();
    EXPECT_EQ(pid, pid_of_carbon_process(process));
    EXPECT_EQ("sleep", Text(name_of_carbon_process(process)));
    EXPECT_EQ(procNotFound, CodeOf([&] { ProcessInfo{process.Number()}; }));
}

TEST(CarbonProcesses, WithoutLauncher) {
    RecordedProcesses const processes;
    processes.Add(5, {.parent = 0});
    processes.Add(6, {.parent = 5});
    EXPECT_FALSE(ProcessOf(5).HasLauncher());
    EXPECT_TRUE(ProcessOf(6).HasLauncher());
}

TEST(CarbonProcesses, KeepWhatTheyKnewWhereTheyCannotBeAsked) {
    ProcessInfo info{Process::ApplicationProcess()};
    EXPECT_EQ(procNotFound, CodeOf([&] { info.Set(Process::noProcess); }));
    EXPECT_EQ(getpid(), pid_of_carbon_process(info));
    EXPECT_EQ(ownPath.filename(), Text(name_of_carbon_process(info)));
}

// ---- Walks

TEST(CarbonProcesses, ComeInTheOrderOfTheirIds) {
    RecordedProcesses const processes;
    for (pid_t const pid : {30, 7, 100}) processes.Add(pid, {});
    EXPECT_EQ((std::vector<long long>{7, 30, 100}), Pids());
}

TEST(CarbonProcesses, NoneAtAll) {
    RecordedProcesses const processes;
    EXPECT_TRUE(Pids().empty());
    EXPECT_TRUE(Applications().empty());
    ProcessLoop loop;
    loop.Restart();
    EXPECT_TRUE(loop.IsDone());
}

TEST(CarbonProcesses, WalkBeginsAnewWithFirst) {
    RecordedProcesses const processes;
    for (pid_t const pid : {5, 6}) processes.Add(pid, {});
    carbon_process_iterator walk;
    walk.First();
    walk.Next();
    EXPECT_THROW(walk.Next(), NoSuchObject);
    EXPECT_EQ(5, pid_of_carbon_process(walk.First()));
}

TEST(CarbonProcesses, OfThisUserAreAmongThem) {
    Started const child(SleepProgram());
    auto const pids = Pids();
    EXPECT_EQ(1, std::count(pids.begin(), pids.end(), getpid()));
    EXPECT_EQ(1, std::count(pids.begin(), pids.end(), child.Pid()));
}

TEST(CarbonProcesses, FailureOfAWalkIsNoEnd) {
    LoopedProcesses const processes;
    carbon_process_iterator walk;
    running_app_iterator applications;
    EXPECT_EQ(fnfErr, CodeOf([&] { walk.First(); }));
    EXPECT_EQ(fnfErr, CodeOf([&] { applications.First(); }));
}

TEST(RunningApplications, AreAsManyAsTheProcesses) {
    RecordedProcesses const processes;
    for (pid_t const pid : {5, 6, 7}) processes.Add(pid, {});
    EXPECT_EQ(3u, Pids().size());
    EXPECT_EQ((std::vector<std::string>(3, "/usr/bin/sleep")), Applications());
}

TEST(RunningApplications, WhoseFileIsGoneFail) {
    RecordedProcesses const processes;
    processes.Add(5, {.executable = "/missing/program"});
    processes.Add(6, {});
    running_app_iterator walk;
    EXPECT_THROW(walk.First(), FailedToGetFileItem);
    EXPECT_EQ("/usr/bin/sleep", Path(walk.Next())) << "the walk stands at the process that failed";
}

// ---- Serial numbers

TEST(Processes, ThisOneIsKept) {
    EXPECT_EQ(&Process::Application(), &Process::Application());
    EXPECT_EQ(&ProcessInfo::Application(), &ProcessInfo::Application());
    EXPECT_EQ(getpid(), Process::Application().PID());
    EXPECT_EQ(getpid(), ProcessInfo::Application().Number().PID());
    EXPECT_TRUE(Process::Application() == Process(Process::ApplicationProcess()));
    EXPECT_TRUE(Process::Application() == Process(ProcessSerialNumber{0, kCurrentProcess}));
}

TEST(Processes, AreEqualByTheirNumbers) {
    Started const one(SleepProgram()), other(SleepProgram());
    EXPECT_TRUE(ProcessOf(one.Pid()).Number() == ProcessOf(one.Pid()).Number());
    EXPECT_FALSE(ProcessOf(one.Pid()).Number() == ProcessOf(other.Pid()).Number());
}

TEST(Processes, CodesOfThePlatform) {
    Process const own{Process::ApplicationProcess()};
    EXPECT_EQ(procNotFound, CodeOf([] { Process{Process::FrontProcess()}; }));
    EXPECT_EQ(appIsDaemon, CodeOf([&] { own.MoveToFront(); }));
    EXPECT_EQ(0, CodeOf([&] { own.Wake(); }));
    EXPECT_EQ(procNotFound, CodeOf([] { Process::noProcess.Wake(); }));
    EXPECT_EQ(procNotFound, CodeOf([] { Process::noProcess.MoveToFront(); }));
    EXPECT_EQ(procNotFound, CodeOf([] { Process::noProcess.PID(); }));
    EXPECT_EQ(procNotFound, CodeOf([&] { static_cast<void>(own == Process::noProcess); }));
}

TEST(Processes, ThisOneIsUnknownWhereNoProcessesAreShown) {
    RecordedProcesses const processes;
    EXPECT_EQ(procNotFound, CodeOf([] { Process{Process::ApplicationProcess()}; }));
    EXPECT_EQ(procNotFound, CodeOf([] { ProcessInfo{Process::ApplicationProcess()}; }));
}
