#pragma once

// All of the Carbon interface.

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>
#include <Carbon/Resources.h>
