#include "frame/Yielding.h"

#include "Evaluator/Context.h"

namespace {

using Hook = void (*InspectorYieldContext::*)(InspectorContext*);

void Call(Hook hook) {
    InspectorContext* const context = Get_Generic_Inspector_Context();
    if (context == nullptr) return;
    auto const* const yielding = dynamic_cast<InspectorYieldContext*>(context);
    if (yielding != nullptr && yielding->*hook != nullptr) (yielding->*hook)(context);
}

}  // namespace

void Trickle() { Call(&InspectorYieldContext::trickle); }
void YieldTimeSlice() { Call(&InspectorYieldContext::yieldTimeSlice); }
