#include "registry/Registrations.h"

#include "registry/Registry.h"

namespace Evaluator {
namespace {

void Fill(RegistrationInfo& info, TypeEntry const& type) {
    info.kind = "type";
    info.singular = type.name;
    info.base = type.base;
    info.size = type.size;
    info.fingerprint = type.fingerprint != nullptr;
}

void Fill(RegistrationInfo& info, PropertyEntry const& property) {
    bool iterated = property.kind == EntryKind::iterated;
    info.kind = iterated ? "iterated" : "property";
    info.singular = property.singular;
    info.plural = property.plural;
    info.index = property.index;
    info.object = property.object;
    info.result = property.result;
    if (iterated) info.stateSize = property.stateSize;
    info.dependsOnlyOnParameters = property.dependency != nullptr;
}

void Fill(RegistrationInfo& info, CastEntry const& cast) {
    info.kind = "cast";
    info.singular = cast.phrase;
    info.object = cast.source;
    info.result = cast.target;
    info.dependsOnlyOnParameters = cast.dependency != nullptr;
}

void Fill(RegistrationInfo& info, OperatorEntry const& op) {
    info.kind = "operator";
    info.operatorCode = op.code;
    info.left = op.left;
    info.right = op.right;
    info.result = op.result;
    info.dependsOnlyOnParameters = op.dependency != nullptr;
}

RegistrationInfo InfoOf(Entry const& entry) {
    RegistrationInfo info;
    info.library = entry.library->name;
    switch (entry.kind) {
        case EntryKind::type:
            Fill(info, static_cast<TypeEntry const&>(entry));
            break;
        case EntryKind::property:
        case EntryKind::iterated:
            Fill(info, static_cast<PropertyEntry const&>(entry));
            break;
        case EntryKind::cast:
            Fill(info, static_cast<CastEntry const&>(entry));
            break;
        case EntryKind::binaryOperator:
            Fill(info, static_cast<OperatorEntry const&>(entry));
            break;
        case EntryKind::cache:
            info.kind = "cache";
            break;
    }
    return info;
}

}  // namespace

std::vector<RegistrationInfo> LoadedRegistrations() {
    std::vector<RegistrationInfo> infos;
    for (auto const& entry : Registry::Instance().All())
        if (!entry->library->IsCore()) infos.push_back(InfoOf(*entry));
    return infos;
}

}  // namespace Evaluator
