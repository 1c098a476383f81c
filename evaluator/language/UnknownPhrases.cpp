#include "language/UnknownPhrases.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "language/Signs.h"
#include "language/Suggestions.h"
#include "registry/PhrasesOfMany.h"

namespace Evaluator {
namespace {

Problem Unknown(Range range, std::string message, std::string hint = {}) {
    return {ProblemKind::meaning, range, std::move(message), std::move(hint)};
}

// An unknown phrase may be as long as a query.
std::string Shortened(std::string const& phrase) {
    constexpr std::size_t enough = 80;
    return phrase.size() <= enough ? phrase : phrase.substr(0, enough) + "…";
}

// "no index", "a string as index": what the phrase of that object takes. Empty when it does not have it.
std::string IndexesOf(Vocabulary const& vocabulary, std::string const& phrase, TypeEntry const* object) {
    std::vector<std::string> takes;
    for (PropertyMatch const& match : vocabulary.WithPhrase(phrase)) {
        bool has = object ? !match.entry->object.empty() &&
                                vocabulary.Serves(*object, *vocabulary.Type(match.entry->object))
                          : match.entry->object.empty();
        if (!has) continue;
        takes.push_back(match.entry->index.empty()
                            ? "no index"
                            : WithArticle(*vocabulary.Type(match.entry->index)) + " as index");
    }
    std::sort(takes.begin(), takes.end());
    return fmt::format("{}", fmt::join(takes, ", or "));
}

std::vector<std::string> OwnersOf(Vocabulary const& vocabulary, Limits const& limits,
                                  std::string const& phrase) {
    std::vector<std::string> owners;
    for (PropertyMatch const& match : vocabulary.WithPhrase(phrase))
        owners.push_back(match.entry->object.empty() ? "the world"
                                                     : WithArticle(*vocabulary.Type(match.entry->object)));
    std::sort(owners.begin(), owners.end());
    owners.erase(std::unique(owners.begin(), owners.end()), owners.end());
    if (owners.size() > limits.suggestions) owners.resize(limits.suggestions);
    return owners;
}

// The phrases that the object has with an index of the type (null: none), iterated ones as less likely. Those
// that take another index, and those that every plural has, are worth a word only when they are near.
std::vector<Suggestion> PhrasesOf(Vocabulary const& vocabulary, TypeEntry const* object,
                                  TypeEntry const* index, std::string_view text) {
    std::string_view const indexName = index ? std::string_view(index->name) : "";
    std::vector<Suggestion> phrases;
    for (PropertyEntry const* entry : vocabulary.PropertiesOf(object))
        if (Alternatives forms{entry->singular, entry->plural};
            entry->index == indexName || IsNear(text, forms))
            phrases.push_back({std::move(forms), !entry->IsIterated()});
    for (PhraseOfMany const& row : kPhrasesOfMany)
        if (Alternatives forms{std::string(row.singular), std::string(row.plural)};
            object && IsNear(text, forms))
            phrases.push_back({std::move(forms)});
    return phrases;
}

}  // namespace

Problem UnknownPhrase(Vocabulary const& vocabulary, Limits const& limits, Syntax const& syntax,
                      TypeEntry const* object, TypeEntry const* index) {
    vocabulary.RequireTypesOfProperties(syntax.text);
    if (object && !object->fields.empty())
        return Unknown(syntax.sign, "a tuple has no properties",
                       "ask its fields instead, in a step in parentheses");
    std::string owner = object ? WithArticle(*object) : "the world";
    if (std::string takes = IndexesOf(vocabulary, syntax.text, object); !takes.empty())
        return Unknown(syntax.sign, fmt::format("\"{}\" of {} takes {}", syntax.text, owner, takes));
    std::vector<std::string> owners = OwnersOf(vocabulary, limits, syntax.text);
    if (!object && !owners.empty())
        return Unknown(syntax.sign, fmt::format("\"{}\" of what?", syntax.text),
                       fmt::format("it is a property of {}", JoinWithAnd(owners)));
    std::string message = fmt::format("{} has no property \"{}\"", owner, Shortened(syntax.text));
    if (index) message += fmt::format(" with {} as index", WithArticle(*index));
    std::string hint = owners.empty()
                           ? SuggestNearest(syntax.text, PhrasesOf(vocabulary, object, index, syntax.text),
                                            limits.suggestions)
                           : fmt::format("it is a property of {}", JoinWithAnd(owners));
    return Unknown(syntax.sign, std::move(message), std::move(hint));
}

Problem UnknownCast(Vocabulary const& vocabulary, Limits const& limits, Syntax const& syntax,
                    TypeEntry const& source) {
    vocabulary.RequireTypesOfCasts(syntax.text);
    TypeEntry const* const target = vocabulary.Type(syntax.text);
    if (target && vocabulary.Serves(source, *target))
        return Unknown(syntax.sign, fmt::format("this is {} already", WithArticle(*target)));
    std::vector<Suggestion> casts;
    if (source.fields.empty())
        for (CastEntry const* cast : vocabulary.CastsOf(source)) casts.push_back({{cast->phrase}});
    return Unknown(syntax.sign,
                   fmt::format("{} has no cast \"{}\"", WithArticle(source), Shortened(syntax.text)),
                   SuggestNearest(syntax.text, std::move(casts), limits.suggestions));
}

}  // namespace Evaluator
