#pragma once

// Objects on their way into the containers that will hold them.

#include <CoreFoundation/CFBase.h>

#include <cstddef>
#include <span>
#include <vector>

#include "foundation/Containers.h"

namespace Platform {

/// A stack of owned objects: those of all containers that a reader is within, the innermost one's last.
class PendingObjects {
  public:
    PendingObjects() = default;
    PendingObjects(PendingObjects const&) = delete;
    PendingObjects& operator=(PendingObjects const&) = delete;
    ~PendingObjects() {
        for (CFTypeRef const object : objects) CFRelease(object);
    }

    std::size_t Size() const { return objects.size(); }
    CFTypeRef Top() const { return objects.back(); }
    /// Those from a size of the stack on.
    std::span<CFTypeRef const> From(std::size_t size) const { return std::span(objects).subspan(size); }

    /// Takes an object over.
    void Push(CFTypeRef object) {
        try {
            objects.push_back(object);
        } catch (...) {
            CFRelease(object);
            throw;
        }
    }
    /// Gives the last object to the caller.
    CFTypeRef Pop() {
        CFTypeRef const object = objects.back();
        objects.pop_back();
        return object;
    }

    /// Makes one container of the objects from a size of the stack on, which takes their place.
    void MakeArray(std::size_t from) { Replace(from, NewArray(From(from))); }
    void MakeDictionary(std::size_t from) { Replace(from, NewDictionary(From(from))); }

  private:
    void Replace(std::size_t from, CFTypeRef container) {
        objects.resize(from);
        Push(container);
    }

    std::vector<CFTypeRef> objects;
};

}  // namespace Platform
