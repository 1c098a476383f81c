// Processes: real ones that the tests start, and recorded ones.

#include <sys/resource.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <thread>

#include "mounts/Namespace.h"
#include "platform/ProcessVerbs.h"
#include "support/OwnPath.h"
#include "support/Started.h"

namespace {

bool Contains(std::vector<pid_t> const& pids, pid_t pid) {
    return std::find(pids.begin(), pids.end(), pid) != pids.end();
}

bool HasExecutable(pid_t pid) {
    char target[4096];
    return readlink(("/proc/" + std::to_string(pid) + "/exe").c_str(), target, sizeof target) > 0;
}

// The processes of this user as ps(1) tells them, less those without an executable file.
std::set<pid_t> ListedByPs() {
    std::set<pid_t> pids;
    FILE* const ps = popen(("ps -U " + std::to_string(getuid()) + " -o pid=").c_str(), "re");
    pid_t pid = 0;
    while (std::fscanf(ps, "%d", &pid) == 1) {
        if (HasExecutable(pid)) pids.insert(pid);
    }
    EXPECT_EQ(0, pclose(ps)) << "ps of the package procps is needed";
    return pids;
}

// A copy of a program that waits.
std::string CopySleep(TemporaryFolder const& folder, std::string const& name) {
    std::filesystem::copy_file(SleepProgram(), folder.Path(name));
    return folder.Path(name);
}

// While one lives, no file can be opened.
class NoDescriptors {
  public:
    NoDescriptors() {
        EXPECT_EQ(0, getrlimit(RLIMIT_NOFILE, &before));
        rlimit const none{0, before.rlim_max};
        EXPECT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    }
    NoDescriptors(NoDescriptors const&) = delete;
    NoDescriptors& operator=(NoDescriptors const&) = delete;
    ~NoDescriptors() { EXPECT_EQ(0, setrlimit(RLIMIT_NOFILE, &before)); }

  private:
    rlimit before;
};

std::string Canonical(std::string const& path) { return std::filesystem::canonical(path); }

}  // namespace

// ---- Walking

TEST(Processes, AreThoseThatPsLists) {
    Started const child(SleepProgram());
    auto const before = Walk();
    auto const listed = ListedByPs();
    auto const after = Walk();
    EXPECT_TRUE(listed.count(child.Pid()) == 1 && listed.count(getpid()) == 1);
    for (pid_t const pid : before) EXPECT_TRUE(listed.count(pid) == 1 || !Contains(after, pid)) << pid;
    for (pid_t const pid : listed) {
        EXPECT_TRUE(Contains(before, pid) || Contains(after, pid) || !HasExecutable(pid)) << pid;
    }
}

TEST(Processes, ComeInTheOrderOfTheirIds) {
    Started const one(SleepProgram()), other(SleepProgram());
    auto const pids = Walk();
    EXPECT_TRUE(std::is_sorted(pids.begin(), pids.end()));
    EXPECT_EQ(pids.end(), std::adjacent_find(pids.begin(), pids.end()));
    EXPECT_TRUE(Contains(pids, one.Pid()) && Contains(pids, other.Pid()) && Contains(pids, getpid()));
}

TEST(Processes, ThatHaveEndedStillLeadOn) {
    RecordedProcesses const processes;
    for (pid_t const pid : {4, 5, 6}) processes.Add(pid, {});
    ProcessSerialNumber const psn = NumberOf(5);
    processes.Remove(5);
    EXPECT_EQ((std::vector<pid_t>{6}), RestOfWalk(psn));
}

TEST(Processes, ThatEndAheadOfTheWalkAreSkipped) {
    RecordedProcesses const processes;
    for (pid_t const pid : {5, 6, 7}) processes.Add(pid, {});
    ProcessSerialNumber psn = kNobody;
    ASSERT_EQ(noErr, GetNextProcess(&psn));
    processes.Remove(6);
    ASSERT_EQ(noErr, GetNextProcess(&psn));
    EXPECT_EQ(7, PidOf(psn));
}

// Some twenty ids are read at a time, and ids begin anew from time to time: what starts among those that were
// read is not met.
TEST(Processes, ThatStartAheadOfTheWalkAreMet) {
    std::deque<Started> children;
    for (int i = 0; i < 40; ++i) children.emplace_back(SleepProgram());
    pid_t const beyondWhatIsRead = Walk().at(30);
    ProcessSerialNumber psn = kNobody;
    ASSERT_EQ(noErr, GetNextProcess(&psn));
    Started const child(SleepProgram());
    bool const isMet = Contains(RestOfWalk(psn), child.Pid());
    EXPECT_TRUE(isMet || child.Pid() <= beyondWhatIsRead);
    EXPECT_FALSE(isMet && child.Pid() < PidOf(psn));
}

// More than are read at a time.
TEST(Processes, WalksOfThreadsAreTheirOwn) {
    std::deque<Started> children;
    for (int i = 0; i < 60; ++i) children.emplace_back(SleepProgram());
    ProcessSerialNumber psn = kNobody;
    ASSERT_EQ(noErr, GetNextProcess(&psn));
    std::thread([] { Walk(); }).join();
    std::vector<pid_t> pids = RestOfWalk(psn);
    pids.push_back(PidOf(psn));
    for (Started const& child : children) EXPECT_TRUE(Contains(pids, child.Pid()));
}

TEST(Processes, WalkOfAForkedProcessDoesNotDisturb) {
    std::deque<Started> children;
    for (int i = 0; i < 60; ++i) children.emplace_back(SleepProgram());
    ProcessSerialNumber psn = kNobody;
    ASSERT_EQ(noErr, GetNextProcess(&psn));
    pid_t const child = fork();
    if (child == 0) _exit(RestOfWalk(psn).empty() ? 1 : 0);
    waitpid(child, nullptr, 0);
    std::vector<pid_t> pids = RestOfWalk(psn);
    pids.push_back(PidOf(psn));
    for (Started const& one : children) EXPECT_TRUE(Contains(pids, one.Pid()));
}

TEST(Processes, NothingIsLeftOpenByAWalk) {
    auto const count = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    auto const before = count();
    std::thread([&] {
        Walk();
        EXPECT_EQ(before, count()) << "at its end";
        ProcessSerialNumber psn = kNobody;
        EXPECT_EQ(noErr, GetNextProcess(&psn));
    }).join();
    EXPECT_EQ(before, count()) << "of a thread that has ended";
}

TEST(Processes, RecordedOnesComeInOrderToo) {
    RecordedProcesses const processes;
    std::vector<pid_t> expected;
    for (pid_t i = 0; i < 100; ++i) {
        processes.Add(1 + i * 37 % 101, {});
        expected.push_back(1 + i * 37 % 101);
    }
    std::sort(expected.begin(), expected.end());
    processes.Add(4194303, {});
    expected.push_back(4194303);
    processes.Folder().MakeFolder("proc/tty");
    EXPECT_EQ(expected, Walk());
}

TEST(Processes, WalkGoesOnInTheFolderThatIsSaidNow) {
    RecordedProcesses const one;
    for (pid_t const pid : {5, 6}) one.Add(pid, {});
    ProcessSerialNumber psn = kNobody;
    ASSERT_EQ(noErr, GetNextProcess(&psn));
    RecordedProcesses const other;
    for (pid_t const pid : {4, 7}) other.Add(pid, {});
    EXPECT_EQ((std::vector<pid_t>{7}), RestOfWalk(psn));
}

TEST(Processes, NoFolderOfProcessesIsNone) {
    TemporaryFolder const folder;
    Variable const root("ZELQ_MACHINE_ROOT", folder.Path());
    EXPECT_TRUE(Walk().empty());
    ProcessSerialNumber psn = kSelf;
    EXPECT_EQ(procNotFound, GetCurrentProcess(&psn));
    EXPECT_EQ(procNotFound, GetNextProcess(&psn));
}

TEST(Processes, WantOfDescriptorsIsNoEnd) {
    ProcessSerialNumber psn = kNobody, own;
    ASSERT_EQ(noErr, GetCurrentProcess(&own));
    NoDescriptors const none;
    EXPECT_EQ(tmfoErr, GetNextProcess(&psn));
    EXPECT_EQ(tmfoErr, GetProcessForPID(getpid(), &psn));
    EXPECT_EQ(tmfoErr, Describe(own).error);
    pid_t pid = 0;
    EXPECT_EQ(tmfoErr, GetProcessPID(&own, &pid));
    EXPECT_EQ(tmfoErr, WakeUpProcess(&own));
}

// ---- Which count

TEST(Processes, ZombiesDoNotCount) {
    Started const child(SleepProgram());
    ASSERT_FALSE(IsNobody(NumberOf(child.Pid())));
    child.Kill();
    EXPECT_TRUE(IsNobody(NumberOf(child.Pid())));
    EXPECT_FALSE(Contains(Walk(), child.Pid()));
}

TEST(Processes, ThreadsDoNotCount) {
    pid_t thread = 0;
    std::thread([&] {
        thread = static_cast<pid_t>(syscall(SYS_gettid));
        EXPECT_TRUE(IsNobody(NumberOf(thread)));
    }).join();
    EXPECT_NE(thread, getpid());
}

// Those that there are, as anybody; and one that root starts.
TEST(Processes, OfOtherUsersDoNotCount) {
    for (auto const& entry : std::filesystem::directory_iterator("/proc")) {
        int const pid = std::atoi(entry.path().filename().c_str());
        std::ifstream status(entry.path() / "status");
        std::string word;
        uid_t user = getuid();
        while (status >> word && word != "Uid:") {
        }
        status >> user;
        bool const isOthers = pid != 0 && user != getuid();
        EXPECT_FALSE(isOthers && !IsNobody(NumberOf(pid))) << pid;
    }
    if (getuid() != 0) return;
    Started const other(SleepProgram(), [] {
        if (setresuid(65534, 65534, 65534) != 0) _exit(1);
    });
    EXPECT_TRUE(std::filesystem::exists("/proc/" + std::to_string(other.Pid())));
    EXPECT_TRUE(IsNobody(NumberOf(other.Pid())));
    EXPECT_FALSE(Contains(Walk(), other.Pid()));
}

TEST(Processes, CountByTheirRealUser) {
    RecordedProcesses const processes;
    processes.Add(5, {});
    processes.Add(6, {.user = std::to_string(getuid() + 1)});
    EXPECT_EQ((std::vector<pid_t>{5}), Walk());
}

TEST(Processes, WithoutAnExecutableDoNotCount) {
    RecordedProcesses const processes;
    processes.Add(5, {.executable = std::nullopt});
    processes.Add(6, {.process = 7});
    processes.Add(7, {.executable = "not absolute"});
    processes.Add(8, {.state = 'Z'});
    EXPECT_TRUE(Walk().empty());
    for (pid_t const pid : {5, 6, 7, 8, 9, 0, -1, 4194304, 0x7FFFFFFF})
        EXPECT_TRUE(IsNobody(NumberOf(pid))) << pid;
}

// ---- Numbers

TEST(Processes, ReusedIdIsAnotherProcess) {
    RecordedProcesses const processes;
    processes.Add(5, {.start = "100"});
    ProcessSerialNumber const first = NumberOf(5);
    processes.Add(5, {.start = "200"});
    ProcessSerialNumber const second = NumberOf(5);
    EXPECT_FALSE(AreSame(first, second));
    pid_t pid = 0;
    EXPECT_EQ(procNotFound, GetProcessPID(&first, &pid));
    EXPECT_EQ(procNotFound, Describe(first).error);
    EXPECT_EQ(procNotFound, WakeUpProcess(&first));
    EXPECT_EQ(5, PidOf(second));
}

TEST(Processes, KeepTheirIdsAfterTheirEnds) {
    RecordedProcesses const processes;
    processes.Add(5, {.start = "100"});
    ProcessSerialNumber const psn = NumberOf(5);
    processes.Remove(5);
    EXPECT_EQ(5, PidOf(psn));
    EXPECT_EQ(procNotFound, Describe(psn).error);
    processes.Add(5, {.process = 4, .start = "200"});
    EXPECT_EQ(5, PidOf(psn)) << "a thread is no other process";
}

TEST(Processes, ThisOne) {
    ProcessSerialNumber psn = kNobody;
    ASSERT_EQ(noErr, GetCurrentProcess(&psn));
    EXPECT_EQ(getpid(), PidOf(psn));
    EXPECT_EQ(getpid(), PidOf(kSelf));
    EXPECT_TRUE(AreSame(psn, kSelf));
    EXPECT_TRUE(AreSame(kSelf, kSelf));
    EXPECT_TRUE(AreSame(psn, NumberOf(getpid())));
    EXPECT_EQ(ownPath, Describe(kSelf).place);
    EXPECT_TRUE(AreSame(psn, Describe(kSelf).record.processNumber));
}

TEST(Processes, ThisOneIsTheOneThatTheMachineSays) {
    RecordedProcesses const processes;
    for (pid_t const pid : {5, 6}) processes.Add(pid, {});
    processes.BeSelf(5);
    EXPECT_EQ(5, PidOf(kSelf));
    ProcessSerialNumber psn = kSelf;
    EXPECT_EQ(noErr, GetNextProcess(&psn));
    EXPECT_EQ(6, PidOf(psn));
}

TEST(Processes, IdsAreThoseOfTheFolderOfProcesses) {
    Mounts::Apart([] {
        ASSERT_EQ(0, unshare(CLONE_NEWPID));
        pid_t const child = fork();
        if (child == 0) {
            pid_t const pid = PidOf(kSelf);
            bool const isThat = std::filesystem::read_symlink("/proc/self") == std::to_string(pid);
            _exit(getpid() == 1 && isThat && pid != 1 && !IsNobody(NumberOf(pid)) ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(0, status);
    });
}

TEST(Processes, NumbersOfNoProcess) {
    pid_t pid = 0;
    Boolean same = false;
    for (ProcessSerialNumber psn : {kNobody, ProcessSerialNumber{0, kSystemProcess}, {0, 3}, {1, 0}}) {
        EXPECT_EQ(procNotFound, GetProcessPID(&psn, &pid));
        EXPECT_EQ(procNotFound, Describe(psn).error);
        EXPECT_EQ(procNotFound, SameProcess(&psn, &kSelf, &same));
        EXPECT_EQ(procNotFound, SameProcess(&kSelf, &psn, &same));
        EXPECT_EQ(procNotFound, WakeUpProcess(&psn));
        EXPECT_EQ(procNotFound, SetFrontProcess(&psn));
        if (IsNobody(psn)) continue;
        EXPECT_EQ(paramErr, GetNextProcess(&psn));
    }
}

TEST(Processes, NoneIsInFront) {
    ProcessSerialNumber psn = kSelf;
    EXPECT_EQ(procNotFound, GetFrontProcess(&psn));
    EXPECT_TRUE(IsNobody(psn));
    EXPECT_EQ(appIsDaemon, SetFrontProcess(&kSelf));
    EXPECT_EQ(noErr, WakeUpProcess(&kSelf));
}

TEST(Processes, WithoutRoomForAnswers) {
    ProcessInfoRec record{};
    record.processInfoLength = sizeof record - 1;
    EXPECT_EQ(paramErr, GetProcessInformation(&kSelf, &record));
    EXPECT_EQ(paramErr, GetProcessInformation(nullptr, &record));
    EXPECT_EQ(paramErr, GetProcessInformation(&kSelf, nullptr));
    EXPECT_EQ(paramErr, GetNextProcess(nullptr));
    EXPECT_EQ(paramErr, GetProcessForPID(1, nullptr));
    EXPECT_EQ(paramErr, GetProcessPID(&kSelf, nullptr));
    EXPECT_EQ(paramErr, GetCurrentProcess(nullptr));
    EXPECT_EQ(paramErr, GetFrontProcess(nullptr));
    EXPECT_EQ(paramErr, SameProcess(&kSelf, &kSelf, nullptr));
    EXPECT_EQ(paramErr, WakeUpProcess(nullptr));
    EXPECT_EQ(paramErr, SetFrontProcess(nullptr));
}

// ---- What is known of one

TEST(Processes, RecordOfAChild) {
    Started const child(SleepProgram());
    Description const description = Describe(NumberOf(child.Pid()));
    ProcessInfoRec const& record = description.record;
    EXPECT_EQ(Canonical(SleepProgram()), description.place);
    EXPECT_EQ("sleep", description.name);
    EXPECT_EQ(child.Pid(), PidOf(record.processNumber));
    EXPECT_EQ(getpid(), PidOf(record.processLauncher));
    EXPECT_EQ(0x4150504Cu, +record.processType);
    EXPECT_EQ(0x3F3F3F3Fu, +record.processSignature);
    EXPECT_EQ(0u, +record.processMode);
    EXPECT_EQ(nullptr, +record.processLocation);
    EXPECT_EQ(0u, +record.processFreeMem);
    EXPECT_GT(+record.processSize, 4096u);
    EXPECT_GT(+record.processLaunchDate, 0u);
}

TEST(Processes, NameAndPlaceAreOptional) {
    ProcessInfoRec record{};
    record.processInfoLength = sizeof record;
    EXPECT_EQ(noErr, GetProcessInformation(&kSelf, &record));
    EXPECT_EQ(nullptr, +record.processName);
    EXPECT_EQ(nullptr, +record.processAppSpec);
}

TEST(Processes, TimesAreSixtiethsOfASecond) {
    RecordedProcesses const processes;
    long const perSecond = sysconf(_SC_CLK_TCK);
    processes.Add(5, {.active = std::to_string(perSecond) + " " + std::to_string(perSecond / 2),
                      .start = std::to_string(100 * perSecond)});
    ProcessInfoRec const record = Describe(NumberOf(5)).record;
    EXPECT_EQ(6000u, +record.processLaunchDate);
    EXPECT_EQ(90u, +record.processActiveTime);
}

TEST(Processes, LargeNumbersAreTheLargestOnes) {
    RecordedProcesses const processes;
    processes.Add(
        5, {.active = "9999999999999999 9999999999999999", .start = "4000000000000", .size = "8589934592"});
    ProcessInfoRec const record = Describe(NumberOf(5)).record;
    EXPECT_EQ(0xFFFFFFFFu, +record.processLaunchDate);
    EXPECT_EQ(0xFFFFFFFFu, +record.processActiveTime);
    EXPECT_EQ(0xFFFFFFFFu, +record.processSize);
}

TEST(Processes, LaunchersMayBeAnybodys) {
    RecordedProcesses const processes;
    processes.Add(1, {.user = std::to_string(getuid() + 1), .executable = std::nullopt});
    processes.Add(5, {.parent = 1});
    processes.Add(6, {.parent = 0});
    processes.Add(7, {.parent = 99});
    EXPECT_EQ(1, PidOf(Describe(NumberOf(5)).record.processLauncher));
    EXPECT_TRUE(IsNobody(Describe(NumberOf(6)).record.processLauncher));
    EXPECT_TRUE(IsNobody(Describe(NumberOf(7)).record.processLauncher));
}

TEST(Processes, NamesWithParentheses) {
    TemporaryFolder const folder;
    Started const child(CopySleep(folder, ") (x) R"));
    Description const description = Describe(NumberOf(child.Pid()));
    EXPECT_EQ(") (x) R", description.name);
    EXPECT_EQ(getpid(), PidOf(description.record.processLauncher));
}

TEST(Processes, LongNamesAreCutToThirtyOneBytes) {
    TemporaryFolder const folder;
    std::string const name = "a program with quite a long name, indeed";
    Started const child(CopySleep(folder, name));
    Description const description = Describe(NumberOf(child.Pid()));
    EXPECT_EQ(31u, description.name.size());
    EXPECT_EQ("a program", description.name.substr(0, 9));
    EXPECT_EQ(folder.Path(name), description.place);
}

// The inode tells the links of a file apart as little as the beginnings of their names do.
TEST(Processes, LongNamesAreThoseOfTheLinkThatRuns) {
    TemporaryFolder const folder;
    std::string const one = folder.Path("a program with quite a long name, one"),
                      two = folder.Path("a program with quite a long name, two");
    CopySleep(folder, "a program with quite a long name, one");
    std::filesystem::create_hard_link(one, two);
    for (std::string const& link : {one, two}) {
        Started const child(link);
        EXPECT_EQ(link, Describe(NumberOf(child.Pid())).place);
    }
}

TEST(Processes, NamesThatAreNotUtf8) {
    TemporaryFolder const folder;
    Started const child(CopySleep(folder, "b\xFF\xFE"));
    EXPECT_EQ(folder.Path("b\xFF\xFE"), Describe(NumberOf(child.Pid())).place);
}

// ---- Executable files that are gone

TEST(Processes, WhoseFileIsGoneHaveTheirPlaces) {
    TemporaryFolder const folder;
    Started const child(CopySleep(folder, "program"));
    std::filesystem::remove(folder.Path("program"));
    Description const description = Describe(NumberOf(child.Pid()));
    EXPECT_EQ(folder.Path("program"), description.place);
    EXPECT_EQ("program", description.name);
}

TEST(Processes, WhoseFolderIsGoneHaveTheirPlaces) {
    TemporaryFolder const folder;
    folder.MakeFolder("bin/deeper");
    Started const child(CopySleep(folder, "bin/deeper/program"));
    std::filesystem::remove_all(folder.Path("bin"));
    Description const description = Describe(NumberOf(child.Pid()));
    EXPECT_EQ(folder.Path("bin/deeper/program"), description.place);
    EXPECT_EQ("program", description.name);
}

TEST(Processes, WhoseFileWasReplacedHaveItsPlace) {
    TemporaryFolder const folder;
    Started const child(CopySleep(folder, "program"));
    std::filesystem::remove(folder.Path("program"));
    folder.Write("program", "another");
    EXPECT_EQ(folder.Path("program"), Describe(NumberOf(child.Pid())).place);
}

TEST(Processes, FilesThatAreCalledDeleted) {
    TemporaryFolder const folder;
    Started const child(CopySleep(folder, "program (deleted)"));
    EXPECT_EQ(folder.Path("program (deleted)"), Describe(NumberOf(child.Pid())).place);
    std::filesystem::remove(folder.Path("program (deleted)"));
    EXPECT_EQ(folder.Path("program (deleted)"), Describe(NumberOf(child.Pid())).place);
}

// The file lies where nobody but the process sees it.
TEST(Processes, FilesOfOtherMountNamespacesAreReachedThroughTheProcess) {
    TemporaryFolder const folder;
    std::string const program = folder.Path("mounted/program");
    folder.MakeFolder("mounted");
    auto const mountIt = [&] {
        Mounts::EnterNamespaces();
        if (mount("none", folder.Path("mounted").c_str(), "tmpfs", 0, nullptr) != 0) _exit(1);
        std::filesystem::copy_file(SleepProgram(), program);
    };
    Started const child(program, mountIt);
    std::string const place = Describe(NumberOf(child.Pid())).place;
    EXPECT_EQ("/proc/" + std::to_string(child.Pid()) + "/root" + program, place);
    EXPECT_TRUE(std::filesystem::exists(place));
}

// Here others see another file of the same file system at its path.
TEST(Processes, FilesOfOtherMountNamespacesAreNotTakenForThoseHere) {
    TemporaryFolder const folder;
    folder.MakeFolder("here");
    folder.MakeFolder("there");
    std::string const program = CopySleep(folder, "here/program");
    CopySleep(folder, "there/program");
    auto const mountIt = [&] {
        Mounts::EnterNamespaces();
        Mounts::Bind(folder.Path("there"), folder.Path("here"));
    };
    Started const child(program, mountIt);
    EXPECT_EQ("/proc/" + std::to_string(child.Pid()) + "/root" + program,
              Describe(NumberOf(child.Pid())).place);
}

// What has its path here is another file.
TEST(Processes, DeletedFilesOfOtherMountNamespacesAreNotTakenForThoseHere) {
    TemporaryFolder const folder;
    folder.MakeFolder("here");
    folder.MakeFolder("there");
    std::string const program = CopySleep(folder, "here/program");
    CopySleep(folder, "there/program");
    Started const child(program, [&] {
        Mounts::EnterNamespaces();
        Mounts::Bind(folder.Path("there"), folder.Path("here"));
    });
    std::filesystem::remove(folder.Path("there/program"));
    Description const description = Describe(NumberOf(child.Pid()));
    EXPECT_TRUE(description.place.ends_with(program)) << description.place;
    EXPECT_FALSE(std::filesystem::exists(description.place)) << description.place;
    EXPECT_EQ("program", description.name);
}

// Its file system is unmounted, and another file lies below the mount point.
TEST(Processes, WhoseFileSystemIsUnmountedHaveNoFile) {
    TemporaryFolder const folder;
    folder.MakeFolder("mounted");
    std::string const program = CopySleep(folder, "mounted/program");
    constexpr int opened = 100;
    Started const child("/proc/self/fd/" + std::to_string(opened), [&] {
        Mounts::EnterNamespaces();
        if (mount("none", folder.Path("mounted").c_str(), "tmpfs", 0, nullptr) != 0) _exit(1);
        std::filesystem::copy_file(SleepProgram(), program);
        if (dup2(open(program.c_str(), O_PATH), opened) != opened) _exit(1);
        if (umount2(folder.Path("mounted").c_str(), MNT_DETACH) != 0) _exit(1);
    });
    Description const description = Describe(NumberOf(child.Pid()));
    EXPECT_EQ("program", description.name);
    EXPECT_EQ("/proc/" + std::to_string(child.Pid()) + "/exe/program", description.place);
}

// ---- Processes that end meanwhile

TEST(Processes, ThatEndBeforeTheyAreAskedAboutAreDescribedAsTheyWere) {
    TemporaryFolder const folder;
    Started child(CopySleep(folder, "program"));
    ProcessSerialNumber const own = NumberOf(child.Pid());
    ProcessSerialNumber psn = kNobody;
    while (GetNextProcess(&psn) == noErr && !AreSame(psn, own)) {
    }
    ASSERT_FALSE(IsNobody(psn));
    child.End();
    Description const description = Describe(psn);
    EXPECT_EQ(noErr, description.error);
    EXPECT_EQ(folder.Path("program"), description.place);
    std::thread([&] { EXPECT_EQ(procNotFound, Describe(psn).error) << "another thread's walk"; }).join();
    GetNextProcess(&psn);
    psn = kNobody;
    GetNextProcess(&psn);
    EXPECT_EQ(procNotFound, Describe(own).error) << "the walk has gone on";
}

TEST(Processes, AreGoneThroughWhileTheHostWantsThemToBe) {
    ProcessSerialNumber psn = kNobody;
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    EXPECT_EQ(userCanceledErr, GetNextProcess(&psn));
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(noErr, GetNextProcess(&psn));
}
