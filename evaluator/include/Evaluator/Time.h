#pragma once

// Points in time, durations and calendar dates.

#include <cstdint>

#include "Evaluator/Values.h"

class Buffer;

/// Microseconds since 1 January 1970, universal time.
struct Instant {
    std::int64_t microseconds = 0;
};

/// A signed duration. Opaque to inspector libraries, which handle it through the operators below.
class time_interval {
  public:
    constexpr time_interval() = default;
    constexpr explicit time_interval(std::int64_t count) : microseconds(count) {}
    constexpr std::int64_t Microseconds() const { return microseconds; }

  private:
    std::int64_t microseconds = 0;
};

/// The language's "time": an absolute point in time, to the microsecond. Opaque to inspector libraries.
class moment {
  public:
    constexpr moment() = default;
    constexpr explicit moment(Instant since1970) : instant(since1970) {}
    constexpr Instant SinceEpoch() const { return instant; }

  private:
    Instant instant;
};
