// zelq: asks one question and prints its values.

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "Evaluator/Embedding.h"
#include "command/AnswerWriters.h"
#include "command/ExitStatus.h"
#include "command/Explanation.h"
#include "command/Interruption.h"
#include "command/Json.h"
#include "command/Messages.h"
#include "command/Options.h"
#include "command/Output.h"
#include "command/ProgressLine.h"
#include "command/Question.h"

namespace Command {
namespace {

using Evaluator::Problem;
using Evaluator::ProblemKind;

// The inspector libraries, for as long as this lives.
class LoadedInspectors {
  public:
    LoadedInspectors(std::filesystem::path const& path, Messages const& messages) : messages(messages) {
        std::error_code error;
        messages.Tell(is_regular_file(path, error) ? Evaluator::LoadInspectorLibrary(path)
                                                   : Evaluator::LoadInspectors(path));
        if (None()) messages.Tell("no inspector library was loaded from \"" + path.string() + '"');
    }
    ~LoadedInspectors() {
        std::vector<Problem> problems;
        for (std::string const& name : Evaluator::LoadedLibraries())
            if (auto problem = Evaluator::UnloadInspectorLibrary(name)) problems.push_back(*problem);
        messages.Tell(problems);
    }
    LoadedInspectors(LoadedInspectors const&) = delete;
    LoadedInspectors& operator=(LoadedInspectors const&) = delete;
    bool None() const { return Evaluator::LoadedLibraries().empty(); }

  private:
    Messages const& messages;
};

// Hands the values to the writer until there are no more, nobody reads them, or something ends the
// evaluation.
int Evaluate(Evaluator::Query const& query, Options const& options, AnswerWriter& writer, Output& output,
             std::vector<Problem>& problems) {
    Interruption interruption;
    ProgressLine line(!options.quiet, output);
    Evaluator::RunOptions how;
    how.limits.time = options.timeout;
    how.cancellation = &interruption.Asked();
    how.progress = line.Progress();
    auto consume = [&](Evaluator::Result const& value) {
        auto const away = line.AboutToWrite();
        writer.Add(value);
        output.FlushNowAndThen();
        return output.Error() == 0;
    };
    auto problem = query.Run(consume, how);
    if (!problem) return kAnswered;
    problems.push_back(*problem);
    if (problem->kind == ProblemKind::cancelled) return kSignalled + interruption.Signal();
    return problem->kind == ProblemKind::limit ? kLimitReached : kEvaluationFailed;
}

int StatusOfInvalid(std::vector<Problem> const& problems) {
    bool limited = std::any_of(problems.begin(), problems.end(),
                               [](Problem const& problem) { return problem.kind == ProblemKind::limit; });
    return limited ? kLimitReached : kInvalidQuery;
}

int Answer(Question const& question, Options const& options, Output& output, Messages const& messages) {
    using Clock = std::chrono::steady_clock;
    Clock::time_point const begun = Clock::now();
    auto writer = MakeAnswerWriter(options.format, output);
    auto [query, problems] = Evaluator::Query::Compile(question.text);
    writer->Begin(question.text, query ? &*query : nullptr);
    int status = query ? Evaluate(*query, options, *writer, output, problems) : StatusOfInvalid(problems);
    writer->End(problems, std::chrono::duration<double>(Clock::now() - begun).count());
    output.Flush();  // values stand before the problem that ended them, also where both go to one place
    messages.Tell(problems, question);
    return status;
}

int Explain(Question const& question, Output& output, Messages const& messages) {
    auto [query, problems] = Evaluator::Query::Compile(question.text);
    if (query) output.Write(TextOfExplanation(*query));
    messages.Tell(problems, question);
    return query ? kAnswered : StatusOfInvalid(problems);
}

int ListRegistrations(Output& output) {
    for (Evaluator::RegistrationInfo const& registration : Evaluator::Registrations())
        output.Write(JsonOfRegistration(registration) + '\n');
    return kAnswered;
}

// A line that is kept keeps its file open: many of them may need more files than a process may open at first.
void AllowOpenFiles() {
    rlimit files;
    if (getrlimit(RLIMIT_NOFILE, &files) != 0) return;
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
}

// What becomes of the status where standard output could not be written. Whoever closed a pipe knows.
int StatusOfOutput(int error, int status, Messages const& messages) {
    if (error == EPIPE) return kSignalled + SIGPIPE;
    if (error == 0) return status;
    messages.Tell(std::string("cannot write to standard output: ") + std::strerror(error));
    return status == kAnswered ? kEvaluationFailed : status;
}

int Run(Options const& options, Output& output, Messages const& messages) {
    std::string why;
    std::optional<Question> question{Question{options.query, {}}};
    if (options.file) question = ReadQuestion(*options.file, why);
    if (!question) {
        messages.Tell(why);
        return kWrongUse;
    }
    LoadedInspectors inspectors(options.inspectors.empty() ? Evaluator::StandardInspectorsFolder()
                                                           : std::filesystem::path(options.inspectors),
                                messages);
    if (inspectors.None()) return kWrongUse;
    if (options.registrations) return ListRegistrations(output);
    if (options.explain) return Explain(*question, output, messages);
    return Answer(*question, options, output, messages);
}

}  // namespace
}  // namespace Command

int main(int argc, char** argv) {
    Command::AllowOpenFiles();
    Command::Output output;
    int status = Command::kAnswered;
    auto options = Command::ReadOptions(argc, argv, status);
    Command::Messages const messages(options && options->errorsAsJson);
    if (options) status = Command::Run(*options, output, messages);
    output.Flush();
    return Command::StatusOfOutput(output.Error(), status, messages);
}
