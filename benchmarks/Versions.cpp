// What a version takes to be parsed from its text and to be compared, beside what C programs do: sscanf(3)
// for numbers and stage, and strverscmp(3).

#include "versions/Version.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::vector<std::string> const kNumeric = {
    "7",        "10.4",     "10.4.11",    "1.2b3",    "1.2.3.4",
    "2.36.9d1", "16.0.1f2", "5.10.0.257", "01.002",   "65535.65535.1a7",
    "3.11.2",   "9.2",      "102.15.0",   "22.04.3a", "1.0b2"};
std::vector<std::string> const kTextual = {"2.36-9+deb12u9", "1:5.1.2-rc1", "v1.2.3",     "1.0 beta",
                                           "2024.03.1+git",  "10.4.11.5.6", "3.0~alpha2", "5.10.0-34amd",
                                           "1.2.3-4",        "6.1.0-rc"};

ConstData Bytes(std::string const& text) {
    return {reinterpret_cast<unsigned char const*>(text.data()), text.size()};
}

// ---- Parsing

void Parse(benchmark::State& state, std::vector<std::string> const& texts, bool isNumeric) {
    for (std::string const& text : texts) {
        if (TextToVersion(Bytes(text)).text.empty() != isNumeric) return state.SkipWithError(text.c_str());
    }
    for (auto _ : state) {
        for (std::string const& text : texts) benchmark::DoNotOptimize(TextToVersion(Bytes(text)));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(texts.size()));
}
void ParseNumeric(benchmark::State& state) { Parse(state, kNumeric, true); }
void ParseTextual(benchmark::State& state) { Parse(state, kTextual, false); }

// Up to four numbers and a stage, all that sscanf can tell of these texts.
int Scan(char const* text) {
    unsigned int major, minor, bug = 0, number = 0;
    char stage = 0;
    int count = std::sscanf(text, "%u.%u.%u.%u", &major, &minor, &bug, &number);
    if (count == 3) count += std::sscanf(text, "%*u.%*u.%*u%c%u", &stage, &number);
    if (count == 2) count += std::sscanf(text, "%*u.%*u%c%u", &stage, &number);
    return count;
}
void ScanNumeric(benchmark::State& state) {
    for (auto _ : state) {
        for (std::string const& text : kNumeric) benchmark::DoNotOptimize(Scan(text.c_str()));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(kNumeric.size()));
}

// ---- Comparing each with each

template <class Items, class Compare>
void CompareAll(benchmark::State& state, Items const& items, Compare const& compare) {
    for (auto _ : state) {
        for (auto const& left : items) {
            for (auto const& right : items) benchmark::DoNotOptimize(compare(left, right));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(items.size() * items.size()));
}

std::vector<MacVersion> VersionsOf(std::vector<std::string> const& texts) {
    std::vector<MacVersion> versions;
    for (std::string const& text : texts) versions.push_back(TextToVersion(Bytes(text)));
    return versions;
}
int StrverscmpOf(std::string const& left, std::string const& right) {
    return strverscmp(left.c_str(), right.c_str());
}

void CompareNumeric(benchmark::State& state) { CompareAll(state, VersionsOf(kNumeric), CompareVersions); }
void StrverscmpNumeric(benchmark::State& state) { CompareAll(state, kNumeric, StrverscmpOf); }
void CompareTextual(benchmark::State& state) { CompareAll(state, VersionsOf(kTextual), CompareVersions); }
void StrverscmpTextual(benchmark::State& state) { CompareAll(state, kTextual, StrverscmpOf); }

BENCHMARK(ParseNumeric);
BENCHMARK(ScanNumeric);
BENCHMARK(ParseTextual);
BENCHMARK(CompareNumeric);
BENCHMARK(StrverscmpNumeric);
BENCHMARK(CompareTextual);
BENCHMARK(StrverscmpTextual);

}  // namespace

BENCHMARK_MAIN();
