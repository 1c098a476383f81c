#pragma once

#include <cstddef>
#include <cstring>
#include <new>

#include "Evaluator/Registration.h"

/// Memory as the host provides it: uninitialised, of one value's size. End() ends the value that was made in
/// it.
template <class T>
class Slot {
  public:
    Slot() { std::memset(bytes, 0xA5, sizeof bytes); }
    operator void*() { return bytes; }
    T& Value() { return *std::launder(reinterpret_cast<T*>(bytes)); }
    void End() { Value().~T(); }
    /// Whether nothing has been written.
    bool Untouched() const {
        for (std::byte byte : bytes) {
            if (byte != std::byte{0xA5}) return false;
        }
        return true;
    }

  private:
    alignas(T) std::byte bytes[sizeof(T)];
};
