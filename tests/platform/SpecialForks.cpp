// Forks of what is no ordinary file: files that are made when they are read, pipes, sockets and devices.

#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "platform/ForkVerbs.h"

namespace {

std::string Contents(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

}  // namespace

// ---- Files that are made when they are read

class MadeForks : public ForkTest {
  protected:
    void ExpectToHold(std::string const& path) {
        SInt16 const fork = Open(path);
        std::string const text = Contents(path);
        EXPECT_FALSE(text.empty()) << path;
        EXPECT_EQ(static_cast<SInt64>(text.size()), SizeOf(fork)) << path;
        EXPECT_EQ(text, Whole(fork)) << path;
    }
};

TEST_F(MadeForks, HaveTheSizeThatWasRead) {
    ExpectToHold("/proc/version");
    EXPECT_EQ(0u, CatalogOf("/proc/version").dataLogicalSize) << "the catalog has the file system's";
    ExpectToHold("/proc/filesystems");
    ExpectToHold("/sys/devices/system/cpu/online");
    EXPECT_EQ(4096u, CatalogOf("/sys/devices/system/cpu/online").dataLogicalSize);
}

// A table that is longer than what is read at one time: pages with different rights are lines of their own.
TEST_F(MadeForks, AreReadToTheirEnds) {
    constexpr std::size_t pages = 4000, page = 4096;
    void* const memory = mmap(nullptr, pages * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(MAP_FAILED, memory);
    for (std::size_t i = 0; i < pages; i += 2)
        ASSERT_EQ(0, mprotect(static_cast<char*>(memory) + i * page, page, PROT_READ));
    SInt16 const fork = Open("/proc/self/maps");
    std::string const text = Whole(fork);
    munmap(memory, pages * page);
    EXPECT_LT(2 * 65536u, text.size());
    EXPECT_EQ(static_cast<SInt64>(text.size()), SizeOf(fork));
    EXPECT_LE(static_cast<std::ptrdiff_t>(pages), std::count(text.begin(), text.end(), '\n'));
    EXPECT_EQ('\n', text.back());
    EXPECT_EQ((Got{noErr, text.substr(65530, 12)}), ReadFrom(65530, fork, 12));
}

TEST_F(MadeForks, ArePositionedLikeOthers) {
    SInt16 const fork = Open("/proc/version");
    std::string const text = Contents("/proc/version");
    auto const size = static_cast<SInt64>(text.size());
    EXPECT_EQ((Got{noErr, text.substr(0, 5)}), ReadAtMark(fork, 5));
    EXPECT_EQ((Got{noErr, text.substr(5, 2)}), ReadAtMark(fork, 2));
    EXPECT_EQ((Got{eofErr, text.substr(text.size() - 3)}), Read(fork, fsFromLEOF, -3, 4));
    EXPECT_EQ((Got{eofErr, ""}), ReadFrom(size, fork, 1));
    EXPECT_EQ((Got{eofErr, ""}), ReadFrom(size + 1, fork, 1));
    EXPECT_EQ((Got{posErr, ""}), Read(fork, fsFromLEOF, -size - 1, 1));
}

TEST_F(MadeForks, StayAsTheyWereWhenTheyWereOpened) {
    SInt16 const fork = Open("/proc/uptime");
    std::string const text = Whole(fork);
    while (Contents("/proc/uptime") == text) usleep(10'000);
    EXPECT_EQ(text, Whole(fork));
    EXPECT_NE(text, Whole(Open("/proc/uptime")));
}

TEST_F(MadeForks, KeepNoFileOpen) {
    std::ptrdiff_t const before = OpenFiles();
    Open("/proc/version");
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(MadeForks, LinksLeadToThem) {
    EXPECT_EQ(Contents("/proc/version"), Whole(Open(here.Link("link", "/proc/version"))));
    EXPECT_EQ(notAFileErr, TryToOpen("/proc/self/net"));
}

TEST_F(MadeForks, ThatCannotBeReadAreRefusedWhenTheyAreOpened) {
    std::ptrdiff_t const before = OpenFiles();
    EXPECT_EQ(ioErr, TryToOpen("/proc/self/mem")) << "there is nothing at its start";
    EXPECT_EQ(before, OpenFiles());
}

// The table of pages has eight bytes for each page that there could be.
TEST_F(MadeForks, AreTooLongBeyond16Mebibytes) {
    ASSERT_EQ(0, access("/proc/self/pagemap", R_OK)) << "the table of pages, which is long";
    std::ptrdiff_t const before = OpenFiles();
    EXPECT_EQ(ioErr, TryToOpen("/proc/self/pagemap"));
    char path[100];
    EXPECT_EQ(ioErr, PlatformFileFailure(path, sizeof path));
    EXPECT_EQ(before, OpenFiles());
}

TEST_F(MadeForks, AreNotReadOnWhenTheHostSaysStop) {
    FSRef const reference = ReferenceTo("/proc/version");
    static int asked;
    asked = 0;
    PlatformSetCheckIn([](UInt32 items) -> Boolean { return items != 0 || ++asked > 100; });
    EXPECT_EQ(userCanceledErr, TryToOpen(reference));
}

// ---- What is never opened

class UnopenedForks : public ForkTest {
  protected:
    void ExpectToBeEmpty(std::string const& path) {
        std::ptrdiff_t const before = OpenFiles();
        SInt16 const fork = Open(path);
        EXPECT_EQ(before, OpenFiles()) << path;
        EXPECT_EQ(0, SizeOf(fork)) << path;
        EXPECT_EQ((Got{eofErr, ""}), ReadAtMark(fork, 10)) << path;
        EXPECT_EQ((Got{eofErr, ""}), ReadFrom(100, fork, 1)) << path;
        EXPECT_EQ((Got{noErr, ""}), ReadAtMark(fork, 0)) << path;
        EXPECT_EQ((Got{posErr, ""}), Read(fork, fsFromLEOF, -1, 1)) << path;
        EXPECT_EQ(noErr, FSCloseFork(fork)) << path;
    }
    std::string MakePipe(std::string const& name) const {
        EXPECT_EQ(0, mkfifo(here.Path(name).c_str(), 0644));
        return here.Path(name);
    }
    std::string MakeSocket(std::string const& name) const {
        int const socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        here.Path(name).copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(0, bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address)) << here.Path(name);
        close(socket);
        return here.Path(name);
    }
};

TEST_F(UnopenedForks, OfPipesSocketsAndDevicesAreEmpty) {
    ExpectToBeEmpty(MakePipe("pipe"));
    ExpectToBeEmpty(here.Link("link", "pipe"));
    ExpectToBeEmpty(MakeSocket("socket"));
    ExpectToBeEmpty("/dev/null");
    ExpectToBeEmpty("/dev/zero");
    ExpectToBeEmpty("/dev/full");
}

TEST_F(UnopenedForks, WriterOfAPipeFindsNoReader) {
    std::string const pipe = MakePipe("pipe");
    Open(pipe);
    EXPECT_EQ(-1, open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    EXPECT_EQ(ENXIO, errno);
}

TEST_F(UnopenedForks, OfAPipeTakesNothingOutOfIt) {
    std::string const path = MakePipe("pipe");
    int const pipe = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    ASSERT_EQ(4, write(pipe, "text", 4));
    ExpectToBeEmpty(path);
    char buffer[5] = {};
    EXPECT_EQ(4, read(pipe, buffer, 4));
    EXPECT_STREQ("text", buffer);
    close(pipe);
}

// Opening the terminal and closing it would hang its other side up.
TEST_F(UnopenedForks, OfATerminalIsEmpty) {
    int const terminal = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_LE(0, terminal) << "terminals are needed";
    ASSERT_EQ(0, grantpt(terminal));
    ASSERT_EQ(0, unlockpt(terminal));
    char const* const name = ptsname(terminal);
    ASSERT_NE(nullptr, name);
    ASSERT_EQ(0, access(name, F_OK)) << "the other sides of terminals are to be seen";
    ExpectToBeEmpty(name);
    char byte = 0;
    EXPECT_EQ(-1, read(terminal, &byte, 1));
    EXPECT_EQ(EAGAIN, errno) << "nobody has hung up";
    close(terminal);
}
