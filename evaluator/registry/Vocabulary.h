#pragma once

// Internal. The registrations as the language asks for them: types by name, properties by phrase, index and
// object, casts and operators by their operands, all with the bases of types taken into account. References
// between registrations are resolved here, at first use, so a module may name a type that a later one
// registers.
//
// A look-up that meets a registration whose type nobody registered throws UnknownType.

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "registry/Registry.h"

namespace Evaluator {

/// A registration refers to a type that nobody registered, or to one that cannot be its base; what() names
/// library, kind, phrase and type.
struct UnknownType : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A property as it was found: which registration, and by which of its phrases.
struct PropertyMatch {
    PropertyEntry const* entry;
    bool plural;
};

class Vocabulary {
  public:
    /// The vocabulary of all present registrations. The same object until one comes or goes.
    static Vocabulary const& Present();

    explicit Vocabulary(Registry const& registry);

    /// The type of that name (normal form), or null.
    TypeEntry const* Type(std::string_view name) const;
    /// The type that `type` names as its base, or null when it has none.
    TypeEntry const* Base(TypeEntry const& type) const;
    /// The type, then its bases upwards; of null, one null.
    std::vector<TypeEntry const*> Lineage(TypeEntry const* type) const;
    /// Whether a value of `type` serves where a `wanted` is expected: the same type or one of its bases.
    bool Serves(TypeEntry const& type, TypeEntry const& wanted) const;
    /// The nearest type that serves for both, or null.
    TypeEntry const* CommonBase(TypeEntry const& left, TypeEntry const& right) const;

    /// The type that the registration calls so.
    TypeEntry const& Named(Entry const& by, std::string const& name) const;
    TypeEntry const* Result(PropertyEntry const& entry) const { return &Named(entry, entry.result); }
    TypeEntry const* Result(CastEntry const& entry) const { return &Named(entry, entry.target); }
    TypeEntry const* Result(OperatorEntry const& entry) const { return &Named(entry, entry.result); }

    /// Throws UnknownType when a registration names a type that nobody registered. A look-up that finds
    /// nothing has passed over such registrations in silence; whoever reports that asks here first, about all
    /// those that it might have found.
    void RequireTypesOfProperties(std::string_view phrase) const;
    void RequireTypesOfCasts(std::string_view phrase) const;
    void RequireTypesOfOperators(int code) const;

    /// The property of `object` (null: of the world) with an index of the type (null: none), the object's
    /// own type first, then its bases; with each the index's own type first. There is at most one: the
    /// registry refuses a phrase that another registration of that index and object has, be it as singular or
    /// as plural.
    std::optional<PropertyMatch> FindProperty(std::string_view phrase, TypeEntry const* object,
                                              TypeEntry const* index) const;
    /// The cast, or null.
    CastEntry const* FindCast(std::string_view phrase, TypeEntry const& source) const;
    /// The operator, or null: fewest steps up to bases first, the left operand's own type first on a tie.
    OperatorEntry const* FindOperator(int code, TypeEntry const& left, TypeEntry const& right) const;

    /// How many of the words, from the first on, make up the longest phrase of a property; 0 for none.
    std::size_t LongestPhrase(std::vector<std::string> const& words) const;
    /// The same for the phrases of casts.
    std::size_t LongestCastPhrase(std::vector<std::string> const& words) const;

    /// All properties that have the phrase, singular or plural.
    std::vector<PropertyMatch> WithPhrase(std::string_view phrase) const;
    /// All properties of `object` (null: of the world) and of its bases.
    std::vector<PropertyEntry const*> PropertiesOf(TypeEntry const* object) const;
    std::vector<CastEntry const*> CastsOf(TypeEntry const& source) const;

  private:
    void RequireTypes(Entry const& entry) const;
    PropertyMatch const* Exactly(std::string_view phrase, std::string_view object,
                                 std::string_view index) const;

    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    template <class Value>
    using ByText = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

    ByText<TypeEntry const*> types;
    ByText<std::vector<PropertyMatch>> properties;         // by phrase
    ByText<std::vector<CastEntry const*>> casts;           // by phrase
    ByText<OperatorEntry const*> operators;                // by OperatorKey
    std::size_t longestPhrase = 0, longestCastPhrase = 0;  // in words
};

}  // namespace Evaluator
