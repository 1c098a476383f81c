#pragma once

// Internal. One evaluation of a checked query: what it holds, and how it calls inspectors.
//
// Absence and failure are two channels. Absence (there is no such object) is an ordinary answer: a function
// that evaluates returns nothing, and Evaluation::absence tells where and of which kind. Any other failure is
// thrown as an EvaluationError and ends the evaluation.

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Evaluator/Context.h"
#include "Evaluator/Embedding.h"
#include "Evaluator/Time.h"
#include "registry/Vocabulary.h"
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
    std::string message;  ///< empty for noSuchObject
};

class Evaluation final : public InspectorContext, public InspectorYieldContext {
  public:
    /// Begins an evaluation of a query with so many places for `it` and so many literals. There is at
    /// most one at a time, the one that Get_Generic_Inspector_Context answers on the thread that began it.
    Evaluation(std::size_t bindings, std::size_t literals);
    ~Evaluation() override;
    Evaluation(Evaluation const&) = delete;
    Evaluation& operator=(Evaluation const&) = delete;

    /// The one that is running on this thread, or null.
    static Evaluation* Running();

    /// Asks every registered cache to be cleared. `where` is where a problem points.
    void ClearCaches(Range where);

    /// What `it` stands for, one place for each `whose` and each step in parentheses.
    std::vector<ValueRef> bindings;
    /// The literals of the query, made when first met.
    std::vector<ValueRef> literals;
    /// One moment throughout the evaluation.
    moment const now;
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
        return {};
    }

    // Each calls an inspector and gives its result; nothing when it answers that there is no such object.
    ValueRef Ask(PropertyEntry const& property, TypeEntry const& result, ValueRef const& object,
                 ValueRef const& index, Range where);
    ValueRef Convert(CastEntry const& cast, TypeEntry const& result, ValueRef const& source, Range where);
    ValueRef Operate(OperatorEntry const& op, TypeEntry const& result, ValueRef const& left,
                     ValueRef const& right, Range where);
    /// The first value of an iteration, then each next one; nothing at its end.
    ValueRef Step(IterationRef const& iteration, bool first, TypeEntry const& result, Range where);
    /// A fresh iteration over an object (may be nothing), its state constructed.
    IterationRef Begin(PropertyEntry const& property, ValueRef const& object, ValueRef const& index,
                       Range where);

    /// Memory for the value or iteration that is being made; null when none is.
    void* Allocate(std::size_t size) { return making ? making->Allocate(size) : nullptr; }

  private:
    /// Local time keeps one offset from universal time throughout an evaluation.
    LocalOffsetHold const offset;

    template <class Call>
    bool Guarded(Holder& made, Entry const& entry, Range where, Call const& call);

    Holder* making = nullptr;
    bool lenient = false;
};

/// The problem of an absence that nothing took as an answer.
Problem AsProblem(Absence const& absence);

}  // namespace Evaluator
