// What the platform's loader runs and finds in the library: registration at load, withdrawal at unload, and
// the few names that the library exports. Everything else it offers is announced by registration.

#include <cstdint>
#include <optional>

#include "modules/LoadOrder.h"

namespace MacintoshPlatform {
class FileLocation;
}

#define EXPORTED __attribute__((visibility("default")))

/// The files that the section and key inspectors do not read: an array of locations, and how many there are.
/// Empty as delivered.
extern "C" EXPORTED MacintoshPlatform::FileLocation const* const gFileExclusionList;
extern "C" EXPORTED std::uint32_t const gFileExclusionListLength;
MacintoshPlatform::FileLocation const* const gFileExclusionList = nullptr;
std::uint32_t const gFileExclusionListLength = 0;

/// The library's entry. Does nothing.
extern "C" EXPORTED void __init();
void __init() {}

namespace {

std::optional<Inspectors::LoadOrder> modules;

[[gnu::constructor]] void Load() noexcept { modules.emplace(); }
[[gnu::destructor]] void Unload() { modules.reset(); }

}  // namespace
