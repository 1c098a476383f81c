#pragma once

// Objects on their way into the containers that will hold them.

#include <CoreFoundation/CFBase.h>

#include <cstddef>
#include <span>
#include <vector>

#include "files/CheckIn.h"
#include "foundation/Containers.h"
#include "propertylists/PropertyLists.h"

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

    /// Takes an object over. Throws ReadingStopped when the host wants to stop.
    void Push(CFTypeRef object) {
        constexpr std::size_t objectsBetweenQuestions = 4096;
        try {
            if (++pushed % objectsBetweenQuestions == 0 && !MayGoOn(0)) throw ReadingStopped();
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
    std::size_t pushed = 0;
};

}  // namespace Platform
