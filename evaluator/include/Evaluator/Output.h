#pragma once

// Building text: a buffer with a write cursor, and numbers in decimal.

#include <array>
#include <vector>

#include "Evaluator/Values.h"

/// Room for text, filled from the front. Made over a span it is a cursor and an end, never goes beyond the
/// end, and leaves the bytes where they are; made without one it has storage of its own, which grows with
/// what is written. Not copied; addresses into storage of its own hold until the next write.
class EVALUATOR_API Buffer {
  public:
    Buffer() : grows(true) {}
    /// The span must outlive the buffer.
    explicit Buffer(Data room) : grows(false), first(room.begin()), cursor(room.begin()), last(room.end()) {}
    Buffer(Buffer const&) = delete;
    Buffer& operator=(Buffer const&) = delete;

    /// What has been written.
    ConstData Written() const { return {first, cursor}; }
    /// The span behind the cursor. A caller that fills part of it by itself says so with Advance.
    Data Room() const { return {cursor, last}; }
    /// Counts the next `count` bytes as written. Throws DataOverflow when there are fewer in Room().
    void Advance(unsigned long count);
    /// Writes bytes behind those already written. Throws DataOverflow, and writes nothing, when they do not
    /// fit.
    void Write(ConstData text);

  private:
    void Grow(ConstData text);

    bool grows;
    std::vector<unsigned char> storage;
    unsigned char* first = nullptr;
    unsigned char* cursor = nullptr;
    unsigned char* last = nullptr;
};

/// Writes text into the buffer, as Buffer::Write does.
EVALUATOR_API Buffer& operator<<(Buffer& buffer, ConstData text);

/// A number in decimal. The width is the least number of digits; missing ones are zeros in front, behind the
/// sign. Holds its text itself and may be copied.
class EVALUATOR_API Numeral {
  public:
    /// Each throws DataOverflow for a width of more than 40.
    explicit Numeral(unsigned char number, unsigned long width = 1);
    explicit Numeral(unsigned short number, unsigned long width = 1);
    explicit Numeral(unsigned long number, unsigned long width = 1);
    explicit Numeral(long long number, unsigned long width = 1);

    /// Puts zeros in front until there are at least `width` digits. Throws DataOverflow, and changes nothing,
    /// when that is more than 40.
    Numeral& PadTo(unsigned long width);
    /// The text. Lies in the numeral.
    operator ConstData() const { return {text.data() + first, text.data() + text.size()}; }

  private:
    void Write(unsigned long long magnitude, bool isNegative, unsigned long width);
    void Prepend(unsigned char character) { text[--first] = character; }

    // Twice what the largest number needs; one more for the sign.
    static constexpr unsigned long mostDigits = 40;
    std::array<unsigned char, mostDigits + 1> text;
    unsigned char first = mostDigits + 1;
    bool negative = false;
};
