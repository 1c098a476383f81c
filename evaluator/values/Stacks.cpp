#include "Evaluator/Stacks.h"

#include "Evaluator/Exceptions.h"

void StackBase::ThrowDataOverflow() { throw DataOverflow(); }
