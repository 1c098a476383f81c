// What the evaluator takes for one value, one property call and one absent object, and whether values take
// memory, all through the embedding interface and with inspectors that do next to nothing
// (BenchmarkInspectors.cpp).

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "Evaluator/Embedding.h"

namespace {

constexpr long kValues = 1'000'000;
constexpr long kAbsences = 100'000;  // exceptions are slow
constexpr long kCalls = 10;          // for each value
constexpr long kStream = 10'000'000;

[[noreturn]] void Fail(Evaluator::Problem const& problem, std::string const& query) {
    std::fputs(Evaluator::Render(problem, query).c_str(), stderr);
    std::exit(EXIT_FAILURE);
}

void LoadInspectors() {
    auto const self = std::filesystem::canonical("/proc/self/exe");
    for (auto const& problem :
         Evaluator::LoadInspectorLibrary(self.parent_path() / "BenchmarkInspectors.dylib"))
        Fail(problem, {});
}

// Seconds that the evaluation takes of the number of something. Ends the program when the number is not the
// one given.
double SecondsToCount(std::string const& what, long count) {
    std::string const text = "number of " + what;
    auto const [query, problems] = Evaluator::Query::Compile(text);
    if (!query) Fail(problems.front(), text);
    std::string answer;
    auto const begin = std::chrono::steady_clock::now();
    auto const problem = query->Run([&](Evaluator::Result const& value) {
        answer = value.Text();
        return true;
    });
    std::chrono::duration<double> const taken = std::chrono::steady_clock::now() - begin;
    if (problem) Fail(*problem, text);
    if (answer != std::to_string(count)) {
        std::fprintf(stderr, "%s: %s, not %ld\n", text.c_str(), answer.c_str(), count);
        std::exit(EXIT_FAILURE);
    }
    return taken.count();
}

std::string Tokens(long count) { return "tokens up to " + std::to_string(count); }

// ---- Time

// Shows the seconds taken for one of `count`.
void ShowEach(benchmark::State& state, long count) {
    state.counters["each"] =
        benchmark::Counter(static_cast<double>(count),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void IteratedValue(benchmark::State& state) {
    for (auto _ : state) state.SetIterationTime(SecondsToCount(Tokens(kValues), kValues));
    ShowEach(state, kValues);
}

// The difference between ten calls for each value and none.
void PropertyCall(benchmark::State& state) {
    std::string calls;
    for (long i = 0; i < kCalls; ++i) calls += "twins of ";
    for (auto _ : state)
        state.SetIterationTime(SecondsToCount(calls + Tokens(kValues), kValues) -
                               SecondsToCount(Tokens(kValues), kValues));
    ShowEach(state, kValues * kCalls);
}

// A value of a plural for which the property answers "no such object".
void AbsentObject(benchmark::State& state) {
    for (auto _ : state) state.SetIterationTime(SecondsToCount("ghosts of " + Tokens(kAbsences), 0));
    ShowEach(state, kAbsences);
}

BENCHMARK(IteratedValue)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(PropertyCall)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(AbsentObject)->UseManualTime()->Unit(benchmark::kMillisecond);

// ---- Memory

// KiB that this process has had resident at most.
long PeakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (long kibibytes; word == "VmHWM:" && status >> kibibytes) return kibibytes;
    return 0;
}

void PrintPeakMemory() {
    SecondsToCount(Tokens(1), 1);  // what every evaluation needs
    long const before = PeakMemory();
    SecondsToCount("(((id of it) of " + Tokens(kStream) + " whose (id of it > 0)) as string)", kStream);
    std::printf("peak memory before and after %ld values through whose, a step and a cast: %ld and %ld KiB\n",
                kStream, before, PeakMemory());
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return EXIT_FAILURE;
    LoadInspectors();
    PrintPeakMemory();
    benchmark::RunSpecifiedBenchmarks();
}
