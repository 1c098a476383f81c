#pragma once

// The adapters between the host's untyped calls and the typed inspectors.
//
// An inspector is an ordinary typed function, such as `integer hour_of(moment const&)`. To offer it to the
// host, declare a record: an object of one of these templates. Its constructor registers and its destructor
// withdraws, and the host's calls find the inspector again in the record. A module is a class whose members
// are its records in the order in which they are registered; ending it withdraws them in the opposite order.
//
//     class ClockModule {
//         TypeRecord<thetime> hours{"hours"};
//         Property<moment, thetime> time{"time", "times", "time", "hours", time_of};
//         RelationEqual<thetime, thetime> equal{"hours", "hours"};
//     };
//
// A call costs one indirect call: no look-up, no memory; the inspector's result is constructed in the host's
// slot.

#include "frame/IteratedProperties.h"
#include "frame/Operators.h"
#include "frame/Properties.h"
#include "frame/Types.h"
