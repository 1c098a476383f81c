#include "components/ComponentRegistry.h"

#include <limits>
#include <utility>

namespace Platform {

namespace {

bool IsAs(ComponentDescription const& is, ComponentDescription const& looking) {
    auto const fits = [](OSType code, OSType wanted) { return wanted == 0 || code == wanted; };
    UInt32 const differing = (is.componentFlags ^ looking.componentFlags) & looking.componentFlagsMask;
    return fits(is.componentType, looking.componentType) &&
           fits(is.componentSubType, looking.componentSubType) &&
           fits(is.componentManufacturer, looking.componentManufacturer) && differing == 0;
}

}  // namespace

ComponentRegistry& ComponentRegistry::Shared() {
    static ComponentRegistry& registry = *new ComponentRegistry;
    return registry;
}

void ComponentRegistry::Set(std::vector<NamedComponent> found) {
    std::lock_guard const lock(mutex);
    std::map<Component, NamedComponent> newComponents;
    std::map<ComponentPlace, Component> newNumbers;
    Component newest = last;
    for (NamedComponent& component : found) {
        auto const known = numbers.find(component.place);
        // Numbers are never used again, so they may come to an end.
        if (known == numbers.end() && newest == std::numeric_limits<Component>::max()) continue;
        Component const number = known != numbers.end() ? known->second : ++newest;
        newNumbers.emplace(component.place, number);
        newComponents.emplace(number, std::move(component));
    }
    components.swap(newComponents);
    numbers.swap(newNumbers);
    last = newest;
}

Component ComponentRegistry::FindBehind(Component previous, ComponentDescription const& looking) {
    std::lock_guard const lock(mutex);
    for (auto next = components.upper_bound(previous); next != components.end(); ++next) {
        if (IsAs(next->second.description, looking)) return next->first;
    }
    return 0;
}

std::optional<NamedComponent> ComponentRegistry::Find(Component component) {
    std::lock_guard const lock(mutex);
    auto const found = components.find(component);
    return found == components.end() ? std::nullopt : std::optional(found->second);
}

ComponentInstance ComponentRegistry::Open(Component component) {
    std::lock_guard const lock(mutex);
    auto const found = components.find(component);
    if (found == components.end()) return nullptr;
    auto const instance = reinterpret_cast<ComponentInstance>(++lastInstance);
    instances.emplace(instance, found->second.version);
    return instance;
}

bool ComponentRegistry::Close(ComponentInstance instance) {
    std::lock_guard const lock(mutex);
    return instances.erase(instance) != 0;
}

std::optional<UInt32> ComponentRegistry::VersionOf(ComponentInstance instance) {
    std::lock_guard const lock(mutex);
    auto const found = instances.find(instance);
    return found == instances.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace Platform
