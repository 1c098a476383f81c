// zelq: asks one question and prints its values, one a line.

#include <chrono>
#include <cstdio>
#include <filesystem>

#include "Evaluator/Embedding.h"
#include "command/ExitStatus.h"
#include "command/Options.h"
#include "command/Registrations.h"

namespace Command {
namespace {

void Print(std::vector<Evaluator::Problem> const& problems, std::string_view query) {
    for (Evaluator::Problem const& problem : problems)
        std::fputs(Evaluator::Render(problem, query).c_str(), stderr);
}

void PrintLine(std::string const& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}

// Values are seen as they come also through a pipe, where standard output is not flushed at every line.
void FlushNowAndThen() {
    using Clock = std::chrono::steady_clock;
    static Clock::time_point last;
    Clock::time_point now = Clock::now();
    if (now - last < std::chrono::milliseconds(100)) return;
    std::fflush(stdout);
    last = now;
}

// The inspector libraries, for as long as this lives.
class LoadedInspectors {
  public:
    explicit LoadedInspectors(std::filesystem::path const& path) {
        std::error_code error;
        Print(is_regular_file(path, error) ? Evaluator::LoadInspectorLibrary(path)
                                           : Evaluator::LoadInspectors(path),
              {});
        if (None())
            std::fprintf(stderr, "error: no inspector library was loaded from \"%s\"\n", path.c_str());
    }
    ~LoadedInspectors() {
        for (std::string const& name : Evaluator::LoadedLibraries())
            if (auto problem = Evaluator::UnloadInspectorLibrary(name)) Print({*problem}, {});
    }
    LoadedInspectors(LoadedInspectors const&) = delete;
    LoadedInspectors& operator=(LoadedInspectors const&) = delete;
    bool None() const { return Evaluator::LoadedLibraries().empty(); }
};

int Answer(std::string const& text) {
    auto [query, problems] = Evaluator::Query::Compile(text);
    Print(problems, text);
    if (!query) return kInvalidQuery;
    auto problem = query->Run([](Evaluator::Result const& result) {
        PrintLine(result.Text());
        FlushNowAndThen();
        return !std::ferror(stdout);
    });
    std::fflush(stdout);  // values stand before the problem that ended them, also where both go to one place
    if (!problem) return kAnswered;
    Print({*problem}, text);
    return kEvaluationFailed;
}

int Run(Options const& options) {
    LoadedInspectors inspectors(options.inspectors.empty() ? Evaluator::StandardInspectorsFolder()
                                                           : std::filesystem::path(options.inspectors));
    if (inspectors.None()) return kWrongUse;
    if (!options.registrations) return Answer(options.query);
    for (Evaluator::RegistrationInfo const& registration : Evaluator::Registrations())
        PrintLine(AsJson(registration));
    return kAnswered;
}

}  // namespace
}  // namespace Command

int main(int argc, char** argv) {
    int status = Command::kAnswered;
    if (auto options = Command::ReadOptions(argc, argv, status)) status = Command::Run(*options);
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fputs("error: cannot write to standard output\n", stderr);
        if (status == Command::kAnswered) status = Command::kEvaluationFailed;
    }
    return status;
}
