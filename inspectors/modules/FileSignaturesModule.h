#pragma once

#include "filesystem/FileCodes.h"
#include "frame/Adapters.h"

/// The codes of creators.
class FileSignaturesModule {
    TypeRecord<file_signature> type{"file signature"};
    NamedGlobalProperty<file_signature> named{"file signature", "file signatures", "file signature",
                                              file_signature_of};
    RelationEqual<file_signature, file_signature> equal{"file signature", "file signature"};
};
