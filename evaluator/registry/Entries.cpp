#include "registry/Entries.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "registry/PhrasesOfMany.h"
#include "registry/Words.h"

namespace Evaluator {
namespace {

std::string Quoted(std::string_view text) { return fmt::format("\"{}\"", text); }

std::string OfObject(std::string_view object) {
    return object.empty() ? std::string(" of the world") : " of " + Quoted(object);
}

bool IsContractCode(int code) {
    constexpr std::array codes{kOperatorPlus,  kOperatorMinus, kOperatorTimes,       kOperatorDividedBy,
                               kRelationEqual, kRelationLess,  kRelationLessOrEqual, kRelationContains};
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

}  // namespace

std::string NormalPhrase(std::string_view phrase) {
    std::string result;
    result.reserve(phrase.size());
    bool gap = false;
    for (char c : phrase) {
        if (IsBlank(c)) {
            gap = !result.empty();
        } else {
            if (std::exchange(gap, false)) result += ' ';
            result += LowerCaseLetter(c);
        }
    }
    return result;
}

// ---- Types

std::string TypeEntry::Describe() const { return "type " + Quoted(name); }

std::array<std::string, 2> TypeEntry::Identities() const { return {"type|" + name}; }

RegistrationInfo TypeEntry::Info() const {
    RegistrationInfo info;
    info.kind = "type";
    info.singular = name;
    info.base = base;
    info.size = size;
    info.fingerprint = fingerprint != nullptr;
    return info;
}

// ---- Properties

std::string PropertyEntry::Describe() const {
    std::string withIndex = index.empty() ? "" : fmt::format(" with index \"{}\"", index);
    return (IsIterated() ? "iterated property " : "property ") + Quoted(singular) + withIndex +
           OfObject(object);
}

std::array<std::string, 2> PropertyEntry::Identities() const {
    std::string where = "|" + index + "|" + object;
    return {"property|" + singular + where, singular == plural ? "" : "property|" + plural + where};
}

bool PropertyEntry::HasItsFunctions() const {
    return first && (!IsIterated() || (next && construct && destroy));
}

std::string PropertyEntry::Fault() const {
    for (std::string const* phrase : Phrases())
        if (FindPhraseOfMany(*phrase)) return Quoted(*phrase) + " is a phrase of the language itself";
    return {};
}

RegistrationInfo PropertyEntry::Info() const {
    RegistrationInfo info;
    info.kind = IsIterated() ? "iterated" : "property";
    info.singular = singular;
    info.plural = plural;
    info.index = index;
    info.object = object;
    info.result = result;
    if (IsIterated()) info.stateSize = stateSize;
    info.dependsOnlyOnParameters = dependency != nullptr;
    return info;
}

// ---- Casts

std::string CastEntry::Describe() const { return "cast " + Quoted(phrase) + OfObject(source); }

std::array<std::string, 2> CastEntry::Identities() const { return {"cast|" + phrase + "|" + source}; }

std::string CastEntry::Fault() const {
    return source == target && phrase == target ? "a type is not cast to itself" : "";
}

RegistrationInfo CastEntry::Info() const {
    RegistrationInfo info;
    info.kind = "cast";
    info.singular = phrase;
    info.object = source;
    info.result = target;
    info.dependsOnlyOnParameters = dependency != nullptr;
    return info;
}

// ---- Operators

std::string OperatorEntry::Describe() const {
    return fmt::format("operator {} of \"{}\" and \"{}\"", code, left, right);
}

std::array<std::string, 2> OperatorEntry::Identities() const {
    return {fmt::format("operator|{}|{}|{}", code, left, right)};
}

std::string OperatorEntry::Fault() const {
    if (library->IsCore()) return {};
    if (!IsContractCode(code)) return "there is no operator of that code";
    return code >= kRelationEqual && result != "boolean" ? "the result of a relation is a boolean" : "";
}

RegistrationInfo OperatorEntry::Info() const {
    RegistrationInfo info;
    info.kind = "operator";
    info.operatorCode = code;
    info.left = left;
    info.right = right;
    info.result = result;
    info.dependsOnlyOnParameters = dependency != nullptr;
    return info;
}

// ---- Caches

RegistrationInfo CacheEntry::Info() const {
    RegistrationInfo info;
    info.kind = "cache";
    return info;
}

}  // namespace Evaluator
