#pragma once

// What is known of the machine's processors. All of them give what GetFact gives.

#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>

namespace Platform {

/// 'sysa': 2 PowerPC, 10 Intel, 100 and 101 ARM of 32 and 64 bits.
OSErr GetArchitecture(UInt32& architecture);
/// 'cput' and 'cpuf'.
OSErr GetProcessorType(UInt32& type);
/// The number of processors that are on.
OSErr GetProcessorCount(UInt32& count);
/// The clock of the fastest processor, in Hz.
OSErr GetProcessorClock(UInt64& hertz);
/// The feature bits of an Intel processor, as its CPUID instruction has them in EDX.
OSErr GetProcessorFeatures(UInt32& features);

}  // namespace Platform
