#pragma once

// Internal. The types, properties, casts and operators that the evaluator itself provides. They are
// registered like those of any library, and nothing of them but the clock looks at the machine.

namespace Evaluator {

/// Registers the core, once; later calls do nothing.
void RegisterCore();

}  // namespace Evaluator
