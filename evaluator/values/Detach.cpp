#include "values/Detach.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "Evaluator/Values.h"
#include "values/Owned.h"
#include "values/Tuples.h"

namespace Evaluator {
namespace {

ValueRef CopiedString(Value const& value) {
    auto const& text = value.As<inspector_string>();
    ValueRef copy = NewValue(*value.type);
    auto* bytes = static_cast<unsigned char*>(copy->Allocate(text.length));
    if (text.length > 0) std::memcpy(bytes, text.bytes, text.length);
    new (copy->Bytes()) inspector_string(bytes, text.length);
    copy->alive = true;
    return copy;
}

// One value in several fields stays one: a tuple may hold a value many times over.
ValueRef DetachedTuple(ValueRef const& tuple) {
    OwnedVector<ValueRef> before, after;
    bool changed = false;
    for (std::size_t i = 0; i < tuple->type->fields.size(); ++i) {
        before.push_back(FieldOf(*tuple, i));
        auto same = std::find_if(before.begin(), before.end() - 1,
                                 [&](ValueRef const& field) { return field.Get() == before.back().Get(); });
        auto place = static_cast<std::size_t>(same - before.begin());
        after.push_back(place < i ? after[place] : Detached(before.back()));
        changed = changed || after.back().Get() != before.back().Get();
    }
    return changed ? MakeTupleValue(*tuple->type, std::move(after)) : tuple;
}

}  // namespace

ValueRef Detached(ValueRef const& value) {
    if (!value->type->fields.empty()) return DetachedTuple(value);
    bool hasSources = value->sources[0] || value->sources[1];
    return value->type->isString && hasSources ? CopiedString(*value) : value;
}

}  // namespace Evaluator
