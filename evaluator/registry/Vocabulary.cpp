#include "registry/Vocabulary.h"

#include <fmt/format.h>

#include <algorithm>

#include "registry/PhrasesOfMany.h"
#include "registry/Words.h"

namespace Evaluator {
namespace {

// No sound library comes near this; a longer chain of bases is a ring.
constexpr std::size_t kLongestLineage = 100;

std::string OperatorKey(int code, std::string_view left, std::string_view right) {
    return fmt::format("{}|{}|{}", code, left, right);
}

template <class Map>
std::size_t LongestIn(Map const& phrases, std::size_t longest, std::vector<std::string> const& words) {
    for (std::size_t count = std::min(longest, words.size()); count > 0; --count)
        if (phrases.contains(fmt::format("{}", fmt::join(words.begin(), words.begin() + count, " "))))
            return count;
    return 0;
}

template <class Map>
void Grow(std::size_t& longest, Map const& phrases) {
    for (auto const& [phrase, entries] : phrases) longest = std::max(longest, CountWords(phrase));
}

}  // namespace

Vocabulary const& Vocabulary::Present() {
    static std::unique_ptr<Vocabulary> present;
    static std::uint64_t revision = 0;
    Registry& registry = Registry::Instance();
    if (!present || revision != registry.Revision()) {
        present = std::make_unique<Vocabulary>(registry);
        revision = registry.Revision();
    }
    return *present;
}

Vocabulary::Vocabulary(Registry const& registry) {
    for (auto const& entry : registry.All()) {
        switch (entry->kind) {
            case EntryKind::type: {
                auto const& type = static_cast<TypeEntry const&>(*entry);
                types.emplace(type.name, &type);
                break;
            }
            case EntryKind::property:
            case EntryKind::iterated: {
                auto const& property = static_cast<PropertyEntry const&>(*entry);
                properties[property.singular].push_back({&property, false});
                if (property.plural != property.singular)
                    properties[property.plural].push_back({&property, true});
                break;
            }
            case EntryKind::cast: {
                auto const& cast = static_cast<CastEntry const&>(*entry);
                casts[cast.phrase].push_back(&cast);
                break;
            }
            case EntryKind::binaryOperator: {
                auto const& op = static_cast<OperatorEntry const&>(*entry);
                operators.emplace(OperatorKey(op.code, op.left, op.right), &op);
                break;
            }
            case EntryKind::cache:
                break;
        }
    }
    for (PhraseOfMany const& row : kPhrasesOfMany)
        for (std::string_view phrase : {row.singular, row.plural})
            properties.try_emplace(std::string(phrase));
    Grow(longestPhrase, properties);
    Grow(longestCastPhrase, casts);
}

TypeEntry const* Vocabulary::Type(std::string_view name) const {
    auto found = types.find(name);
    return found == types.end() ? nullptr : found->second;
}

TypeEntry const& Vocabulary::Named(Entry const& by, std::string const& name) const {
    if (TypeEntry const* type = Type(name)) return *type;
    throw UnknownType(fmt::format("{}: {}: no library registers the type \"{}\" that it names",
                                  by.library->name, by.Describe(), name));
}

void Vocabulary::RequireTypes(Entry const& entry) const {
    for (Reference const& reference : entry.References())
        if (reference.type && !reference.type->empty()) Named(entry, *reference.type);
}

void Vocabulary::RequireTypesOfProperties(std::string_view phrase) const {
    for (PropertyMatch const& match : WithPhrase(phrase)) RequireTypes(*match.entry);
}

void Vocabulary::RequireTypesOfCasts(std::string_view phrase) const {
    if (auto found = casts.find(phrase); found != casts.end())
        for (CastEntry const* cast : found->second) RequireTypes(*cast);
}

void Vocabulary::RequireTypesOfOperators(int code) const {
    for (auto const& [key, op] : operators)
        if (op->code == code) RequireTypes(*op);
}

TypeEntry const* Vocabulary::Base(TypeEntry const& type) const {
    if (type.base.empty()) return nullptr;
    TypeEntry const& base = Named(type, type.base);
    if (base.size > type.size)
        throw UnknownType(fmt::format("{}: {}: its base type \"{}\" is larger than itself",
                                      type.library->name, type.Describe(), base.name));
    return &base;
}

std::vector<TypeEntry const*> Vocabulary::Lineage(TypeEntry const* type) const {
    std::vector<TypeEntry const*> lineage{type};
    while (type && (type = Base(*type))) {
        lineage.push_back(type);
        if (lineage.size() > kLongestLineage)
            throw UnknownType(
                fmt::format("{}: {}: its base types form a ring", type->library->name, type->Describe()));
    }
    return lineage;
}

bool Vocabulary::Serves(TypeEntry const& type, TypeEntry const& wanted) const {
    std::vector<TypeEntry const*> lineage = Lineage(&type);
    return std::find(lineage.begin(), lineage.end(), &wanted) != lineage.end();
}

TypeEntry const* Vocabulary::CommonBase(TypeEntry const& left, TypeEntry const& right) const {
    for (TypeEntry const* candidate : Lineage(&left))
        if (Serves(right, *candidate)) return candidate;
    return nullptr;
}

PropertyMatch const* Vocabulary::Exactly(std::string_view phrase, std::string_view object,
                                         std::string_view index) const {
    if (auto found = properties.find(phrase); found != properties.end())
        for (PropertyMatch const& match : found->second)
            if (match.entry->object == object && match.entry->index == index) return &match;
    return nullptr;
}

std::optional<PropertyMatch> Vocabulary::FindProperty(std::string_view phrase, TypeEntry const* object,
                                                      TypeEntry const* index) const {
    auto nameOf = [](TypeEntry const* type) {
        return type ? std::string_view(type->name) : std::string_view();
    };
    for (TypeEntry const* ofObject : Lineage(object))
        for (TypeEntry const* withIndex : Lineage(index))
            if (PropertyMatch const* match = Exactly(phrase, nameOf(ofObject), nameOf(withIndex)))
                return *match;
    return std::nullopt;
}

CastEntry const* Vocabulary::FindCast(std::string_view phrase, TypeEntry const& source) const {
    auto found = casts.find(phrase);
    if (found == casts.end()) return nullptr;
    for (TypeEntry const* type : Lineage(&source))
        for (CastEntry const* cast : found->second)
            if (cast->source == type->name) return cast;
    return nullptr;
}

OperatorEntry const* Vocabulary::FindOperator(int code, TypeEntry const& left, TypeEntry const& right) const {
    std::vector<TypeEntry const*> lefts = Lineage(&left), rights = Lineage(&right);
    for (std::size_t steps = 0; steps + 1 < lefts.size() + rights.size(); ++steps)
        for (std::size_t up = 0; up <= steps; ++up) {
            if (up >= lefts.size() || steps - up >= rights.size()) continue;
            auto found = operators.find(OperatorKey(code, lefts[up]->name, rights[steps - up]->name));
            if (found != operators.end()) return found->second;
        }
    return nullptr;
}

std::size_t Vocabulary::LongestPhrase(std::vector<std::string> const& words) const {
    return LongestIn(properties, longestPhrase, words);
}

std::size_t Vocabulary::LongestCastPhrase(std::vector<std::string> const& words) const {
    return LongestIn(casts, longestCastPhrase, words);
}

std::vector<PropertyMatch> Vocabulary::WithPhrase(std::string_view phrase) const {
    auto found = properties.find(phrase);
    return found == properties.end() ? std::vector<PropertyMatch>() : found->second;
}

std::vector<PropertyEntry const*> Vocabulary::PropertiesOf(TypeEntry const* object) const {
    std::vector<PropertyEntry const*> result;
    for (TypeEntry const* type : Lineage(object))
        for (auto const& [phrase, matches] : properties)
            for (PropertyMatch const& match : matches)
                if (!match.plural && match.entry->object == (type ? std::string_view(type->name) : ""))
                    result.push_back(match.entry);
    return result;
}

std::vector<CastEntry const*> Vocabulary::CastsOf(TypeEntry const& source) const {
    std::vector<CastEntry const*> result;
    for (TypeEntry const* type : Lineage(&source))
        for (auto const& [phrase, entries] : casts)
            for (CastEntry const* cast : entries)
                if (cast->source == type->name) result.push_back(cast);
    return result;
}

}  // namespace Evaluator
