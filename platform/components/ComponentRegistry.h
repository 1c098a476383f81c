#pragma once

// The components that are registered in this process: what was seen of them last, by their numbers.

#include <Carbon/Components.h>

#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "components/ComponentBundles.h"

namespace Platform {

/// Safe from any thread.
class ComponentRegistry {
  public:
    static ComponentRegistry& Shared();

    /// Makes components all that are registered. Those whose places are known keep their numbers; new ones
    /// get new numbers in their order; those that are gone are forgotten.
    void Set(std::vector<NamedComponent> found);
    /// The first one behind a number that is as described; 0 when there is none.
    Component FindBehind(Component previous, ComponentDescription const& looking);
    std::optional<NamedComponent> Find(Component component);

    /// Instances, which are numbered and never looked through. None for what is no component.
    ComponentInstance Open(Component component);
    bool Close(ComponentInstance instance);
    /// The version of the component then; empty for no instance.
    std::optional<UInt32> VersionOf(ComponentInstance instance);

  private:
    std::mutex mutex;
    std::map<Component, NamedComponent> components;
    std::map<ComponentPlace, Component> numbers;
    Component last = 0;
    std::map<ComponentInstance, UInt32> instances;
    std::uintptr_t lastInstance = 0;
};

}  // namespace Platform
