#include "command/Running.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>

namespace {

// A file without a name, for a program to write to.
class Capture {
  public:
    Capture() {
        std::string pattern = std::filesystem::temp_directory_path() / "capturedXXXXXX";
        descriptor = mkstemp(pattern.data());
        unlink(pattern.c_str());
    }
    ~Capture() { close(descriptor); }
    Capture(Capture const&) = delete;
    Capture& operator=(Capture const&) = delete;

    std::string Text() const {
        std::string text;
        std::array<char, 4096> part;
        lseek(descriptor, 0, SEEK_SET);
        for (ssize_t size; (size = read(descriptor, part.data(), part.size())) > 0;)
            text.append(part.data(), static_cast<std::size_t>(size));
        return text;
    }
    int descriptor;
};

}  // namespace

Ran RunProgram(std::vector<std::string> const& arguments) {
    Capture out, err;
    std::vector<char*> argv;
    for (std::string const& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_RDONLY), 0);
        dup2(out.descriptor, 1);
        dup2(err.descriptor, 2);
        execvp(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), out.Text(), err.Text()};
}

Ran RunZelq(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), BuildFolder() + "/bin/zelq");
    return RunProgram(arguments);
}

std::string BuildFolder() {
    return std::filesystem::canonical("/proc/self/exe").parent_path().parent_path().parent_path();
}
