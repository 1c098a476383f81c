#pragma once

// Marks what Evaluator.dylib offers to other libraries; everything else is hidden. Classes that cross the
// boundary as exceptions carry it too, so that their type information is one and the same on both sides.
#define EVALUATOR_API __attribute__((visibility("default")))
