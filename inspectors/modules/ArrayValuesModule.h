#pragma once

#include "frame/Adapters.h"
#include "plist/Arrays.h"

/// All elements of an array.
class ArrayValuesModule {
    IteratedProperty<OSXArrayIterator, OSXArray, OSXValue> values{"value", "values", "array", "osxvalue"};
};
