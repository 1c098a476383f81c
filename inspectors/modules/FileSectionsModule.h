#pragma once

#include "content/Sections.h"
#include "frame/Adapters.h"

/// Settings files: keys and sections.
class FileSectionsModule {
    using KeyOfFile = PropertyByIndexOfObject<inspector_string, inspector_string, file>;
    using SectionOfFile = PropertyByIndexOfObject<file_section, inspector_string, file>;
    using KeyOfSection = PropertyByIndexOfObject<inspector_string, inspector_string, file_section>;

    KeyOfFile keyOfFile{"key", "keys", "string", "file", "string", key_of_file, DependsOnlyOnParameters};
    SectionOfFile section{
        "section", "sections", "string", "file", "file section", section_of_file, DependsOnlyOnParameters};
    KeyOfSection keyOfSection{
        "key", "keys", "string", "file section", "string", key_of_section, DependsOnlyOnParameters};
    TypeRecord<file_section> type{"file section"};
};
