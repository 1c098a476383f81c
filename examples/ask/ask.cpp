// Asks one question several times, as a program does that watches something.
//
//     ask QUERY [TIMES [FOLDER]]      FOLDER: of inspector libraries; else those beside the evaluator
//
// The query is read and checked once; each run then looks at the machine anew.

#include <Evaluator/Embedding.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// A problem is data: a program decides what to do with it. Evaluator::Render shows one to a person.
void Print(Evaluator::Problem const& problem) {
    std::printf("%s problem at bytes %zu to %zu: %s\n", std::string(NameOf(problem.kind)).c_str(),
                problem.range.begin, problem.range.end, problem.message.c_str());
    if (!problem.hint.empty()) std::printf("  hint: %s\n", problem.hint.c_str());
}

// What a signal handler, or another thread, ends an evaluation with.
Evaluator::Cancellation cancellation;

// Prints each value when it is found. Returns whether nothing went wrong.
bool Ask(Evaluator::Query const& query) {
    Evaluator::RunOptions options;
    options.limits.time = std::chrono::seconds(10);
    options.cancellation = &cancellation;
    auto print = [](Evaluator::Result const& value) {
        std::printf("%s: %s\n", value.TypeName().c_str(), value.Text().c_str());
        return true;  // go on; false would end the evaluation here
    };
    auto problem = query.Run(print, options);
    if (problem) Print(*problem);  // the values before it are good
    return !problem;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 4) {
        std::fputs("usage: ask QUERY [TIMES [FOLDER]]\n", stderr);
        return EXIT_FAILURE;
    }
    std::signal(SIGINT, [](int) { cancellation.Request(); });
    std::filesystem::path const folder = argc > 3 ? argv[3] : Evaluator::StandardInspectorsFolder();
    // A library that cannot be loaded does not keep the others from answering.
    for (Evaluator::Problem const& problem : Evaluator::LoadInspectors(folder))
        std::fprintf(stderr, "%s\n", problem.message.c_str());

    auto const [query, problems] = Evaluator::Query::Compile(argv[1]);
    for (Evaluator::Problem const& problem : problems) Print(problem);
    if (!query) return EXIT_FAILURE;

    std::printf("%s of type %s\n", query->IsPlural() ? "any number" : "one", query->TypeName().c_str());
    bool sound = true;
    for (int times = argc > 2 ? std::atoi(argv[2]) : 1; times > 0; --times) sound = Ask(*query) && sound;
    return sound ? EXIT_SUCCESS : EXIT_FAILURE;
}
