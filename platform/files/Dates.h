#pragma once

#include <Carbon/MacTypes.h>
#include <sys/stat.h>

#include <cstdint>

namespace Platform {

/// The Carbon form of a time of statx(2); times outside of 48 bits of seconds become the nearest one.
UTCDateTime CarbonTime(struct statx_timestamp time);
/// The Carbon form of seconds since 1 January 2000, universal time.
UTCDateTime CarbonTimeOfAppleDouble(std::int32_t seconds);
/// The older of two times.
struct statx_timestamp Older(struct statx_timestamp left, struct statx_timestamp right);

}  // namespace Platform
