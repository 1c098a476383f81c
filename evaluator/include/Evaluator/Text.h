#pragma once

// Texts: strings in inspector memory, comparisons, and the ASCII character classes.
//
// Text is bytes. Case is that of the ASCII letters; every other byte is left as it is and equals only itself.

#include <array>
#include <cstdint>

#include "Evaluator/Values.h"

/// A string whose bytes are a copy of `text` in memory from Allocate_Inspector_Memory. Throws
/// StringyLengthTooLong when the text is longer than 32 bits can tell, and what Allocate_Inspector_Memory
/// throws.
EVALUATOR_API inspector_string MakeString(ConstData text);
/// A string of the bytes of both, in order, in memory of its own. Throws as MakeString does.
EVALUATOR_API inspector_string Concatenate(inspector_string const& front, inspector_string const& back);
/// Whether `text` begins with exactly the bytes of `prefix`. Every text begins with the empty one.
EVALUATOR_API bool StartsWith(inspector_string const& text, inspector_string const& prefix);
/// Whether exactly the bytes of `part` occur in `text`. Every text contains the empty one.
EVALUATOR_API bool Contains(inspector_string const& text, inspector_string const& part);
/// The order of two texts by the values of their bytes: negative, zero or positive. A text comes before every
/// longer one that begins with it.
EVALUATOR_API int Compare(ConstCString left, ConstData right);

namespace Evaluator {

/// A set of byte values.
class ByteSet {
  public:
    /// The set of the bytes for which `belongs` is true.
    constexpr explicit ByteSet(bool (*belongs)(unsigned char)) {
        for (unsigned int byte = 0; byte < 256; ++byte)
            members[byte] = belongs(static_cast<unsigned char>(byte));
    }
    constexpr bool Contains(unsigned char byte) const { return members[byte]; }

  private:
    std::array<bool, 256> members{};
};

/// Turns each byte into another one.
class ByteFilter {
  public:
    constexpr explicit ByteFilter(unsigned char (*change)(unsigned char)) : changed(change) {}
    constexpr unsigned char operator()(unsigned char byte) const { return changed(byte); }

  private:
    unsigned char (*changed)(unsigned char);
};

}  // namespace Evaluator

/// The ASCII letters and digits.
class EVALUATOR_API Ascii {
  public:
    /// Writes `text` into the front of `target` with its small letters made capitals, and returns the part
    /// that was written. The target may be the text's own bytes. Throws DataOverflow, and writes nothing,
    /// when the target is shorter than the text.
    static Data RaiseCase(ConstData text, Data target);
    /// The same, with capitals made small.
    static Data LowerCase(ConstData text, Data target);
    /// The byte order of the two texts with their small letters made capitals: negative, zero or positive.
    static int CompareUppercase(ConstData left, ConstData right);
    /// Whether the two texts are the same but for the case of letters.
    static bool EqualIgnoringCase(ConstData left, ConstData right);
    /// The letters A to Z and a to z.
    static Evaluator::ByteSet const& Alphabetic();
    /// The digits 0 to 9.
    static Evaluator::ByteSet const& Numeric();
    /// Makes a capital small.
    static Evaluator::ByteFilter const lowerCase;
};
