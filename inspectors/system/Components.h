#pragma once

// The components that are registered on this machine.

#include <Carbon/Components.h>

#include "Evaluator/Values.h"
#include "versions/Version.h"

/// A component, by its number. It need not be registered any more; what is asked of it fails then.
class ComponentClass {
  public:
    explicit ComponentClass(Component number) : component(number) {}
    Component Number() const { return component; }

    /// Major and minor version. NoSuchObject when the component cannot be opened.
    MacVersion theVersion() const;

  private:
    Component component;
};

// All but the version throw OSError with the platform's code when the component cannot be asked.

/// Codes of four bytes.
inspector_string maker_of(ComponentClass const& component);
inspector_string type_of(ComponentClass const& component);
inspector_string subtype_of(ComponentClass const& component);
/// Texts in UTF-8. NoSuchObject for an empty one; MemoryFullError when the platform has no memory.
inspector_string name_of(ComponentClass const& component);
inspector_string info_of(ComponentClass const& component);
MacVersion version_of(ComponentClass const& component);

/// All components, in the platform's order; NoSuchObject ends them.
class ComponentIterator {
  public:
    ComponentClass First();
    ComponentClass Next();

  private:
    Component position = 0;
};
