#include "language/Evaluation.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <chrono>
#include <new>
#include <utility>

#include "Evaluator/Exceptions.h"
#include "Platform/Items.h"
#include "language/Failures.h"
#include "stack/EvaluationStack.h"

namespace Evaluator {
namespace {

thread_local Evaluation* running = nullptr;
// The same for whoever asks from another thread.
std::atomic<Evaluation*> present{nullptr};

// Thrown into an inspector that is to stop. Whether it arrives does not matter.
struct EvaluationStopped {};

moment PresentMoment() {
    auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return moment(Instant{std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count()});
}

void const* BytesOf(ValueRef const& value) { return value ? value->Bytes() : nullptr; }

void Keep(Value& value, Holder* first, Holder* second) {
    if (!value.type->selfContained) KeepSources(value, first, second);
}

std::optional<std::chrono::steady_clock::time_point> Deadline(std::chrono::steady_clock::time_point begun,
                                                              std::chrono::nanoseconds time) {
    using Clock = std::chrono::steady_clock;
    if (time.count() <= 0) return std::nullopt;
    return time < Clock::time_point::max() - begun ? begun + time : Clock::time_point::max();
}

}  // namespace

Evaluation* Evaluation::Running() { return running; }

Evaluation::Evaluation(std::size_t bindingCount, std::size_t literalCount, RunOptions const& options,
                       std::chrono::steady_clock::time_point begun)
    : bindings(bindingCount),
      literals(literalCount),
      now(PresentMoment()),
      limits(options.limits),
      cancellation(options.cancellation),
      progress(options.progress),
      deadline(Deadline(begun, options.limits.time)),
      floor(EvaluationStack::Instance().Floor()) {
    yieldTimeSlice = trickle = &GiveTime;
    running = this;
    present = this;
    PlatformSetCheckIn(&MayLookUp);
}

Evaluation::~Evaluation() {
    PlatformSetCheckIn(nullptr);
    present = nullptr;
    running = nullptr;
}

void Evaluation::LetGo() {
    bindings.clear();
    literals.clear();
}

void Evaluation::Forget() {
    making = nullptr;
    for (auto* values : {&bindings, &literals})
        for (ValueRef& value : *values) value.Detach();
    LetGo();
}

void Evaluation::ClearCaches(Range where) {
    for (auto const& entry : Registry::Instance().All()) {
        if (entry->kind != EntryKind::cache) continue;
        calling = where;
        try {
            static_cast<CacheEntry const&>(*entry).clear(nullptr);
        } catch (...) {
            CheckIn(where);
            throw EvaluationError{FailureOf(*entry, where)};
        }
        CheckIn(where);
    }
}

// ---- Stopping

// A stop while the platform waited for a file system is told with its mount point.
Problem Evaluation::WhyStopped(Range const& where) const {
    constexpr std::int32_t cancelled = -128;
    std::string const mount = UnresponsiveMount(cancelled);
    switch (stopReason) {
        case StopReason::time:
            return {ProblemKind::limit, where,
                    fmt::format("the time limit of {} s was reached",
                                std::chrono::duration<double>(limits.time).count()),
                    mount.empty() ? "allow more time, or ask for less" : mount};
        case StopReason::inspectorMemory:
            return {ProblemKind::limit, where,
                    fmt::format("inspectors want more than {} bytes of memory at one time",
                                limits.inspectorMemory),
                    "ask about fewer or smaller things at once"};
        default:
            return {ProblemKind::cancelled, where, "the evaluation was cancelled", mount};
    }
}

void Evaluation::Stop(Range const& where) const { throw EvaluationError{WhyStopped(where)}; }

Problem Evaluation::WhyGivenUp() const {
    if (stopReason != StopReason::none) return WhyStopped(calling);
    return {ProblemKind::evaluation, calling, "the evaluation ran out of stack",
            fmt::format("its limit is {} bytes, and what is marked here recurses deeper", limits.stackBytes)};
}

bool Evaluation::InsistOnStopping() {
    constexpr int patience = 1000;
    EvaluationStack& stack = EvaluationStack::Instance();
    if (!stack.IsCurrent() || ++timesRefused <= patience) return false;
    stack.GiveUpInInspector();
    return true;
}

void Evaluation::GiveTime(InspectorContext* context) {
    auto& evaluation = static_cast<Evaluation&>(*context);
    if (!evaluation.ShouldStop()) return;
    // An exception on its way would be lost where the inspector is left; where lives end nothing may be
    // thrown.
    if (!evaluation.InsistOnStopping() && evaluation.making) throw EvaluationStopped();
}

unsigned char Evaluation::MayLookUp(unsigned int items) {
    Evaluation* evaluation = present;
    if (!evaluation) return true;
    if (evaluation->ShouldStop()) {
        evaluation->InsistOnStopping();
        return false;
    }
    if (evaluation->progress) evaluation->progress->items.fetch_add(items, std::memory_order_relaxed);
    return true;
}

// ---- Calling inspectors

namespace {

// An absence is not believed when a file system has not answered.
void CheckForSilence(Entry const& entry, Range const& where) {
    if (auto problem = SilenceBehind(entry, where)) throw EvaluationError{std::move(*problem)};
}

}  // namespace

// Calls an inspector that constructs `made`; the memory that it asks for meanwhile is `owner`'s. Returns
// whether it made it. A result that is not believed is there all the same, and ends like any other: so it is
// `call` that makes it keep its sources.
template <class Call>
bool Evaluation::Guarded(Holder& owner, Holder& made, Entry const& entry, Range const& where,
                         Call const& call) {
    calling = where;
    if (static_cast<char const*>(__builtin_frame_address(0)) < floor) [[unlikely]]
        throw EvaluationError{WhyGivenUp()};
    MemoryBlock* const before = owner.memory;
    making = &owner;
    try {
        call();
        making = nullptr;
        made.alive = true;
        CheckIn(where);
        return true;
    } catch (NoSuchObject const&) {
        making = nullptr;
        CheckIn(where);
        CheckForSilence(entry, where);
        Absent(where);
        absence.message = UnusableFile();
    } catch (EvaluationError const&) {
        throw;
    } catch (...) {
        making = nullptr;
        CheckIn(where);
        std::optional<std::string> missing = MissingItem();
        if (!missing) throw EvaluationError{FailureOf(entry, where)};
        CheckForSilence(entry, where);
        absence = {Absence::Kind::missingItem, where, std::move(*missing)};
    }
    owner.FreeMemory(before);
    PlatformForgetFileFailure();  // what comes is not about that file
    return false;
}

void* Evaluation::Allocate(std::size_t size) {
    if (!making) return nullptr;
    std::size_t const inUse = InspectorMemoryInUse();
    if (inUse > limits.inspectorMemory || size > limits.inspectorMemory - inUse) {
        stopReason = StopReason::inspectorMemory;
        return nullptr;
    }
    return making->Allocate(size);
}

bool Evaluation::Ask(ValueRef& value, PropertyEntry const& property, TypeEntry const& result,
                     ValueRef const& object, ValueRef const& index, Range const& where) {
    RenewValue(value, result);
    return Guarded(*value, *value, property, where, [&] {
        property.first(value->Bytes(), BytesOf(index), BytesOf(object), nullptr, property.context);
        Keep(*value, object.Get(), index.Get());
    });
}

bool Evaluation::Convert(ValueRef& value, CastEntry const& cast, TypeEntry const& result,
                         ValueRef const& source, Range const& where) {
    RenewValue(value, result);
    return Guarded(*value, *value, cast, where, [&] {
        cast.thunk(value->Bytes(), source->Bytes(), cast.context);
        Keep(*value, source.Get(), nullptr);
    });
}

bool Evaluation::Operate(ValueRef& value, OperatorEntry const& op, TypeEntry const& result, Value& left,
                         Value& right, Range const& where) {
    RenewValue(value, result);
    return Guarded(*value, *value, op, where, [&] {
        op.thunk(value->Bytes(), left.Bytes(), right.Bytes(), op.context);
        Keep(*value, &left, &right);
    });
}

bool Evaluation::Compute(void* result, OperatorEntry const& op, void const* left, void const* right,
                         Range const& where) {
    try {
        op.thunk(result, left, right, op.context);
        return true;
    } catch (NoSuchObject const&) {
        Absent(where);
        return false;
    } catch (...) {
        throw EvaluationError{FailureOf(op, where)};
    }
}

IterationRef Evaluation::Begin(PropertyEntry const& property, ValueRef const& object, ValueRef const& index,
                               Range const& where) {
    IterationRef iteration = NewIteration(property);
    KeepSources(*iteration, object.Get(), index.Get());
    bool there =
        Guarded(*iteration, *iteration, property, where, [&] { property.construct(iteration->State()); });
    return there ? iteration : IterationRef();
}

// What First asks for is the iteration's, what Next asks for its value's.
bool Evaluation::Step(ValueRef& value, IterationRef const& iteration, bool first, TypeEntry const& result,
                      Range const& where) {
    PropertyEntry const& property = *iteration->entry;
    RenewValue(value, result);
    Holder& owner = first ? static_cast<Holder&>(*iteration) : *value;
    auto const* object = static_cast<Value*>(iteration->sources[0]);
    auto const* index = static_cast<Value*>(iteration->sources[1]);
    return Guarded(owner, *value, property, where, [&] {
        (first ? property.first : property.next)(value->Bytes(), index ? index->Bytes() : nullptr,
                                                 object ? object->Bytes() : nullptr, iteration->State(),
                                                 property.context);
        if (!result.selfContained) KeepSources(*value, iteration.Get(), nullptr);
    });
}

Problem AsProblem(Absence const& absence) {
    if (absence.kind == Absence::Kind::noSuchObject)
        return {ProblemKind::evaluation, absence.where, "no such object", absence.message};
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
