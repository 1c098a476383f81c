// The functions of components: the edge of the interface.

#include "components/ComponentRegistry.h"
#include "files/FileFailure.h"
#include "foundation/Object.h"
#include "memory/Handles.h"

using namespace Platform;

namespace {

// Puts a text with its length byte into a block, where one is wanted.
OSErr Fill(Handle handle, std::string const& text) {
    if (handle == nullptr) return noErr;
    return FillHandle(handle, static_cast<char>(text.size()) + text);
}

OSErr GetInfo(Component component, ComponentDescription* description, Handle name, Handle info, Handle icon) {
    auto const found = ComponentRegistry::Shared().Find(component);
    if (!found) return invalidComponentID;
    for (Handle const handle : {name, info, icon}) {
        OSErr const error = handle == nullptr ? OSErr{noErr} : CheckHandle(handle);
        if (error != noErr) return error;
    }
    if (description != nullptr) *description = found->description;
    OSErr error = Fill(name, found->name);
    if (error == noErr) error = Fill(info, found->info);
    if (error == noErr && icon != nullptr) error = FillHandle(icon, {});
    return error;
}

}  // namespace

Component FindNextComponent(Component previous, ComponentDescription const* looking) {
    return Guarded<Component>(0, [&]() -> Component {
        ComponentRegistry& registry = ComponentRegistry::Shared();
        if (previous == 0) {
            std::vector<NamedComponent> components;
            if (ListComponents(components) != noErr) return 0;
            registry.Set(std::move(components));
        }
        Component const found =
            registry.FindBehind(previous, looking != nullptr ? *looking : ComponentDescription{});
        // What could not be read is of interest only where nothing is found.
        if (previous == 0 && found != 0) ForgetFileFailure();
        return found;
    });
}

OSErr GetComponentInfo(Component component, ComponentDescription* description, Handle name, Handle info,
                       Handle icon) {
    return Guarded<OSErr>(memFullErr, [&] { return GetInfo(component, description, name, info, icon); });
}

ComponentInstance OpenComponent(Component component) {
    return Guarded<ComponentInstance>(nullptr, [&] { return ComponentRegistry::Shared().Open(component); });
}

OSErr CloseComponent(ComponentInstance instance) {
    return ComponentRegistry::Shared().Close(instance) ? noErr : invalidComponentID;
}

SInt32 GetComponentVersion(ComponentInstance instance) {
    auto const version = ComponentRegistry::Shared().VersionOf(instance);
    return version ? static_cast<SInt32>(*version) : SInt32{badComponentInstance};
}
