#pragma once

// A machine whose facts are whatever is said.

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Fuzz {

/// A machine of the program's own, as long as one lives.
class Machine {
  public:
    /// With these facts, such as "proc/meminfo".
    explicit Machine(std::vector<char const*> itsFacts) : facts(std::move(itsFacts)) {
        char pattern[] = "/dev/shm/zelq-facts-XXXXXX";
        root = mkdtemp(pattern);
        for (char const* const fact : facts) std::filesystem::create_directories((root / fact).parent_path());
        setenv("ZELQ_MACHINE_ROOT", root.c_str(), 1);
    }
    Machine(Machine const&) = delete;
    Machine& operator=(Machine const&) = delete;
    ~Machine() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }

    /// Makes each of the facts that text.
    void Say(std::string_view text) const {
        for (char const* const fact : facts) SayOf(fact, text);
    }
    void SayOf(char const* fact, std::string_view text) const {
        std::filesystem::create_directories((root / fact).parent_path());
        std::ofstream(root / fact, std::ios::binary) << text;
    }
    std::filesystem::path const& Root() const { return root; }

  private:
    std::vector<char const*> const facts;
    std::filesystem::path root;
};

}  // namespace Fuzz
