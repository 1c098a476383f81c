#include "Evaluator/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "Evaluator/Arithmetic.h"
#include "Evaluator/Exceptions.h"
#include "values/InspectorMemory.h"

using namespace Evaluator;

namespace {

constexpr bool IsCapital(unsigned char byte) { return byte >= 'A' && byte <= 'Z'; }
constexpr bool IsSmall(unsigned char byte) { return byte >= 'a' && byte <= 'z'; }
constexpr bool IsLetter(unsigned char byte) { return IsCapital(byte) || IsSmall(byte); }
constexpr bool IsDigit(unsigned char byte) { return byte >= '0' && byte <= '9'; }

// The two cases of a letter differ in one bit.
constexpr unsigned char kCaseBit = 'a' - 'A';
constexpr unsigned char Raised(unsigned char byte) {
    return static_cast<unsigned char>(byte ^ (IsSmall(byte) ? kCaseBit : 0));
}
constexpr unsigned char Lowered(unsigned char byte) {
    return static_cast<unsigned char>(byte ^ (IsCapital(byte) ? kCaseBit : 0));
}

// In blocks of a fixed size, which the compiler changes many bytes of at one time.
template <auto change>
Data Fold(ConstData text, Data target) {
    if (text.Size() > target.Size()) throw DataOverflow();
    std::array<unsigned char, 64> block;
    unsigned char const* from = text.begin();
    unsigned char* to = target.begin();
    for (; text.end() - from >= std::ssize(block); from += block.size(), to += block.size()) {
        std::memcpy(block.data(), from, block.size());
        for (unsigned char& byte : block) byte = change(byte);
        std::memcpy(to, block.data(), block.size());
    }
    return {target.begin(), std::transform(from, text.end(), to, change)};
}

}  // namespace

inspector_string MakeString(ConstData text) {
    Data const memory = InspectorMemory(text.Size());
    memory << text;
    return AsString(memory);
}

inspector_string Concatenate(inspector_string const& front, inspector_string const& back) {
    if (!CanAdd(front.length, back.length)) throw StringyLengthTooLong();
    Data const memory = InspectorMemory(front.length + back.length);
    memory << front << back;
    return AsString(memory);
}

bool StartsWith(inspector_string const& text, inspector_string const& prefix) {
    return prefix.length <= text.length && std::equal(prefix.begin(), prefix.end(), text.begin());
}

bool Contains(inspector_string const& text, inspector_string const& part) {
    if (part.length == 0) return true;
    return text.length != 0 && memmem(text.begin(), text.length, part.begin(), part.length) != nullptr;
}

int Compare(ConstCString left, ConstData right) {
    ConstData const text(left.Characters());
    std::size_t const common = std::min(text.Size(), right.Size());
    int const order = common == 0 ? 0 : std::memcmp(text.begin(), right.begin(), common);
    if (order != 0) return order;
    return text.Size() < right.Size() ? -1 : text.Size() > right.Size();
}

Data Ascii::RaiseCase(ConstData text, Data target) { return Fold<Raised>(text, target); }
Data Ascii::LowerCase(ConstData text, Data target) { return Fold<Lowered>(text, target); }

int Ascii::CompareUppercase(ConstData left, ConstData right) {
    auto const order = std::lexicographical_compare_three_way(
        left.begin(), left.end(), right.begin(), right.end(),
        [](unsigned char one, unsigned char other) { return Raised(one) <=> Raised(other); });
    return order < 0 ? -1 : order > 0;
}

bool Ascii::EqualIgnoringCase(ConstData left, ConstData right) {
    return left.Size() == right.Size() && CompareUppercase(left, right) == 0;
}

ByteSet const& Ascii::Alphabetic() {
    static constexpr ByteSet letters(IsLetter);
    return letters;
}

ByteSet const& Ascii::Numeric() {
    static constexpr ByteSet digits(IsDigit);
    return digits;
}

constinit ByteFilter const Ascii::lowerCase(Lowered);
