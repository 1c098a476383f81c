#include "memory/Handles.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "foundation/Object.h"

namespace Platform {

namespace {

// As much as a size of 32 bits can tell.
constexpr Size kMost = 0x7FFFFFFF;

struct FreeBytes {
    void operator()(char* bytes) const noexcept { std::free(bytes); }
};

// What a handle leads to.
struct Block {
    Ptr address;  // the handle is the address of this
    Size size;
    std::unique_ptr<char, FreeBytes> bytes;
};

// The blocks that there are. Safe from any thread.
class Blocks {
  public:
    // They outlive every thread that may still come back at the end.
    static Blocks& Shared() {
        static Blocks& blocks = *new Blocks;
        return blocks;
    }

    OSErr Add(Size size, Handle& handle) {
        if (OSErr const error = CheckSize(size); error != noErr) return error;
        auto block = std::make_unique<Block>();
        block->bytes.reset(static_cast<char*>(std::calloc(Room(size), 1)));
        if (!block->bytes) return memFullErr;
        block->address = block->bytes.get();
        block->size = size;
        std::lock_guard const lock(mutex);
        Handle const made = &block->address;
        blocks.emplace(made, std::move(block));
        handle = made;
        return noErr;
    }

    OSErr Remove(Handle handle) {
        std::lock_guard const lock(mutex);
        if (handle == nullptr) return nilHandleErr;
        return blocks.erase(handle) != 0 ? noErr : memWZErr;
    }

    OSErr Measure(Handle handle, Size& size) {
        return With(handle, [&](Block& block) -> OSErr {
            size = block.size;
            return noErr;
        });
    }

    OSErr Resize(Handle handle, Size size) {
        return With(handle, [&](Block& block) { return Resize(block, size); });
    }

    OSErr Fill(Handle handle, std::string_view bytes) {
        return With(handle, [&](Block& block) {
            OSErr const error = Resize(block, static_cast<Size>(bytes.size()));
            if (error == noErr && !bytes.empty()) std::memcpy(block.address, bytes.data(), bytes.size());
            return error;
        });
    }

  private:
    static OSErr CheckSize(Size size) {
        if (size < 0) return paramErr;
        return size > kMost ? memFullErr : noErr;
    }

    // Blocks without bytes have an address, too.
    static std::size_t Room(Size size) { return size == 0 ? 1 : static_cast<std::size_t>(size); }

    template <class Action>
    OSErr With(Handle handle, Action const& action) {
        std::lock_guard const lock(mutex);
        if (handle == nullptr) return nilHandleErr;
        auto const found = blocks.find(handle);
        return found == blocks.end() ? OSErr{memWZErr} : action(*found->second);
    }

    static OSErr Resize(Block& block, Size size) {
        if (OSErr const error = CheckSize(size); error != noErr) return error;
        auto* const bytes = static_cast<char*>(std::realloc(block.bytes.get(), Room(size)));
        if (bytes == nullptr) return memFullErr;
        static_cast<void>(block.bytes.release());
        block.bytes.reset(bytes);
        block.address = bytes;
        block.size = size;
        return noErr;
    }

    std::mutex mutex;
    std::unordered_map<Handle, std::unique_ptr<Block>> blocks;
};

thread_local OSErr lastError = noErr;

}  // namespace

OSErr CheckHandle(Handle handle) {
    Size size;
    return Blocks::Shared().Measure(handle, size);
}

OSErr FillHandle(Handle handle, std::string_view bytes) { return Blocks::Shared().Fill(handle, bytes); }

}  // namespace Platform

using namespace Platform;

Handle NewHandle(Size byteCount) {
    Handle handle = nullptr;
    lastError = Guarded<OSErr>(memFullErr, [&] { return Blocks::Shared().Add(byteCount, handle); });
    return handle;
}

void DisposeHandle(Handle h) { lastError = Blocks::Shared().Remove(h); }

Size GetHandleSize(Handle h) {
    Size size = 0;
    lastError = Blocks::Shared().Measure(h, size);
    return size;
}

void SetHandleSize(Handle h, Size newSize) { lastError = Blocks::Shared().Resize(h, newSize); }

OSErr MemError() { return lastError; }
