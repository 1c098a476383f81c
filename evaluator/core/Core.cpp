#include "core/Core.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <deque>

#include "core/Rows.h"
#include "registry/Registry.h"

namespace Evaluator {
namespace {

// Records that live as long as the process; their addresses are the registrations' identities.
struct alignas(std::max_align_t) Record {
    unsigned char hostArea[kTypeRecordSize];
};
void* NewRecord() {
    static std::deque<Record> records;
    return &records.emplace_back();
}

void RegisterTypes(std::span<TypeRow const> rows) {
    for (TypeRow const& row : rows) {
        if (!Register_Type(NewRecord(), kTypeRecordSize, row.name, row.size, nullptr, "", nullptr)) continue;
        auto& type = static_cast<TypeEntry&>(*Registry::Instance().All().back());
        type.isString = row.isString;
        type.selfContained = !row.isString;
        type.order = row.order;
        type.hash = row.hash;
    }
}

void RegisterProperties(std::span<PropertyRow const> rows) {
    for (PropertyRow const& row : rows)
        Register_Property(NewRecord(), kPropertyRecordSize, row.singular, row.plural, row.index, row.object,
                          row.result, row.function, nullptr, nullptr);
}

void RegisterIterated(std::span<IteratedRow const> rows) {
    for (IteratedRow const& row : rows)
        Register_Iterated_Property(NewRecord(), kPropertyRecordSize, row.singular, row.plural, row.index,
                                   row.object, row.result, row.stateSize, row.construct, row.destroy,
                                   row.first, row.next, nullptr, nullptr);
}

void RegisterCasts(std::span<CastRow const> rows) {
    for (CastRow const& row : rows)
        Register_Cast(NewRecord(), kCastRecordSize, row.phrase, row.source, row.target, row.function, nullptr,
                      nullptr);
}

void RegisterOperators(std::span<OperatorRow const> rows) {
    for (OperatorRow const& row : rows)
        Register_Binary_Operator(NewRecord(), kBinaryOperatorRecordSize, row.code, row.left, row.right,
                                 row.result, row.function, nullptr, nullptr);
}

void RegisterAll() {
    for (CorePart const& part : {Texts(), Numbers(), Times(), VocabularyItself()}) {
        RegisterTypes(part.types);
        RegisterProperties(part.properties);
        RegisterIterated(part.iterated);
        RegisterCasts(part.casts);
        RegisterOperators(part.operators);
    }
}

bool RegisterOnce() {
    static Library core{"core", "", nullptr, 0};
    Registry& registry = Registry::Instance();
    {
        Registry::Turn turn(registry, core);
        RegisterAll();
    }
    for (std::string const& problem : registry.TakeProblems()) {
        std::fprintf(stderr, "%s\n", problem.c_str());  // a fault in the tables
        std::abort();
    }
    return true;
}

}  // namespace

void RegisterCore() { [[maybe_unused]] static bool const once = RegisterOnce(); }

}  // namespace Evaluator
