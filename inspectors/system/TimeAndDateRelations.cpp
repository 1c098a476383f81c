// The relations of times of day and of dates, none of which ever returns: each is defined as itself, so a
// comparison goes on until the stack that it runs on is exhausted. That they are registered, and that no
// order of these types is defined anywhere, is part of what users may rely on.
//
// The calls have to be real ones. An optimiser would make a loop of them, which would hang instead; so this
// file is compiled without the optimisation of calls at the end of a function (sources.cmake beside it), and
// nothing else is in it.

#include "system/TimeAndDate.h"

#pragma GCC diagnostic ignored "-Winfinite-recursion"

bool operator==(thetime const& left, thetime const& right) { return left == right; }
bool operator<(thetime const& left, thetime const& right) { return left < right; }
bool operator<=(thetime const& left, thetime const& right) { return left <= right; }
bool operator==(date const& left, date const& right) { return left == right; }
bool operator<(date const& left, date const& right) { return left < right; }
bool operator<=(date const& left, date const& right) { return left <= right; }
