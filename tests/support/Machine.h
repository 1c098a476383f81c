#pragma once

// Machines whose facts are files: those of a test's own making, and the recorded ones in tests/machines.

#include <filesystem>
#include <string>
#include <string_view>

#include "support/TemporaryFolder.h"
#include "support/Variable.h"

/// A machine that knows what a test writes, as long as one lives.
class Machine {
  public:
    /// Writes a fact, such as "proc/meminfo", and returns its path.
    std::string Write(std::string_view path, std::string_view text) const {
        std::filesystem::path const name(path);
        if (name.has_parent_path()) folder.MakeFolder(name.parent_path().native());
        return folder.Write(path, text);
    }
    TemporaryFolder const folder;

  private:
    Variable const root{"ZELQ_MACHINE_ROOT", folder.Path()};
};

/// A recorded machine: "laptop", "server" or "vm".
class RecordedMachine {
  public:
    explicit RecordedMachine(std::string const& name) : root("ZELQ_MACHINE_ROOT", ZELQ_MACHINES "/" + name) {}

  private:
    Variable const root;
};
