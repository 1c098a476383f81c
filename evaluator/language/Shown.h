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

    /// By the value's cast to string, else by its nearest base that is a string, else by its type and its
    /// name, else by its type. A tuple shows its fields with ", " between; one within another in parentheses.
    /// May fail with an EvaluationError that points at `where`, also when the text becomes longer than the
    /// limit.
    std::string Text(Evaluation& evaluation, ValueRef const& value, Range where) const;
    /// The libraries whose registrations are used for it are added to the list.
    void AddLibraries(std::vector<Library*>& libraries) const;

  private:
    // How values of one type are shown.
    struct Way {
        CastEntry const* cast = nullptr;
        bool isString = false;
        PropertyEntry const* name = nullptr;
    };
    void SettleAll(Vocabulary const& vocabulary, TypeEntry const& type, std::set<TypeEntry const*>& settled);
    void Settle(Vocabulary const& vocabulary, TypeEntry const& type);
    std::string OfFields(Evaluation& evaluation, Value const& tuple, Range where) const;

    std::unordered_map<TypeEntry const*, Way> ways;
    TypeEntry const* string = nullptr;
};

}  // namespace Evaluator
