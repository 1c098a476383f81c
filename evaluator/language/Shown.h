#pragma once

// Internal. How values are shown as text. Which way a type is shown is settled before anything runs.

#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "language/Evaluation.h"

namespace Evaluator {

class Shown {
  public:
    Shown() = default;
    /// Settles how values of `type`, and of every type that has it as a base, are shown.
    Shown(Vocabulary const& vocabulary, TypeEntry const& type);

    /// Makes `result` tell the value. Its text is that of the value's cast to string, else of its nearest
    /// base that is a string, else its type and its name, else its type. A tuple shows its fields with ", "
    /// between; one within another in parentheses. May fail with an EvaluationError that points at `where`,
    /// also when the text of a tuple becomes longer than the limit.
    void Show(Evaluation& evaluation, ValueRef const& value, Range where, Result& result) const;
    /// The libraries whose registrations are used for it are added to the list.
    void AddLibraries(std::vector<Library*>& libraries) const;

  private:
    // How values of one type are shown.
    struct Way {
        ValueKind kind = ValueKind::other;
        CastEntry const* cast = nullptr;
        bool isString = false;
        PropertyEntry const* name = nullptr;
    };
    void SettleAll(Vocabulary const& vocabulary, TypeEntry const& type, std::set<TypeEntry const*>& settled);
    void Settle(Vocabulary const& vocabulary, TypeEntry const& type);
    void ShowFields(Evaluation& evaluation, Value const& tuple, Range where, Result& result) const;
    void ShowOther(Evaluation& evaluation, ValueRef const& value, Way const& way, Range where,
                   Result& result) const;

    std::unordered_map<TypeEntry const*, Way> ways;
    TypeEntry const* string = nullptr;
};

}  // namespace Evaluator
