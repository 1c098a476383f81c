#pragma once

// Dates: moments, in seconds.

#include <CoreFoundation/CFBase.h>

typedef double CFTimeInterval;
/// Seconds since 2001-01-01 00:00:00 universal time.
typedef CFTimeInterval CFAbsoluteTime;
typedef struct __CFDate const* CFDateRef;

/// Seconds from the beginnings of 1970 and of 1904 to that of 2001, universal time.
PLATFORM_API CFTimeInterval const kCFAbsoluteTimeIntervalSince1970;
PLATFORM_API CFTimeInterval const kCFAbsoluteTimeIntervalSince1904;

/// The number of the type of dates. Two are equal when their times are.
PLATFORM_API CFTypeID CFDateGetTypeID(void);
/// The date's time. What a property list holds is passed on as it is, also when it is not finite.
PLATFORM_API CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date);
