#include "Evaluator/Stacks.h"

#include "Evaluator/Exceptions.h"

void* StackBase::Allocate() {
    if (used >= memory.Size() / entrySize) throw DataOverflow();
    return Entry(used++);
}

void StackBase::Pop(unsigned long count) {
    if (count > used) throw DataOverflow();
    used -= count;
}

void* StackBase::AtDepth(unsigned long depth) const {
    if (depth >= used) throw DataOverflow();
    return Entry(used - 1 - depth);
}
