// Any bytes as a query of the core alone, which sees nothing of the machine but its clock, evaluated.

#include "Invariants.h"

namespace {

// Values after which an evaluation is ended: a few bytes of query can ask for any number.
constexpr int kMostValues = 1000;

// A few bytes can ask for any amount of time and memory, too.
Evaluator::RunOptions Modest() {
    Evaluator::RunOptions options;
    options.limits.time = std::chrono::milliseconds(200);
    options.limits.textBytes = 1 << 20;
    options.limits.gatheredValues = 10'000;
    return options;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const text = Fuzz::AsQuery(data, size);
    auto const compiled = Evaluator::Query::Compile(text);
    if (!compiled.query) return 0;
    Evaluator::Query const& query = *compiled.query;
    int values = 0;
    auto const consumer = [&](Evaluator::Result const& value) {
        Fuzz::Hold(value.TypeName() == query.TypeName(), "a value of the core has the query's type");
        return ++values < kMostValues;
    };
    auto const problem = query.Run(consumer, Modest());
    query.Explain();
    if (problem) Fuzz::HoldProblem(*problem, text);
    if (!query.IsPlural())
        Fuzz::Hold(values == (problem ? 0 : 1), "a singular query has one value or a problem");
    return 0;
}
