// What the platform's loader runs: registration at load, withdrawal at unload. What the library offers is
// announced by registration, apart from its entry, the exclusion list, and the name of a character set.

#include <optional>

#include "modules/LoadOrder.h"

#define EXPORTED __attribute__((visibility("default")))

/// The library's entry. Does nothing.
extern "C" EXPORTED void __init();
void __init() {}

namespace {

std::optional<Inspectors::LoadOrder> modules;

[[gnu::constructor]] void Load() noexcept { modules.emplace(); }
[[gnu::destructor]] void Unload() { modules.reset(); }

}  // namespace
