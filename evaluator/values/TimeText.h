#pragma once

// Times and durations as text, and times from text. Internal to the host.

#include <optional>
#include <string>

#include "Evaluator/Time.h"

namespace Evaluator {

/// ISO 8601 text of the time with the offset of Evaluator::LocalOffset: `2026-11-20T12:00:00+00:00`, with six
/// more digits behind the seconds when the microseconds are not zero, and seconds in the offset when it has
/// some. Years before 0 and after 9999 have a sign; no year has fewer than four digits.
EVALUATOR_API std::string TimeText(moment const& time);

/// The time that ISO 8601 text names, or nothing when the text is not of this form or the time is out of
/// range:
///
///     [+|-]YYYY-MM-DD[(T| )hh:mm[:ss[(.|,)f…]][Z|(+|-)hh[[:]mm[[:]ss]]]]
///
/// Without an offset, and as a bare date (which is the midnight that begins it), the time is universal. A
/// year of more than four digits has a sign. Digits behind the sixth of a fraction are dropped.
EVALUATOR_API std::optional<moment> ParseTime(ConstData text);

/// `[-][N days, ]HH:MM:SS[.ffffff]`; the days are left out when there are none, the fraction when it is zero.
EVALUATOR_API std::string IntervalText(time_interval const& duration);

}  // namespace Evaluator
