#include "language/Shown.h"

namespace Evaluator {
namespace {

std::string Bytes(Value const& value) {
    auto const& text = value.As<inspector_string>();
    return std::string(text.begin(), text.end());
}

}  // namespace

Shown::Shown(Vocabulary const& vocabulary, TypeEntry const& type) : string(vocabulary.Type("string")) {
    for (TypeEntry const* field : type.fields) {
        Shown shown(vocabulary, *field);
        ways.merge(shown.ways);
    }
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

void Shown::Settle(Vocabulary const& vocabulary, TypeEntry const& type) {
    Way way;
    way.isString = vocabulary.Serves(type, *string);
    CastEntry const* cast = vocabulary.FindCast("string", type);
    if (cast && vocabulary.Result(*cast) == string) way.cast = cast;
    for (PropertyMatch const& match : vocabulary.FindProperty("name", &type, nullptr))
        if (!match.plural && match.entry->kind == EntryKind::property &&
            vocabulary.Result(*match.entry) == string)
            way.name = match.entry;
    ways.emplace(&type, way);
}

std::string Shown::Text(Evaluation& evaluation, ValueRef const& value, Range where) const {
    if (!value->type->fields.empty()) {
        auto fields = static_cast<Value* const*>(static_cast<Value const&>(*value).Bytes());
        std::string text;
        for (std::size_t i = 0; i < value->type->fields.size(); ++i) {
            ++fields[i]->references;
            ValueRef field = ValueRef::Adopt(fields[i]);
            std::string shown = Text(evaluation, field, where);
            text += (i ? ", " : "") + (field->type->fields.empty() ? shown : "(" + shown + ")");
        }
        return text;
    }
    Way const& way = ways.at(value->type);
    if (way.cast)
        if (ValueRef text = evaluation.Convert(*way.cast, *string, value, where)) return Bytes(*text);
    if (way.isString) return Bytes(*value);
    if (way.name)
        if (ValueRef name = evaluation.Ask(*way.name, *string, value, {}, where))
            return value->type->name + " " + Bytes(*name);
    return value->type->name;
}

void Shown::AddLibraries(std::vector<Library*>& libraries) const {
    for (auto const& [type, way] : ways) {
        libraries.push_back(type->library);
        if (way.cast) libraries.push_back(way.cast->library);
        if (way.name) libraries.push_back(way.name->library);
    }
}

}  // namespace Evaluator
