#pragma once

#include "frame/Adapters.h"
#include "system/SpecialItems.h"

/// Extensions, control panels, startup and shutdown items: all, those that are on, those that are off, and by
/// their names.
class SpecialItemsModule {
    template <OSType enabledType, OSType disabledType>
    using Items = IteratedPropertyOfWorld<SpecialItemIterator<enabledType, disabledType>, EnableableFile>;
    template <OSType enabledType, OSType disabledType>
    using Named =
        IteratedNamedGlobalProperty<NamedSpecialItemIterator<enabledType, disabledType>, EnableableFile>;
    using One = NamedGlobalProperty<EnableableFile>;
    using Walk = SpecialItemIteratorBase;

    Items<kExtensions, kDisabledExtensions> extensions{"extension", "extensions", "enableable_file",
                                                       &Walk::First, &Walk::Next};
    Items<kControlPanels, kDisabledControlPanels> controlPanels{"control panel", "control panels",
                                                                "enableable_file", &Walk::First, &Walk::Next};
    Items<kStartupItems, kDisabledStartupItems> startupItems{"startup item", "startup items",
                                                             "enableable_file", &Walk::First, &Walk::Next};
    Items<kShutdownItems, kDisabledShutdownItems> shutdownItems{"shutdown item", "shutdown items",
                                                                "enableable_file", &Walk::First, &Walk::Next};

    Items<kExtensions, kDisabledExtensions> enabledExtensions{"enabled extension", "enabled extensions",
                                                              "enableable_file", &Walk::FirstEnabled,
                                                              &Walk::NextEnabled};
    Items<kControlPanels, kDisabledControlPanels> enabledControlPanels{
        "enabled control panel", "enabled control panels", "enableable_file", &Walk::FirstEnabled,
        &Walk::NextEnabled};
    Items<kStartupItems, kDisabledStartupItems> enabledStartupItems{
        "enabled startup item", "enabled startup items", "enableable_file", &Walk::FirstEnabled,
        &Walk::NextEnabled};
    Items<kShutdownItems, kDisabledShutdownItems> enabledShutdownItems{
        "enabled shutdown item", "enabled shutdown items", "enableable_file", &Walk::FirstEnabled,
        &Walk::NextEnabled};

    Items<kExtensions, kDisabledExtensions> disabledExtensions{"disabled extension", "disabled extensions",
                                                               "enableable_file", &Walk::FirstDisabled,
                                                               &Walk::NextDisabled};
    Items<kControlPanels, kDisabledControlPanels> disabledControlPanels{
        "disabled control panel", "disabled control panels", "enableable_file", &Walk::FirstDisabled,
        &Walk::NextDisabled};
    Items<kStartupItems, kDisabledStartupItems> disabledStartupItems{
        "disabled startup item", "disabled startup items", "enableable_file", &Walk::FirstDisabled,
        &Walk::NextDisabled};
    Items<kShutdownItems, kDisabledShutdownItems> disabledShutdownItems{
        "disabled shutdown item", "disabled shutdown items", "enableable_file", &Walk::FirstDisabled,
        &Walk::NextDisabled};

    Named<kExtensions, kDisabledExtensions> extensionsNamed{"extension", "extensions", "enableable_file"};
    Named<kControlPanels, kDisabledControlPanels> controlPanelsNamed{"control panel", "control panels",
                                                                     "enableable_file"};
    Named<kStartupItems, kDisabledStartupItems> startupItemsNamed{"startup item", "startup items",
                                                                  "enableable_file"};
    Named<kShutdownItems, kDisabledShutdownItems> shutdownItemsNamed{"shutdown item", "shutdown items",
                                                                     "enableable_file"};

    One enabledExtension{"enabled extension", "enabled extensions", "enableable_file", Neex};
    One enabledControlPanel{"enabled control panel", "enabled control panels", "enableable_file", Necp};
    One enabledStartupItem{"enabled startup item", "enabled startup items", "enableable_file", Nest};
    One enabledShutdownItem{"enabled shutdown item", "enabled shutdown items", "enableable_file", Nesd};
    One disabledExtension{"disabled extension", "disabled extensions", "enableable_file", Ndex};
    One disabledControlPanel{"disabled control panel", "disabled control panels", "enableable_file", Ndcp};
    One disabledStartupItem{"disabled startup item", "disabled startup items", "enableable_file", Ndst};
    One disabledShutdownItem{"disabled shutdown item", "disabled shutdown items", "enableable_file", Ndsd};
};
