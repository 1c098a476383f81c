#include "Evaluator/Context.h"

InspectorContext::~InspectorContext() = default;
