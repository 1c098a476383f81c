#pragma once

// Versions that files hold in their resource forks.
//
// A resource of the type 'vers' begins with
//
//   0  major revision, two decimal digits of four bits
//   1  minor revision and bug revision, four bits each
//   2  stage
//   3  number within the stage, a plain binary number
//
// What follows, a region and two texts, is not read.

#include "Evaluator/Values.h"
#include "filesystem/FileSystemObject.h"
#include "versions/Version.h"

/// The version that the file's resource of that number holds; the file's own has the number 1. NoSuchObject
/// when the number is none of a resource, the file has no resource fork or no such resource, and when the
/// fork makes no sense, cannot be read or ends too early; OSError with the platform's code where it cannot be
/// told whether there is one. Leaves the current resource file as it was.
MacVersion versionRes_of_file(integer const& number, Of, file const& object);
MacVersion numbered_version_of_file(integer const& number, Of, file const& object);
MacVersion version_of_file(Of, file const& object);
