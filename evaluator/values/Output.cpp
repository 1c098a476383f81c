#include "Evaluator/Output.h"

#include <algorithm>

#include "Evaluator/Exceptions.h"

void Buffer::Advance(unsigned long count) {
    if (count > Room().Size()) throw DataOverflow();
    cursor += count;
}

void Buffer::Write(ConstData text) {
    if (text.Size() > Room().Size() && grows) {
        Grow(text);
    } else {
        cursor = (Room() << text).begin();
    }
}

// The text may lie in the old storage, which therefore lives until the text has been copied.
void Buffer::Grow(ConstData text) {
    ConstData const old = Written();
    std::vector<unsigned char> larger(std::max<std::size_t>(64, 2 * (old.Size() + text.Size())));
    Data const room = Data(larger.data(), larger.size()) << old << text;
    storage.swap(larger);
    first = storage.data();
    cursor = room.begin();
    last = room.end();
}

Buffer& operator<<(Buffer& buffer, ConstData text) {
    buffer.Write(text);
    return buffer;
}

Numeral::Numeral(unsigned char number, unsigned long width) { Write(number, false, width); }
Numeral::Numeral(unsigned short number, unsigned long width) { Write(number, false, width); }
Numeral::Numeral(unsigned long number, unsigned long width) { Write(number, false, width); }
Numeral::Numeral(long long number, unsigned long width) {
    // Negated as an unsigned number, so that the least number has a magnitude too.
    auto const bits = static_cast<unsigned long long>(number);
    Write(number < 0 ? 0 - bits : bits, number < 0, width);
}

void Numeral::Write(unsigned long long magnitude, bool isNegative, unsigned long width) {
    do {
        Prepend(static_cast<unsigned char>('0' + magnitude % 10));
        magnitude /= 10;
    } while (magnitude != 0);
    negative = isNegative;
    if (negative) Prepend('-');
    PadTo(width);
}

Numeral& Numeral::PadTo(unsigned long width) {
    if (width > mostDigits) throw DataOverflow();
    if (negative) ++first;
    while (text.size() - first < width) Prepend('0');
    if (negative) Prepend('-');
    return *this;
}
