// Any bytes as a query, read into a syntax tree with the core's phrases and a few that are hard to read.

#include "language/Parser.h"

#include "Invariants.h"
#include "core/Core.h"

using namespace Evaluator;

namespace {

// Registers phrases of several words, one the beginning of another, some with operator words.
void RegisterPhrases() {
    static Library library{"Phrases.dylib", "/phrases"};
    static struct { alignas(void*) unsigned char memory[kPropertyRecordSize]; } records[5];
    Registry::Turn turn(Registry::Instance(), library);
    auto* record = records;
    for (char const* phrase :
         {"line", "line starting with", "line containing", "free space", "day_of_week mod"}) {
        Register_Property(
            record, kPropertyRecordSize, phrase, "", "string", "string", "string",
            [](void*, void const*, void const*, void*, void const*) {}, record, nullptr);
        ++record;
    }
}

// A tree's parts lie within it, are in order, and make up its height.
void HoldTree(Syntax const& syntax, std::string_view query) {
    Fuzz::HoldRange(syntax.range, query);
    Fuzz::HoldRange(syntax.sign, query);
    std::size_t below = 0;
    auto holdPart = [&](Syntax const* part) {
        if (!part) return;
        Fuzz::Hold(part->range.begin >= syntax.range.begin && part->range.end <= syntax.range.end,
                   "a part of a tree lies within it");
        below = std::max(below, part->height);
        HoldTree(*part, query);
    };
    for (SyntaxPointer const& part : syntax.parts) holdPart(part.get());
    for (Syntax const* part : {syntax.index.get(), syntax.condition.get(), syntax.object.get()})
        holdPart(part);
    Fuzz::Hold(syntax.height == below + 1, "a tree is one higher than its highest part");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    RegisterCore();
    RegisterPhrases();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const query = Fuzz::AsQuery(data, size);
    try {
        HoldTree(*Parse(query, Vocabulary::Present()), query);
    } catch (SyntaxError const& error) {
        Fuzz::HoldProblem(error.problem, query);
    }
    return 0;
}
