#include "language/Evaluation.h"

#include <chrono>
#include <new>
#include <utility>

#include "Evaluator/Exceptions.h"
#include "language/Failures.h"

namespace Evaluator {
namespace {

thread_local Evaluation* running = nullptr;

moment PresentMoment() {
    auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return moment(Instant{std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count()});
}

void const* BytesOf(ValueRef const& value) { return value ? value->Bytes() : nullptr; }

void Keep(Value& value, ValueRef const& first, ValueRef const& second) {
    if (!value.type->selfContained) KeepSources(value, first.Get(), second.Get());
}

}  // namespace

Evaluation* Evaluation::Running() { return running; }

Evaluation::Evaluation(std::size_t bindingCount, std::size_t literalCount)
    : bindings(bindingCount), literals(literalCount), now(PresentMoment()) {
    running = this;
}

void Evaluation::ClearCaches(Range where) {
    for (auto const& entry : Registry::Instance().All()) {
        if (entry->kind != EntryKind::cache) continue;
        try {
            static_cast<CacheEntry const&>(*entry).clear(nullptr);
        } catch (...) {
            throw EvaluationError{FailureOf(*entry, where)};
        }
    }
}

Evaluation::~Evaluation() {
    bindings.clear();
    literals.clear();
    running = nullptr;
}

// Calls an inspector that makes `made`, whose memory is what it asks for meanwhile. Returns whether it made
// it.
template <class Call>
bool Evaluation::Guarded(Holder& made, Entry const& entry, Range where, Call const& call) {
    struct Making {
        Making(Holder*& place, Holder* holder) : place(place), before(std::exchange(place, holder)) {}
        ~Making() { place = before; }
        Holder*& place;
        Holder* before;
    } scope(making, &made);
    MemoryBlock* const before = made.memory;
    try {
        call();
        return true;
    } catch (NoSuchObject const&) {
        Absent(where);
    } catch (...) {
        std::optional<std::string> missing = MissingItem();
        if (!missing) throw EvaluationError{FailureOf(entry, where)};
        absence = {Absence::Kind::missingItem, where, std::move(*missing)};
    }
    made.FreeMemory(before);
    return false;
}

ValueRef Evaluation::Ask(PropertyEntry const& property, TypeEntry const& result, ValueRef const& object,
                         ValueRef const& index, Range where) {
    ValueRef value = NewValue(result);
    value->alive = Guarded(*value, property, where, [&] {
        property.first(value->Bytes(), BytesOf(index), BytesOf(object), nullptr, property.context);
    });
    if (!value->alive) return {};
    Keep(*value, object, index);
    return value;
}

ValueRef Evaluation::Convert(CastEntry const& cast, TypeEntry const& result, ValueRef const& source,
                             Range where) {
    ValueRef value = NewValue(result);
    value->alive =
        Guarded(*value, cast, where, [&] { cast.thunk(value->Bytes(), source->Bytes(), cast.context); });
    if (!value->alive) return {};
    Keep(*value, source, {});
    return value;
}

ValueRef Evaluation::Operate(OperatorEntry const& op, TypeEntry const& result, ValueRef const& left,
                             ValueRef const& right, Range where) {
    ValueRef value = NewValue(result);
    value->alive = Guarded(*value, op, where,
                           [&] { op.thunk(value->Bytes(), left->Bytes(), right->Bytes(), op.context); });
    if (!value->alive) return {};
    Keep(*value, left, right);
    return value;
}

IterationRef Evaluation::Begin(PropertyEntry const& property, ValueRef const& object, ValueRef const& index,
                               Range where) {
    IterationRef iteration = NewIteration(property);
    KeepSources(*iteration, object.Get(), index.Get());
    iteration->alive = Guarded(*iteration, property, where, [&] { property.construct(iteration->State()); });
    return iteration->alive ? iteration : IterationRef();
}

// What First asks for is the iteration's, what Next asks for its value's.
ValueRef Evaluation::Step(IterationRef const& iteration, bool first, TypeEntry const& result, Range where) {
    PropertyEntry const& property = *iteration->entry;
    ValueRef value = NewValue(result);
    Holder& owner = first ? static_cast<Holder&>(*iteration) : *value;
    auto const* object = static_cast<Value*>(iteration->sources[0]);
    auto const* index = static_cast<Value*>(iteration->sources[1]);
    value->alive = Guarded(owner, property, where, [&] {
        (first ? property.first : property.next)(value->Bytes(), index ? index->Bytes() : nullptr,
                                                 object ? object->Bytes() : nullptr, iteration->State(),
                                                 property.context);
    });
    if (!value->alive) return {};
    if (!result.selfContained) KeepSources(*value, iteration.Get(), nullptr);
    return value;
}

Problem AsProblem(Absence const& absence) {
    if (absence.kind == Absence::Kind::noSuchObject)
        return {ProblemKind::evaluation, absence.where, "no such object", {}};
    return {ProblemKind::evaluation, absence.where, absence.message, {}};
}

}  // namespace Evaluator

InspectorContext* Get_Generic_Inspector_Context() { return Evaluator::Evaluation::Running(); }

void* Allocate_Inspector_Memory(unsigned int size) {
    Evaluator::Evaluation* evaluation = Evaluator::Evaluation::Running();
    void* memory = evaluation ? evaluation->Allocate(size) : nullptr;
    if (!memory) throw MemoryFullError();
    return memory;
}
