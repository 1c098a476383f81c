#include "Evaluator/Values.h"

#include "Evaluator/Exceptions.h"

Data Data::operator<<(ConstData text) const {
    if (text.Size() > Size()) throw DataOverflow();
    // The text may lie in this very span; and an empty one may lie nowhere.
    if (!text.Empty()) std::memmove(from, text.begin(), text.Size());
    return {from + text.Size(), to};
}

unsigned long ConstCString::Length() const { return std::strlen(first); }
