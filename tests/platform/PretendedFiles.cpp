// Files that are made when they are read, with what no such file of this machine can be had to do: ordinary
// files pretend. The program's own system calls take the place of the C library's for the platform too.

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/syscall.h>

#include <cerrno>

#include "platform/ForkVerbs.h"

namespace {

ino_t pretending = 0;  // the file that is made when it is read
off_t saysSoFar = -1;  // where it has no more to say for now; -1 when it always has
int refusals = 0;      // so many reads are interrupted first
unsigned reads = 0;    // calls that were made on it
constexpr SInt64 kMost = SInt64{16} << 20;

bool Pretends(int file) {
    struct stat status;
    return pretending != 0 && fstat(file, &status) == 0 && status.st_ino == pretending;
}

class PretendedFiles : public ForkTest {
  protected:
    ~PretendedFiles() override { pretending = 0; }

    // Makes a file that pretends.
    std::string Pretend(std::string_view bytes, SInt64 size) const {
        std::string path = here.Write("file", bytes);
        std::filesystem::resize_file(path, static_cast<std::uintmax_t>(size));
        struct stat status;
        EXPECT_EQ(0, stat(path.c_str(), &status));
        pretending = status.st_ino;
        saysSoFar = -1;
        refusals = 0;
        reads = 0;
        return path;
    }
};

}  // namespace

[[gnu::visibility("default")]] int fstatfs(int file, struct statfs* system) noexcept {
    auto const result = static_cast<int>(syscall(SYS_fstatfs, file, system));
    if (result == 0 && Pretends(file)) system->f_type = PROC_SUPER_MAGIC;
    return result;
}

[[gnu::visibility("default")]] ssize_t read(int file, void* buffer, size_t count) {
    if (Pretends(file)) {
        ++reads;
        if ((fcntl(file, F_GETFL) & O_NONBLOCK) == 0) ADD_FAILURE() << "this would block";
        if (refusals > 0) {
            --refusals;
            errno = EINTR;
            return -1;
        }
        off_t const at = lseek(file, 0, SEEK_CUR);
        if (saysSoFar >= 0 && at >= saysSoFar) {
            errno = EAGAIN;
            return -1;
        }
    }
    return syscall(SYS_read, file, buffer, count);
}

TEST_F(PretendedFiles, AreReadWhenTheyAreOpened) {
    std::string const path = Pretend("text", 4);
    SInt16 const fork = Open(path);
    unsigned const atFirst = reads;
    EXPECT_LT(0u, atFirst);
    here.Write("file", "other text");
    EXPECT_EQ("text", Whole(fork));
    EXPECT_EQ(4, SizeOf(fork));
    EXPECT_EQ(atFirst, reads);
}

TEST_F(PretendedFiles, Of16MebibytesAreReadWhole) {
    SInt16 const fork = Open(Pretend("head", kMost));
    EXPECT_EQ(kMost, SizeOf(fork));
    EXPECT_EQ((Got{noErr, "head"}), ReadAtMark(fork, 4));
    EXPECT_EQ((Got{eofErr, std::string(1, '\0')}), Read(fork, fsFromLEOF, -1, 2));
}

TEST_F(PretendedFiles, AreTooLongBeyond) {
    std::string const path = Pretend("head", kMost + 1);
    EXPECT_EQ(ioErr, TryToOpen(path));
    char told[4096];
    EXPECT_EQ(ioErr, PlatformFileFailure(told, sizeof told));
    EXPECT_EQ(path, told);
}

TEST_F(PretendedFiles, ThatHaveNoMoreToSayForNowEndThere) {
    std::string const path = Pretend("some text", 9);
    saysSoFar = 9;
    EXPECT_EQ("some text", Whole(Open(path)));
    saysSoFar = 0;
    SInt16 const silent = Open(path);
    EXPECT_EQ(0, SizeOf(silent));
    EXPECT_EQ((Got{eofErr, ""}), ReadAtMark(silent, 1));
}

TEST_F(PretendedFiles, AreReadOnWhenASignalInterrupts) {
    std::string const path = Pretend("text", 4);
    refusals = 3;
    EXPECT_EQ("text", Whole(Open(path)));
}

TEST_F(PretendedFiles, AreGivenUpWhenTheHostSaysStop) {
    FSRef const reference = ReferenceTo(Pretend("text", kMost));
    PlatformSetCheckIn([](UInt32) -> Boolean { return reads < 3; });
    EXPECT_EQ(userCanceledErr, TryToOpen(reference));
    EXPECT_EQ(3u, reads);
}
