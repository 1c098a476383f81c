#include "language/Shown.h"

#include <fmt/format.h>

#include "language/Limits.h"

namespace Evaluator {
namespace {

std::string Bytes(Value const& value) {
    auto const& text = value.As<inspector_string>();
    return std::string(text.begin(), text.end());
}

}  // namespace

Shown::Shown(Vocabulary const& vocabulary, TypeEntry const& type) : string(vocabulary.Type("string")) {
    std::set<TypeEntry const*> settled;
    SettleAll(vocabulary, type, settled);
}

// The type and all that have it as a base; of a tuple, those of its fields.
void Shown::SettleAll(Vocabulary const& vocabulary, TypeEntry const& type,
                      std::set<TypeEntry const*>& settled) {
    if (!settled.insert(&type).second) return;
    for (TypeEntry const* field : type.fields) SettleAll(vocabulary, *field, settled);
    if (!type.fields.empty()) return;
    for (auto const& entry : Registry::Instance().All()) {
        if (entry->kind != EntryKind::type) continue;
        auto const& candidate = static_cast<TypeEntry const&>(*entry);
        try {
            if (vocabulary.Serves(candidate, type)) Settle(vocabulary, candidate);
        } catch (UnknownType const&) {
            if (&candidate == &type) throw;  // another type's fault is not this query's
        }
    }
}

// A cast or a name that leads to a type which nobody registered is none.
void Shown::Settle(Vocabulary const& vocabulary, TypeEntry const& type) {
    Way way;
    way.isString = vocabulary.Serves(type, *string);
    CastEntry const* cast = vocabulary.FindCast("string", type);
    if (cast && cast->target == string->name) way.cast = cast;
    auto name = vocabulary.FindProperty("name", &type, nullptr);
    if (name && !name->plural && name->entry->kind == EntryKind::property &&
        name->entry->result == string->name)
        way.name = name->entry;
    ways.emplace(&type, way);
}

std::string Shown::Text(Evaluation& evaluation, ValueRef const& value, Range where) const {
    if (!value->type->fields.empty()) return OfFields(evaluation, *value, where);
    // A cast or a name that answers "no such object" gives way to what comes next; any other word is a
    // problem.
    auto given = [&](ValueRef const& text) {
        if (!text && evaluation.absence.kind != Absence::Kind::noSuchObject)
            throw EvaluationError{AsProblem(evaluation.absence)};
        return static_cast<bool>(text);
    };
    Way const& way = ways.at(value->type);
    if (way.cast)
        if (ValueRef text = evaluation.Convert(*way.cast, *string, value, where); given(text))
            return Bytes(*text);
    if (way.isString) return Bytes(*value);
    if (way.name)
        if (ValueRef name = evaluation.Ask(*way.name, *string, value, {}, where); given(name))
            return value->type->name + " " + Bytes(*name);
    return value->type->name;
}

std::string Shown::OfFields(Evaluation& evaluation, Value const& tuple, Range where) const {
    auto fields = static_cast<Value* const*>(tuple.Bytes());
    std::string text;
    for (std::size_t i = 0; i < tuple.type->fields.size(); ++i) {
        ++fields[i]->references;
        ValueRef field = ValueRef::Adopt(fields[i]);
        std::string shown = Text(evaluation, field, where);
        text += (i ? ", " : "") + (field->type->fields.empty() ? shown : "(" + shown + ")");
        if (text.size() > kLimits.tupleText)
            throw EvaluationError{
                {ProblemKind::limit, where,
                 fmt::format("the text of a tuple is longer than {} bytes", kLimits.tupleText),
                 "ask for fewer fields at once"}};
    }
    return text;
}

void Shown::AddLibraries(std::vector<Library*>& libraries) const {
    for (auto const& [type, way] : ways) {
        libraries.push_back(type->library);
        if (way.cast) libraries.push_back(way.cast->library);
        if (way.name) libraries.push_back(way.name->library);
    }
}

}  // namespace Evaluator
