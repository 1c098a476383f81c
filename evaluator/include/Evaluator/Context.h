#pragma once

// What an inspector may ask of the evaluation that is calling it.

#include "Evaluator/Export.h"

/// The host's evaluation in progress.
class EVALUATOR_API InspectorContext {
  public:
    virtual ~InspectorContext();
};

/// The hooks of a context that wants to be given time. The host's context derives from both classes; an
/// inspector that runs long converts the one to the other at run time. A hook may be null. It throws where
/// the evaluation is to stop; an inspector lets that pass, and one that goes on and on all the same is left
/// where it stands, without unwinding.
struct EVALUATOR_API InspectorYieldContext {
    void (*yieldTimeSlice)(InspectorContext*) = nullptr;
    void (*trickle)(InspectorContext*) = nullptr;
};

/// The evaluation that is running on this thread, or null outside one. Borrowed.
EVALUATOR_API InspectorContext* Get_Generic_Inspector_Context();

/// Memory that belongs to the value, or to the iteration, that is being made, and goes with it; the caller
/// never frees it. What an iteration's First asks for stays until the iteration and all its values are gone;
/// what Next asks for goes with the value that Next returns; what a call that throws had asked for is freed
/// at once. Aligned for any type; never null, also for size 0. Throws MemoryFullError when there is no
/// memory, when inspectors have more in use than the evaluation's limit allows, which ends it, and outside an
/// evaluation, where nothing would own it.
EVALUATOR_API void* Allocate_Inspector_Memory(unsigned int size);
