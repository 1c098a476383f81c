#pragma once

// Internal. One evaluation of a checked query: what it holds, how it calls inspectors, and how it is stopped.
//
// Absence and failure are two channels. Absence (there is no such object) is an ordinary answer: a function
// that evaluates returns nothing, and Evaluation::absence tells where and of which kind. Any other failure is
// thrown as an EvaluationError and ends the evaluation.
//
// A stop (cancellation, a limit) is a mark on the evaluation, since some inspectors turn every exception into
// another answer: after each call of an inspector the mark is looked at before the answer is believed.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Evaluator/Context.h"
#include "Evaluator/Embedding.h"
#include "Evaluator/Time.h"
#include "registry/Vocabulary.h"
#include "values/Owned.h"
#include "values/Value.h"

namespace Evaluator {

/// Ends an evaluation.
struct EvaluationError {
    Problem problem;
};

/// Why there is no value.
struct Absence {
    /// NoSuchObject is silent where a plural leaves values out; an item that the platform misses is silent
    /// under `exists` and `otherwise` only.
    enum class Kind { noSuchObject, missingItem } kind = Kind::noSuchObject;
    Range where;          ///< the phrase that answered so
    std::string message;  ///< what is missing; of noSuchObject a hint, which may be empty
};

class Evaluation final : public InspectorContext, public InspectorYieldContext {
  public:
    /// Begins an evaluation of a query with so many places for `it` and so many literals. There is at
    /// most one at a time, the one that Get_Generic_Inspector_Context answers on the thread that began it.
    /// Whatever calls an inspector must happen on the evaluation's stack.
    Evaluation(std::size_t bindings, std::size_t literals, RunOptions const& options,
               std::chrono::steady_clock::time_point begun);
    ~Evaluation() override;
    Evaluation(Evaluation const&) = delete;
    Evaluation& operator=(Evaluation const&) = delete;

    /// The one that is running on this thread, or null.
    static Evaluation* Running();

    /// Asks every registered cache to be cleared. `where` is where a problem points.
    void ClearCaches(Range where);
    /// Lets go of the values that the evaluation itself holds.
    void LetGo();
    /// Where the stack was given up: forgets the call that was left, and those values, whose owners are to be
    /// forgotten next.
    void Forget();

    /// What `it` stands for, one place for each `whose` and each step in parentheses.
    std::vector<ValueRef> bindings;
    /// The literals of the query, made when first met.
    std::vector<ValueRef> literals;
    /// One moment throughout the evaluation.
    moment const now;
    Limits const& limits;
    Absence absence;

    /// While one of these lives, every form of absence is silent, as it is under `exists` and `otherwise`.
    class Lenience {
      public:
        explicit Lenience(Evaluation& owner)
            : evaluation(owner), before(std::exchange(owner.lenient, true)) {}
        ~Lenience() { evaluation.lenient = before; }
        Lenience(Lenience const&) = delete;
        Lenience& operator=(Lenience const&) = delete;

      private:
        Evaluation& evaluation;
        bool before;
    };
    /// Whether a plural goes on past the absence that was noted last.
    bool MayPassAbsence() const { return lenient || absence.kind == Absence::Kind::noSuchObject; }

    /// Notes that there is no such object at `where`; returns nothing, for the caller to return.
    ValueRef Absent(Range where) {
        absence.kind = Absence::Kind::noSuchObject;
        absence.where = where;
        absence.message.clear();
        return {};
    }
    /// The same where an inspector has just said so, whose reason is kept.
    ValueRef AbsentAsToldAt(Range where) {
        absence.where = where;
        return {};
    }

    // ---- Calling inspectors. Each makes its result in `value`, whatever that held, and returns whether
    // there is one; none when the inspector answers that there is no such object. `value` is none of the
    // arguments.

    bool Ask(ValueRef& value, PropertyEntry const& property, TypeEntry const& result, ValueRef const& object,
             ValueRef const& index, Range const& where);
    bool Convert(ValueRef& value, CastEntry const& cast, TypeEntry const& result, ValueRef const& source,
                 Range const& where);
    bool Operate(ValueRef& value, OperatorEntry const& op, TypeEntry const& result, Value& left, Value& right,
                 Range const& where);
    /// An operator of the core's own, whose result is bits and nothing else, computed where `result` points.
    bool Compute(void* result, OperatorEntry const& op, void const* left, void const* right,
                 Range const& where);
    /// The first value of an iteration, then each next one; none at its end.
    bool Step(ValueRef& value, IterationRef const& iteration, bool first, TypeEntry const& result,
              Range const& where);
    // The same for who has no slot to use again; gives nothing when there is no such object.
    ValueRef Ask(PropertyEntry const& property, TypeEntry const& result, ValueRef const& object,
                 ValueRef const& index, Range const& where) {
        ValueRef value;
        return Ask(value, property, result, object, index, where) ? value : ValueRef();
    }
    ValueRef Convert(CastEntry const& cast, TypeEntry const& result, ValueRef const& source,
                     Range const& where) {
        ValueRef value;
        return Convert(value, cast, result, source, where) ? value : ValueRef();
    }
    ValueRef Operate(OperatorEntry const& op, TypeEntry const& result, ValueRef const& left,
                     ValueRef const& right, Range const& where) {
        ValueRef value;
        return Operate(value, op, result, *left, *right, where) ? value : ValueRef();
    }
    /// A fresh iteration over an object (may be nothing), its state constructed.
    IterationRef Begin(PropertyEntry const& property, ValueRef const& object, ValueRef const& index,
                       Range const& where);

    /// Memory for the value or iteration that is being made; null when none is, and where a limit stands
    /// against it, which then is the reason to stop.
    void* Allocate(std::size_t size);

    // ---- Stopping

    /// Throws an EvaluationError when the evaluation is to stop. For work of the host's own that goes on long
    /// without a call of an inspector.
    void CheckIn(Range const& where) {
        if (ShouldStop()) [[unlikely]]
            Stop(where);
    }
    /// Whether it is to stop. May be called on any thread.
    bool ShouldStop() {
        if (stopReason.load(std::memory_order_relaxed) != StopReason::none) return true;
        if (cancellation != nullptr && cancellation->IsRequested()) return NoteStop(StopReason::cancelled);
        return deadline && std::chrono::steady_clock::now() >= *deadline && NoteStop(StopReason::time);
    }
    /// Counts a value that is about to be handed to the consumer.
    void CountValue() {
        if (progress) progress->values.fetch_add(1, std::memory_order_relaxed);
    }
    /// The problem to report when the stack was given up.
    Problem WhyGivenUp() const;

  private:
    enum class StopReason : std::uint8_t { none, cancelled, time, inspectorMemory };

    template <class Call>
    bool Guarded(Holder& owner, Holder& made, Entry const& entry, Range const& where, Call const& call);
    bool NoteStop(StopReason reason) {
        stopReason = reason;
        return true;
    }
    [[noreturn]] void Stop(Range const& where) const;
    Problem WhyStopped(Range const& where) const;
    /// What the platform asks before so many items are looked at, and where they are counted: false tells it
    /// to refuse.
    static unsigned char MayLookUp(unsigned int items);
    /// What a long-running inspector calls from time to time. Throws when the evaluation is to stop.
    static void GiveTime(InspectorContext* context);
    /// Whether an inspector that has been told to stop again and again is to be left where it stands, which
    /// then happens as soon as its own code goes on.
    bool InsistOnStopping();

    /// Local time keeps one offset from universal time throughout an evaluation.
    LocalOffsetHold const offset;
    Cancellation const* const cancellation;
    Progress* const progress;
    std::optional<std::chrono::steady_clock::time_point> const deadline;
    std::atomic<StopReason> stopReason{StopReason::none};
    int timesRefused = 0;

    char const* const floor;  ///< no inspector is called from a frame below it
    Holder* making = nullptr;
    Range calling;  ///< the phrase whose inspector was called last
    bool lenient = false;
};

/// The problem of an absence that nothing took as an answer.
Problem AsProblem(Absence const& absence);

}  // namespace Evaluator
