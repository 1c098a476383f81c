// The vocabulary as values: which types there are, what can be asked of them, who registered it. They stand
// for registrations, none of which comes or goes while a query is evaluated.

#include "Evaluator/Exceptions.h"
#include "core/Rows.h"
#include "registry/Vocabulary.h"
#include "values/Owned.h"

namespace Evaluator {
namespace {

using Place = Registry::Entries::const_iterator;

Registry::Entries const& All() { return Registry::Instance().All(); }

TypeValue AsType(Entry const& entry) {
    return entry.kind == EntryKind::type ? static_cast<TypeValue>(&entry) : nullptr;
}
PropertyValue AsProperty(Entry const& entry) {
    bool const is = entry.kind == EntryKind::property || entry.kind == EntryKind::iterated;
    return is ? static_cast<PropertyValue>(&entry) : nullptr;
}
CastEntry const* AsCast(Entry const& entry) {
    return entry.kind == EntryKind::cast ? static_cast<CastEntry const*>(&entry) : nullptr;
}

// ---- Of the world

// All registrations that are of a kind, in the order in which they were made.
template <class Found, Found (*as)(Entry const&)>
class Each {
  public:
    Found First() { return Next(); }
    Found Next() {
        while (at != All().end())
            if (Found found = as(**at++)) return found;
        throw NoSuchObject();
    }

  private:
    Place at = All().begin();
};

TypeValue TypeNamed(inspector_string const& name) {
    std::string_view text(reinterpret_cast<char const*>(name.begin()), name.length);
    if (TypeValue type = Vocabulary::Present().Type(NormalPhrase(text))) return type;
    throw NoSuchObject();
}

// ---- Of a type

// What a type has, its own first, then what it has from its bases and does not have itself.
template <class Result, Result (*find)(Entry const&, TypeEntry const& level, TypeEntry const& type)>
class EachOfType {
  public:
    Result First(TypeValue const& type) {
        std::vector<TypeEntry const*> const found = Vocabulary::Present().Lineage(type);
        lineage.assign(found.begin(), found.end());
        return Next(type);
    }
    Result Next(TypeValue const& type) {
        for (; level < lineage.size(); ++level, at = All().begin())
            while (at != All().end())
                if (Result found = find(**at++, *lineage[level], *type)) return found;
        throw NoSuchObject();
    }

  private:
    OwnedVector<TypeEntry const*> lineage;
    std::size_t level = 0;
    Place at = All().begin();
};

PropertyValue PropertyOf(Entry const& entry, TypeEntry const& level, TypeEntry const& type) {
    PropertyValue property = AsProperty(entry);
    if (!property || property->object != level.name) return nullptr;
    TypeEntry const* index = Vocabulary::Present().Type(property->index);
    if (!index && !property->index.empty()) return property;
    auto found = Vocabulary::Present().FindProperty(property->singular, &type, index);
    return found && found->entry == property ? property : nullptr;
}

CastEntry const* CastOf(Entry const& entry, TypeEntry const& level, TypeEntry const& type) {
    CastEntry const* cast = AsCast(entry);
    if (!cast || cast->source != level.name) return nullptr;
    return Vocabulary::Present().FindCast(cast->phrase, type) == cast ? cast : nullptr;
}

// The phrases of its casts.
class CastsOfType {
  public:
    inspector_string First(TypeValue const& type) { return CoreText(casts.First(type)->phrase); }
    inspector_string Next(TypeValue const& type) { return CoreText(casts.Next(type)->phrase); }

  private:
    EachOfType<CastEntry const*, CastOf> casts;
};

inspector_string TypeName(TypeValue const& type) { return CoreText(type->name); }
TypeValue BaseType(TypeValue const& type) {
    if (TypeValue base = Vocabulary::Present().Base(*type)) return base;
    throw NoSuchObject();
}

// ---- Of a property

template <std::string PropertyEntry::*name>
TypeValue TypeOf(PropertyValue const& property) {
    if ((property->*name).empty()) throw NoSuchObject();
    return &Vocabulary::Present().Named(*property, property->*name);
}
template <std::string PropertyEntry::*phrase>
inspector_string PhraseOf(PropertyValue const& property) {
    return CoreText(property->*phrase);
}
inspector_string LibraryOf(PropertyValue const& property) { return CoreText(property->library->name); }

// "line (string) of file: file line"
inspector_string PropertyAsText(PropertyValue const& property) {
    std::string text = property->singular;
    if (!property->index.empty()) text += " (" + property->index + ")";
    if (!property->object.empty()) text += " of " + property->object;
    return CoreText(text + ": " + property->result);
}

// ---- Tables

constexpr TypeRow kTypes[] = {
    {"type", sizeof(TypeValue), false, nullptr, nullptr},
    {"property", sizeof(PropertyValue), false, nullptr, nullptr},
};
constexpr PropertyRow kProperties[] = {
    {"type", "types", "string", "", "type", Adapted<TypeNamed>::GetIndexed},
    {"name", "names", "", "type", "string", Adapted<TypeName>::GetOf},
    {"base type", "base types", "", "type", "type", Adapted<BaseType>::GetOf},
    {"singular phrase", "singular phrases", "", "property", "string",
     Adapted<PhraseOf<&PropertyEntry::singular>>::GetOf},
    {"plural phrase", "plural phrases", "", "property", "string",
     Adapted<PhraseOf<&PropertyEntry::plural>>::GetOf},
    {"index type", "index types", "", "property", "type", Adapted<TypeOf<&PropertyEntry::index>>::GetOf},
    {"object type", "object types", "", "property", "type", Adapted<TypeOf<&PropertyEntry::object>>::GetOf},
    {"result type", "result types", "", "property", "type", Adapted<TypeOf<&PropertyEntry::result>>::GetOf},
    {"library", "libraries", "", "property", "string", Adapted<LibraryOf>::GetOf},
};
constexpr IteratedRow kIterated[] = {
    Iterated<Each<TypeValue, AsType>, TypeValue, void, void>::Row("type", "types"),
    Iterated<Each<PropertyValue, AsProperty>, PropertyValue, void, void>::Row("property", "properties"),
    Iterated<EachOfType<PropertyValue, PropertyOf>, PropertyValue, void, TypeValue>::Row("property",
                                                                                         "properties"),
    Iterated<CastsOfType, inspector_string, void, TypeValue>::Row("cast", "casts"),
};
constexpr CastRow kCasts[] = {
    {"string", "property", "string", Adapted<PropertyAsText>::Cast},
};

}  // namespace

CorePart VocabularyItself() { return {kTypes, kProperties, kIterated, kCasts, {}}; }

}  // namespace Evaluator
