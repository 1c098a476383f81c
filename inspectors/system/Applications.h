#pragma once

// Applications, as the platform knows them.

#include "filesystem/FileSystemObject.h"

/// The application of a creator code, which is a text of four bytes; NoSuchObject for another length. Throws
/// FileNotFoundError when there is none, and FailedToGetFileItem when its file is gone.
file application_of(unsigned char const* creator, unsigned long length);
