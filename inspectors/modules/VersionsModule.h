#pragma once

#include "frame/Adapters.h"
#include "versions/Version.h"
#include "versions/VersionResource.h"

/// Versions: of texts and of files, their order and their parts. All that a version is asked depends on the
/// version alone; so do, by what they are marked as, the versions of files.
class VersionsModule {
    using Revision = Property<MacVersion, integer>;
    using ResourceOfFile = PropertyByIndexOfObject<MacVersion, integer, file>;

    TypeRecord<MacVersion> type{"version"};
    Cast<MacVersion, inspector_string> asString{"string", "version", "string", versionAsString,
                                                DependsOnlyOnParameters};
    Cast<inspector_string, MacVersion> asVersion{"version", "string", "version", stringAsVersion,
                                                 DependsOnlyOnParameters};
    RelationEqual<MacVersion, MacVersion> equal{"version", "version", DependsOnlyOnParameters};
    RelationLess<MacVersion, MacVersion> less{"version", "version", DependsOnlyOnParameters};
    RelationLessOrEqual<MacVersion, MacVersion> lessOrEqual{"version", "version", DependsOnlyOnParameters};
    RelationEqual<MacVersion, inspector_string> equalText{"version", "string", DependsOnlyOnParameters};
    RelationLess<MacVersion, inspector_string> lessText{"version", "string", DependsOnlyOnParameters};
    RelationLessOrEqual<MacVersion, inspector_string> lessOrEqualText{"version", "string",
                                                                      DependsOnlyOnParameters};
    RelationEqual<inspector_string, MacVersion> textEqual{"string", "version", DependsOnlyOnParameters};
    RelationLess<inspector_string, MacVersion> textLess{"string", "version", DependsOnlyOnParameters};
    RelationLessOrEqual<inspector_string, MacVersion> textLessOrEqual{"string", "version",
                                                                      DependsOnlyOnParameters};
    ResourceOfFile numberedOfFile{"version",
                                  "versions",
                                  "integer",
                                  "file",
                                  "version",
                                  numbered_version_of_file,
                                  DependsOnlyOnParameters};
    PropertyOfObject<MacVersion, file> ofFile{"version", "versions",      "file",
                                              "version", version_of_file, DependsOnlyOnParameters};
    Revision major{"major revision", "major revisions", "version",
                   "integer",        major_rev_of,      DependsOnlyOnParameters};
    Revision minor{"minor revision", "minor revisions", "version",
                   "integer",        minor_rev_of,      DependsOnlyOnParameters};
    Revision bug{"bug revision", "bug revisions", "version", "integer", bug_rev_of, DependsOnlyOnParameters};
    Property<MacVersion, stage> stageOf{"stage", "stages", "version",
                                        "stage", stage_of, DependsOnlyOnParameters};
    NamedGlobalProperty<MacVersion> ofText{"version", "versions", "version", version_of,
                                           DependsOnlyOnParameters};
};
