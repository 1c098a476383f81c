#pragma once

// Shared ownership without counters: the sharers of an object know each other.
//
// The sharers stand in a ring, so joining, leaving and asking whether one is the last touch only the
// neighbours, and nothing is allocated. Nothing is locked: all sharers of one object belong to one thread.

#include <utility>

/// A place in a ring. A link that is alone is its own neighbour on both sides.
class SharingLink {
  public:
    SharingLink() noexcept : next(this), prev(this) {}
    /// Joins the ring of `other`, directly after it.
    SharingLink(SharingLink const& other) noexcept : next(other.next), prev(&other) {
        next->prev = this;
        other.next = this;
    }
    /// Leaves its ring for that of `other`.
    SharingLink& operator=(SharingLink const& other) noexcept {
        SharingLink joined(other);
        joined.swap(*this);
        return *this;
    }
    ~SharingLink() {
        next->prev = prev;
        prev->next = next;
        next = prev = nullptr;
    }

    /// Exchanges the places of the two links in their rings, which may be one ring and neighbouring places.
    void swap(SharingLink& other) noexcept {
        // The neighbours first, then the links, then the new neighbours: in this order it holds for any two
        // links.
        std::swap(prev->next, other.prev->next);
        std::swap(prev, other.prev);
        std::swap(next, other.next);
        std::swap(next->prev, other.next->prev);
    }
    bool IsAlone() const noexcept { return next == this; }

  private:
    // A link that is joined changes, though it may be a constant to whoever joins it.
    mutable SharingLink const* next;
    mutable SharingLink const* prev;
};

/// A sharer of an object, which goes with its last sharer. May hold null.
template <class T>
class SharingPtr {
  public:
    /// Takes ownership, as the only sharer.
    explicit SharingPtr(T* object) noexcept : object(object) {}
    SharingPtr(SharingPtr const&) noexcept = default;
    /// Takes the other's place; it holds null then.
    SharingPtr(SharingPtr&& other) noexcept : object(std::exchange(other.object, nullptr)) {
        link.swap(other.link);
    }
    /// Becomes a sharer of the other's object; its old one goes if this was its last sharer.
    SharingPtr& operator=(SharingPtr const& other) {
        SharingPtr joined(other);
        std::swap(joined.object, object);
        joined.link.swap(link);
        return *this;
    }
    ~SharingPtr() {
        if (link.IsAlone()) delete object;
    }

    /// Requires: not null.
    T* operator->() const noexcept { return object; }
    T& operator*() const noexcept { return *object; }

  private:
    T* object;
    SharingLink link;
};
