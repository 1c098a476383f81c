#pragma once

// A FUSE file system with one file, and perhaps a companion, whose server answers until it is stopped.

#include <linux/fuse.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "mounts/Namespace.h"

namespace Mounts {

/// The server is a process of its own. While it is stopped it takes no requests, so that who waits for an
/// answer can still be ended; once this is destroyed, all calls fail. Nothing is remembered of its answers:
/// every question gets to it.
class StoppableServer {
  public:
    /// Whether the server wants to hear of each descriptor of the file that is closed. The kernel lets none
    /// close, and no process end that has one, before it has answered. One that does not says so once.
    enum class Closing { Told, Untold };

    /// Mounts a file system that holds a file called "file" with these bytes, and "._file" with those of its
    /// companion unless they are none.
    StoppableServer(std::string const& mountPoint, std::string bytes, Closing wanted = Closing::Told,
                    std::string companionBytes = {})
        : contents(std::move(bytes)), companion(std::move(companionBytes)), closing(wanted) {
        device = open("/dev/fuse", O_RDWR | O_CLOEXEC);
        EXPECT_LE(0, device) << "FUSE must be there: " << strerror(errno);
        Mount("fuse.stoppable", mountPoint,
              "fd=" + std::to_string(device) + ",rootmode=40000,user_id=0,group_id=0", MS_NOSUID | MS_NODEV,
              "stoppable");
        process = fork();
        if (process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            while (Serve()) {
            }
            _exit(0);
        }
        close(device);
        guardian = fork();
        if (guardian == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            sleep(kPatience);
            kill(process, SIGKILL);
            _exit(0);
        }
    }
    StoppableServer(StoppableServer const&) = delete;
    StoppableServer& operator=(StoppableServer const&) = delete;
    ~StoppableServer() {
        for (pid_t const child : {guardian, process}) {
            kill(child, SIGKILL);
            waitpid(child, nullptr, 0);
        }
    }

    void Stop() const {
        kill(process, SIGSTOP);
        int status = 0;
        EXPECT_EQ(process, waitpid(process, &status, WUNTRACED));
        EXPECT_TRUE(WIFSTOPPED(status));
    }
    void GoOn() const { kill(process, SIGCONT); }

  private:
    static constexpr unsigned kPatience = 30;  // seconds
    static constexpr std::uint64_t kFolder = FUSE_ROOT_ID, kFile = 2, kCompanion = 3;

    // Answers the next request; false at the end of the file system.
    bool Serve() {
        alignas(fuse_in_header) static std::array<char, (1 << 20) + 65536> request;
        ssize_t const size = read(device, request.data(), request.size());
        if (size < 0) return errno == EINTR || errno == EAGAIN || errno == ENOENT;
        auto const& header = *reinterpret_cast<fuse_in_header const*>(request.data());
        void const* const body = request.data() + sizeof header;
        switch (header.opcode) {
            case FUSE_INIT:
                return Answer(header, Init());
            case FUSE_LOOKUP: {
                std::string_view const name = static_cast<char const*>(body);
                if (name == "file") return Answer(header, Entry(kFile));
                if (name == "._file" && !companion.empty()) return Answer(header, Entry(kCompanion));
                return Refuse(header, ENOENT);
            }
            case FUSE_GETATTR: {
                fuse_attr_out out{};
                out.attr = Attributes(header.nodeid);
                return Answer(header, out);
            }
            case FUSE_OPEN: {
                fuse_open_out out{};
                out.open_flags = FOPEN_DIRECT_IO;
                return Answer(header, out);
            }
            case FUSE_READ: {
                auto const& wanted = *static_cast<fuse_read_in const*>(body);
                std::string_view const bytes = BytesOf(header.nodeid);
                std::size_t const from = std::min<std::size_t>(wanted.offset, bytes.size());
                return Answer(header, bytes.substr(from, wanted.size));
            }
            case FUSE_STATFS:
                return Answer(header, fuse_statfs_out{});
            case FUSE_FLUSH:
                if (closing == Closing::Untold) return Refuse(header, ENOSYS);
                [[fallthrough]];
            case FUSE_RELEASE:
                return Answer(header, std::string_view());
            case FUSE_FORGET:
            case FUSE_BATCH_FORGET:
            case FUSE_INTERRUPT:
                return true;
            default:
                return Refuse(header, ENOSYS);
        }
    }

    static fuse_init_out Init() {
        fuse_init_out out{};
        out.major = FUSE_KERNEL_VERSION;
        out.minor = 31;
        out.max_background = 12;
        out.congestion_threshold = 9;
        out.max_write = 1 << 17;
        out.time_gran = 1;
        return out;
    }
    std::string_view BytesOf(std::uint64_t node) const {
        if (node == kFolder) return {};
        return node == kFile ? contents : companion;
    }
    fuse_entry_out Entry(std::uint64_t node) const {
        fuse_entry_out out{};
        out.nodeid = node;
        out.attr = Attributes(node);
        return out;
    }
    fuse_attr Attributes(std::uint64_t node) const {
        fuse_attr out{};
        out.ino = node;
        out.mode = node == kFolder ? S_IFDIR | 0755 : S_IFREG | 0644;
        out.size = BytesOf(node).size();
        out.nlink = 1;
        out.blksize = 4096;
        return out;
    }

    bool Answer(fuse_in_header const& request, std::string_view body) const {
        fuse_out_header const header{static_cast<std::uint32_t>(sizeof header + body.size()), 0,
                                     request.unique};
        std::string whole(reinterpret_cast<char const*>(&header), sizeof header);
        whole += body;
        return write(device, whole.data(), whole.size()) >= 0 || errno == ENOENT;
    }
    template <class Body>
    requires std::is_trivially_copyable_v<Body> &&
        (!std::is_convertible_v<Body, std::string_view>)bool Answer(fuse_in_header const& request,
                                                                    Body const& body) const {
        return Answer(request, std::string_view(reinterpret_cast<char const*>(&body), sizeof body));
    }
    bool Refuse(fuse_in_header const& request, int error) const {
        fuse_out_header const header{sizeof header, -error, request.unique};
        return write(device, &header, sizeof header) >= 0 || errno == ENOENT;
    }

    std::string const contents;
    std::string const companion;
    Closing const closing;
    int device = -1;
    pid_t process = -1;
    pid_t guardian = -1;  // ends the server of a test that hangs where no signal ends it
};

}  // namespace Mounts
