#include "language/Shown.h"

#include <fmt/format.h>

#include "values/TimeText.h"
#include "values/Tuples.h"

namespace Evaluator {
namespace {

std::string_view Bytes(Value const& value) {
    auto const& text = value.As<inspector_string>();
    return {reinterpret_cast<char const*>(text.bytes), text.length};
}

// What a program can make of the core's own types.
ValueKind KindOf(TypeEntry const& type) {
    constexpr std::pair<std::string_view, ValueKind> kinds[] = {{"string", ValueKind::string},
                                                                {"integer", ValueKind::integer},
                                                                {"boolean", ValueKind::boolean},
                                                                {"time", ValueKind::time},
                                                                {"time interval", ValueKind::interval}};
    for (auto const& [name, kind] : kinds)
        if (type.name == name) return kind;
    return ValueKind::other;
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
    way.kind = KindOf(type);
    way.isString = vocabulary.Serves(type, *string);
    CastEntry const* cast = vocabulary.FindCast("string", type);
    if (cast && cast->target == string->name) way.cast = cast;
    auto name = vocabulary.FindProperty("name", &type, nullptr);
    if (name && !name->plural && name->entry->kind == EntryKind::property &&
        name->entry->result == string->name)
        way.name = name->entry;
    ways.emplace(&type, way);
}

void Shown::Show(Evaluation& evaluation, ValueRef const& value, Range where, Result& result) const {
    result.value = value.Get();
    result.fields.clear();
    result.number = 0;
    if (!value->type->fields.empty()) return ShowFields(evaluation, *value, where, result);
    Way const& way = ways.at(value->type);
    result.kind = way.kind;
    switch (way.kind) {
        case ValueKind::string:
            result.text = Bytes(*value);
            break;
        case ValueKind::integer:
            result.number = value->As<integer>();
            result.text = fmt::format_int(result.number).c_str();
            break;
        case ValueKind::boolean:
            result.number = value->As<boolean>();
            result.text = result.number ? "true" : "false";
            break;
        case ValueKind::time:
            result.number = value->As<moment>().SinceEpoch().microseconds;
            result.text = TimeText(value->As<moment>());
            break;
        case ValueKind::interval:
            result.number = value->As<time_interval>().Microseconds();
            result.text = IntervalText(value->As<time_interval>());
            break;
        default:
            ShowOther(evaluation, value, way, where, result);
    }
}

void Shown::ShowOther(Evaluation& evaluation, ValueRef const& value, Way const& way, Range where,
                      Result& result) const {
    // A cast or a name that answers "no such object" gives way to what comes next; any other word is a
    // problem.
    auto given = [&](ValueRef const& text) {
        if (!text && evaluation.absence.kind != Absence::Kind::noSuchObject)
            throw EvaluationError{AsProblem(evaluation.absence)};
        return static_cast<bool>(text);
    };
    if (way.cast)
        if (ValueRef text = evaluation.Convert(*way.cast, *string, value, where); given(text)) {
            result.text = Bytes(*text);
            return;
        }
    if (way.isString) {
        result.text = Bytes(*value);
        return;
    }
    ValueRef name;
    if (way.name) name = evaluation.Ask(*way.name, *string, value, {}, where);
    result.text = value->type->name;
    if (way.name && given(name)) result.text.append(" ").append(Bytes(*name));
}

void Shown::ShowFields(Evaluation& evaluation, Value const& tuple, Range where, Result& result) const {
    std::size_t const count = tuple.type->fields.size();
    result.kind = ValueKind::tuple;
    result.fields.resize(count, Result());
    std::size_t length = 0;
    for (std::size_t i = 0; i < count; ++i) {
        Result& field = result.fields[i];
        field.query = result.query;
        Show(evaluation, FieldOf(tuple, i), where, field);
        length += field.text.size() + 2;
        if (length > evaluation.limits.textBytes)
            throw EvaluationError{
                {ProblemKind::limit, where,
                 fmt::format("the text of a tuple is longer than {} bytes", evaluation.limits.textBytes),
                 "ask for fewer fields at once"}};
    }
    result.text.clear();
    result.text.reserve(length);
    for (std::size_t i = 0; i < count; ++i) {
        Result const& field = result.fields[i];
        result.text += i ? ", " : "";
        result.text += field.kind == ValueKind::tuple ? "(" + field.text + ")" : field.text;
    }
}

void Shown::AddLibraries(std::vector<Library*>& libraries) const {
    for (auto const& [type, way] : ways) {
        libraries.push_back(type->library);
        if (way.cast) libraries.push_back(way.cast->library);
        if (way.name) libraries.push_back(way.name->library);
    }
}

}  // namespace Evaluator
