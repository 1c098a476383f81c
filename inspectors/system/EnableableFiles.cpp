#include "system/EnableableFiles.h"

boolean enabled_of(EnableableFile const& item) { return item.isEnabled; }
boolean disabled_of(EnableableFile const& item) { return !item.isEnabled; }
