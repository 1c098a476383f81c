#pragma once

// Internal. Loading and unloading inspector libraries. Called under the evaluation lock.

#include <filesystem>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "registry/Registry.h"

namespace Evaluator {

class Libraries {
  public:
    static Libraries& Instance();

    /// Loads a library and takes its registrations. Returns what was wrong; then nothing of it stays.
    std::vector<std::string> Load(std::filesystem::path const& file);
    /// Unloads the library of that file name, or says why not.
    std::optional<std::string> Unload(std::string_view name);
    std::list<Library> const& Loaded() const { return loaded; }

    // For the handler of a stack that overflows: neither allocates.

    /// Whether the address lies in the code of a loaded library.
    bool HoldCode(void const* address) const;
    /// Makes the code of all loaded libraries a trap for whoever comes back to it, or code again.
    void SetExecutable(bool executable) const;

  private:
    // A list, so that the libraries stay where they are: entries point at them.
    std::list<Library> loaded;
};

}  // namespace Evaluator
