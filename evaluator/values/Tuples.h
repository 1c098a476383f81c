#pragma once

// Internal. A tuple is a value whose bytes are references to its fields' values, one after the other.

#include "values/Value.h"

namespace Evaluator {

/// A field of a tuple, shared.
inline ValueRef FieldOf(Value const& tuple, std::size_t place) {
    return ValueRef::Share(tuple.Fields()[place]);
}

/// A tuple of the type, of as many values as the type has fields.
template <class Values>
ValueRef MakeTupleValue(TypeEntry const& type, Values values) {
    ValueRef tuple = NewValue(type);
    auto slots = static_cast<Value**>(tuple->Bytes());
    for (ValueRef& value : values) *slots++ = value.Detach();
    tuple->alive = true;
    return tuple;
}

}  // namespace Evaluator
