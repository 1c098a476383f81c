#include "propertylists/PropertyLists.h"

namespace Platform {

CFPropertyListRef ReadTextPropertyList(std::string_view) { throw PropertyListError("not yet"); }

}  // namespace Platform
