#pragma once

// The host's plain value types, as they lie in memory between the host and an inspector library.
// All are trivially copyable; none owns what it points at.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Evaluator/Export.h"

/// A read-only span of bytes: begin and end. Does not own them.
class ConstData {
  public:
    constexpr ConstData() = default;
    constexpr ConstData(unsigned char const* begin, unsigned char const* end) : from(begin), to(end) {}
    constexpr ConstData(unsigned char const* begin, std::size_t size) : from(begin), to(begin + size) {}
    /// The characters of a text that ends with a NUL byte, without that byte.
    ConstData(char const* text)
        : from(reinterpret_cast<unsigned char const*>(text)), to(from + std::strlen(text)) {}

    constexpr unsigned char const* begin() const { return from; }
    constexpr unsigned char const* end() const { return to; }
    constexpr std::size_t Size() const { return static_cast<std::size_t>(to - from); }
    constexpr bool Empty() const { return from == to; }

  private:
    unsigned char const* from = nullptr;
    unsigned char const* to = nullptr;
};

/// A writable span of bytes: begin and end. Does not own them.
class Data {
  public:
    constexpr Data() = default;
    constexpr Data(unsigned char* begin, unsigned char* end) : from(begin), to(end) {}
    constexpr Data(unsigned char* begin, std::size_t size) : from(begin), to(begin + size) {}

    constexpr unsigned char* begin() const { return from; }
    constexpr unsigned char* end() const { return to; }
    constexpr std::size_t Size() const { return static_cast<std::size_t>(to - from); }
    constexpr bool Empty() const { return from == to; }
    constexpr operator ConstData() const { return {from, to}; }

    /// Copies `text` to the front of this span and returns the span that remains behind it, so that writes
    /// chain: `room << "a" << "b"`. Throws DataOverflow, and writes nothing, when the text does not fit.
    EVALUATOR_API Data operator<<(ConstData text) const;

  private:
    unsigned char* from = nullptr;
    unsigned char* to = nullptr;
};

/// A text that ends with a NUL byte. Does not own it.
class ConstCString {
  public:
    constexpr ConstCString(char const* text) : first(text) {}
    constexpr char const* Characters() const { return first; }
    /// Bytes before the NUL.
    EVALUATOR_API unsigned long Length() const;

  private:
    char const* first;
};

/// The language's "string": bytes, not terminated, in no particular encoding. The bytes must outlive the
/// value: they lie in memory from Allocate_Inspector_Memory, or are static.
struct inspector_string {
    constexpr inspector_string() = default;
    constexpr inspector_string(unsigned char const* text, std::uint32_t size) : bytes(text), length(size) {}

    constexpr unsigned char const* begin() const { return bytes; }
    constexpr unsigned char const* end() const { return bytes + length; }
    constexpr operator ConstData() const { return {begin(), end()}; }

    unsigned char const* bytes = nullptr;
    std::uint32_t length = 0;
};

/// The language's "integer": 64 bits, signed. Behaves as the number it holds; overflow is the business of
/// whoever computes (the language's own operators check for it).
class integer {
  public:
    constexpr integer(long long number = 0) : value(number) {}
    constexpr operator long long() const { return value; }

  private:
    long long value;
};

/// The language's "boolean": a 32-bit truth value, zero for false.
class boolean {
  public:
    constexpr boolean(bool truth = false) : value(truth ? 1 : 0) {}
    constexpr operator bool() const { return value != 0; }

  private:
    std::uint32_t value;
};

/// Marks an inspector that takes an "of" object; carries no data.
struct Of {};
