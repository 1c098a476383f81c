// Any bytes as a query, checked with all that the inspector library registers. Nothing is evaluated: the
// machine stays out of it.

#include "Invariants.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    for (Evaluator::Problem const& problem : Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder()))
        Fuzz::Hold(false, problem.message.c_str());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const query = Fuzz::AsQuery(data, size);
    auto const compiled = Evaluator::Query::Compile(query);
    Fuzz::Hold(compiled.query.has_value() == compiled.problems.empty(), "a query is sound or has problems");
    for (Evaluator::Problem const& problem : compiled.problems) Fuzz::HoldProblem(problem, query);
    if (compiled.query) Fuzz::Hold(!compiled.query->TypeName().empty(), "a sound query has a type");
    return 0;
}
