#include "gestalt/MachineName.h"

#include <sys/mman.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <mutex>

#include "foundation/PascalStrings.h"
#include "gestalt/Facts.h"

namespace Platform {

namespace {

constexpr std::size_t kSlots = 16, kSlotSize = 256;

bool IsLow(void const* memory) {
    constexpr std::uint64_t end = std::uint64_t{1} << 32;
    return std::uint64_t{reinterpret_cast<std::uintptr_t>(memory)} + kSlots * kSlotSize <= end;
}

// A page below 4 GiB, which stays for as long as the process lives. Null when there is none.
unsigned char* NewLowPage() {
#ifdef MAP_32BIT
    constexpr int flags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_32BIT;
#else
    constexpr int flags = MAP_PRIVATE | MAP_ANONYMOUS;
#endif
    // An address is a wish: where it is taken, the kernel chooses another.
    constexpr std::uintptr_t step = std::uintptr_t{64} << 20, last = std::uintptr_t{3} << 30;
    for (std::uintptr_t wish = step; wish <= last; wish += step) {
        void* const page =
            mmap(reinterpret_cast<void*>(wish), kSlots * kSlotSize, PROT_READ | PROT_WRITE, flags, -1, 0);
        if (page == MAP_FAILED) return nullptr;
        if (IsLow(page)) return static_cast<unsigned char*>(page);
        munmap(page, kSlots * kSlotSize);
    }
    return nullptr;
}

}  // namespace

OSErr GetMachineName(std::string& name) {
    constexpr std::array places{"sys/class/dmi/id/product_name", "proc/device-tree/model",
                                "proc/sys/kernel/hostname"};
    for (char const* const place : places) {
        OSErr const error = GetFactLine(place, name);
        if (error == gestaltUnknownErr) return error;
        std::erase(name, '\0');  // the device tree's texts end so
        if (!name.empty()) return noErr;
    }
    return gestaltUndefSelectorErr;
}

OSErr GetLowString(std::string_view text, UInt32& address) {
    static std::mutex mutex;
    static unsigned char* page = nullptr;
    static std::size_t next = 0;
    std::string_view const fitting = CutToCharacters(text, kSlotSize - 1);
    std::lock_guard const lock(mutex);
    if (page == nullptr) page = NewLowPage();
    if (page == nullptr) return memFullErr;
    auto const holds = [&](unsigned char const* slot) {
        return slot[0] == fitting.size() && std::memcmp(slot + 1, fitting.data(), fitting.size()) == 0;
    };
    std::size_t slot = 0;
    while (slot < kSlots && !holds(page + slot * kSlotSize)) ++slot;
    if (slot == kSlots) {
        slot = next;
        next = (next + 1) % kSlots;
        page[slot * kSlotSize] = static_cast<unsigned char>(fitting.size());
        std::memcpy(page + slot * kSlotSize + 1, fitting.data(), fitting.size());
    }
    address = static_cast<UInt32>(reinterpret_cast<std::uintptr_t>(page + slot * kSlotSize));
    return noErr;
}

}  // namespace Platform
