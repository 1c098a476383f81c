// The embedding interface: what a program may ask of the evaluator, made of the parts in this folder.

#include "Evaluator/Embedding.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <limits>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include "Evaluator/Exceptions.h"
#include "core/Core.h"
#include "language/Bracketed.h"
#include "language/Checker.h"
#include "registry/Libraries.h"
#include "stack/EvaluationStack.h"

namespace Evaluator {
namespace {

// ---- Locks

// Held by whoever evaluates, and by whoever lets go of a value that an evaluation has left. The thread that
// holds it may come back, as a consumer does that lets go of a kept value.
std::recursive_timed_mutex evaluationLock;
using Evaluating = std::unique_lock<std::recursive_timed_mutex>;

// Held by whoever reads the vocabulary or counts a use of a library, so that a query can be compiled while
// another is evaluated. The vocabulary changes only under both locks, this one taken last.
std::recursive_mutex vocabularyLock;
using Consulting = std::lock_guard<std::recursive_mutex>;

// ---- Uses of libraries

// Keeps libraries from being unloaded.
class Uses {
  public:
    explicit Uses(std::vector<Library*> libraries) : libraries(std::move(libraries)) {
        Consulting consulting(vocabularyLock);
        for (Library* library : this->libraries) ++library->uses;
    }
    ~Uses() {
        Consulting consulting(vocabularyLock);
        for (Library* library : libraries) --library->uses;
    }
    Uses(Uses const&) = delete;
    Uses& operator=(Uses const&) = delete;

  private:
    std::vector<Library*> libraries;
};

Problem LibraryProblem(std::string message) { return {ProblemKind::library, {}, std::move(message), {}}; }

std::vector<Problem> LibraryProblems(std::vector<std::string> messages) {
    std::vector<Problem> problems;
    for (std::string& message : messages) problems.push_back(LibraryProblem(std::move(message)));
    return problems;
}

}  // namespace

// A sound query and its hold on the libraries behind it. Shared by the Query and the values kept of it, which
// may point at its literals and its tuple types.
struct CompiledQuery {
    explicit CompiledQuery(std::unique_ptr<CheckedQuery> query)
        : checked(std::move(query)), uses(checked->libraries) {}
    std::unique_ptr<CheckedQuery> const checked;
    Uses const uses;
};

// Runs `function` on the evaluation's stack. Returns false where the stack was given up; then nothing that
// the function owned is there any more, but for the values that were kept. What it throws passes through.
template <class Function>
bool OnEvaluationStack(Function const& function) {
    struct Errand {
        Function const& function;
        std::exception_ptr failure;
    } errand{function, nullptr};
    auto run = [](void* argument) {
        auto& errand = *static_cast<Errand*>(argument);
        try {
            errand.function();
        } catch (...) {
            errand.failure = std::current_exception();
        }
    };
    EvaluationStack& stack = EvaluationStack::Instance();
    bool finished = stack.Run(run, &errand);
    if (errand.failure) std::rethrow_exception(errand.failure);
    if (finished) return true;
    if (Evaluation* evaluation = Evaluation::Running()) evaluation->Forget();
    ForgetOwners();
    // The states of the core's iterations free what they own; what is left then was in the frames' hands.
    auto end = [](void*) {
        EvaluationStack::Instance().EndExceptions();
        EndForgotten();
    };
    while (!stack.Run(end, nullptr)) {
    }
    FreeAllOwned();
    return false;
}

// A value that outlives its evaluation, what it tells, and the query, whose literals it may point at.
class KeptValue {
  public:
    KeptValue(std::shared_ptr<CompiledQuery> origin, Value* kept, Result const& told)
        : query(std::move(origin)), value(kept), result(told) {
        PointHere(result);
        ++value->references;
        ++value->keeps;
    }
    KeptValue(KeptValue const&) = delete;
    KeptValue& operator=(KeptValue const&) = delete;

    Result const& Told() const { return result; }
    /// For its last owner. Within an evaluation the value waits until the consumer has returned: what ends it
    /// may recurse without end, and the consumer's frames cannot be left.
    static void LetGo(KeptValue* kept);
    /// Ends the values that wait; on the evaluation's stack.
    static void EndWaiting() {
        while (waiting) {
            Release(waiting->value);
            ForgetFirst();
        }
    }
    /// Where that was given up, and the values that wait have ended.
    static void ForgetWaiting() {
        while (waiting) ForgetFirst();
    }

  private:
    static void ForgetFirst() { delete std::exchange(waiting, waiting->next); }
    // It and its fields may be kept again.
    void PointHere(Result& told) {
        told.query = &query;
        for (Result& field : told.fields) PointHere(field);
    }

    std::shared_ptr<CompiledQuery> const query;
    Value* const value;
    Result result;
    KeptValue* next = nullptr;  ///< of those that wait
    static inline KeptValue* waiting = nullptr;
};

void KeptValue::LetGo(KeptValue* kept) {
    Evaluating evaluating(evaluationLock);
    --kept->value->keeps;
    kept->next = std::exchange(waiting, kept);
    if (Evaluation::Running()) return;
    if (!OnEvaluationStack([] { EndWaiting(); })) ForgetWaiting();
    TakeFailureToEnd();  // there is nobody to be told
}

// Hands the values of one evaluation to a consumer.
class QueryRun {
  public:
    QueryRun(std::shared_ptr<CompiledQuery> const& query, Consumer const& consumer, RunOptions const& options,
             std::chrono::steady_clock::time_point begun)
        : query(query),
          checked(*query->checked),
          consumer(consumer),
          evaluation(checked.bindings, checked.literals, options, begun) {
        result.query = &this->query;
    }

    // What the consumer throws passes through; nothing else does.
    std::optional<Problem> Run() {
        std::optional<Problem> problem;
        bool finished = OnEvaluationStack([&] {
            problem = RunGuarded();
            KeptValue::EndWaiting();
            evaluation.LetGo();
        });
        if (!finished) {
            KeptValue::ForgetWaiting();
            problem = evaluation.WhyGivenUp();
        }
        Entry const* entry = TakeFailureToEnd();
        if (consumerFailure) std::rethrow_exception(consumerFailure);
        if (entry && !problem)
            problem = Problem{ProblemKind::evaluation,
                              checked.root->range,
                              fmt::format("{}: {}: it threw an exception where a value ends",
                                          entry->library->name, entry->Describe()),
                              {}};
        return problem;
    }

  private:
    struct ConsumerFailed {};

    std::optional<Problem> RunGuarded() {
        try {
            return Deliver();
        } catch (EvaluationError const& error) {
            return error.problem;
        } catch (ConsumerFailed const&) {
            return std::nullopt;
        } catch (MemoryFullError const&) {
        } catch (std::bad_alloc const&) {
        }
        return Problem{ProblemKind::limit, checked.root->range, "out of memory", {}};
    }

    std::optional<Problem> Deliver() {
        evaluation.ClearCaches(checked.root->range);
        CursorPointer cursor = checked.root->Open(evaluation);
        ValueRef value;
        Cursor::Step step = Cursor::Step::absent;
        while (cursor && (step = cursor->Next(evaluation, value)) == Cursor::Step::value) {
            evaluation.CheckIn(checked.root->range);
            evaluation.CountValue();
            if (!consumer) continue;
            checked.shown.Show(evaluation, value, checked.root->range, result);
            bool const more = Consume();
            KeptValue::EndWaiting();
            if (!more) return std::nullopt;
        }
        if (step == Cursor::Step::end) return std::nullopt;
        return AsProblem(evaluation.absence);
    }

    bool Consume() {
        EvaluationStack::Foreign foreign;
        try {
            return consumer(result);
        } catch (...) {
            consumerFailure = std::current_exception();
        }
        throw ConsumerFailed();
    }

    std::shared_ptr<CompiledQuery> const query;  // the consumer may let go of the Query
    CheckedQuery const& checked;
    Consumer const& consumer;
    Evaluation evaluation;
    Result result;  // of one value after the other
    std::exception_ptr consumerFailure;
};

// ---- Results

ValueKind Result::Kind() const { return kind; }
std::string Result::TypeName() const { return static_cast<Value const*>(value)->type->name; }
std::string const& Result::Text() const { return text; }
std::int64_t Result::Number() const { return number; }
std::vector<Result> const& Result::Fields() const { return fields; }

std::shared_ptr<Result const> Result::Keep() const {
    Evaluating evaluating(evaluationLock);
    auto* held = static_cast<Value*>(value);
    std::shared_ptr<KeptValue> kept(new KeptValue(*query, held, *this), KeptValue::LetGo);
    return {kept, &kept->Told()};
}

// ---- Queries

Query::Compiled Query::Compile(std::string_view text, Limits const& limits) {
    Consulting consulting(vocabularyLock);
    RegisterCore();
    Compiled result;
    if (auto checked = Check(text, limits, result.problems))
        result.query = Query(std::make_shared<CompiledQuery>(std::move(checked)));
    return result;
}

Query::Query(std::shared_ptr<CompiledQuery> query) : compiled(std::move(query)) {}
Query::Query(Query&&) noexcept = default;
Query& Query::operator=(Query&&) noexcept = default;
Query::~Query() = default;

bool Query::IsPlural() const { return compiled->checked->root->plural; }
std::string Query::TypeName() const { return compiled->checked->root->type->name; }

std::string Query::Bracketed() const { return Evaluator::Bracketed(*compiled->checked->syntax); }
Explanation Query::Explain() const { return compiled->checked->root->Explained(); }

namespace {

// Waits for the lock, as long as the options allow. Returns the problem when they do not.
std::optional<Problem> Wait(Evaluating& evaluating, RunOptions const& options, Range where,
                            std::chrono::steady_clock::time_point begun) {
    constexpr std::chrono::milliseconds betweenLooks{10};
    while (!evaluating.try_lock_for(betweenLooks)) {
        if (options.cancellation && options.cancellation->IsRequested())
            return Problem{ProblemKind::cancelled, where, "the evaluation was cancelled", {}};
        if (options.limits.time.count() > 0 &&
            std::chrono::steady_clock::now() - begun >= options.limits.time)
            return Problem{ProblemKind::limit, where,
                           "the time limit was reached while another query was being evaluated",
                           "allow more time"};
    }
    return std::nullopt;
}

RunOptions WithinBounds(RunOptions options) {
    options.limits.textBytes =
        std::min<std::size_t>(options.limits.textBytes, std::numeric_limits<std::uint32_t>::max());
    options.limits.stackBytes =
        std::clamp<std::size_t>(options.limits.stackBytes, std::size_t{304} << 10, std::size_t{1} << 30);
    return options;
}

}  // namespace

std::optional<Problem> Query::Run(Consumer const& consumer, RunOptions const& asked) const {
    auto const begun = std::chrono::steady_clock::now();
    if (asked.progress) asked.progress->Clear();
    RunOptions const options = WithinBounds(asked);
    Range const all = compiled->checked->root->range;
    Evaluating evaluating(evaluationLock, std::defer_lock);
    if (auto problem = Wait(evaluating, options, all, begun)) return problem;
    if (Evaluation::Running())
        return Problem{ProblemKind::evaluation, all, "another query is being evaluated",
                       "a consumer that is being handed a value cannot start a query"};
    if (!EvaluationStack::Instance().Provide(options.limits.stackBytes))
        return Problem{ProblemKind::limit, all,
                       fmt::format("there is no memory for a stack of {} bytes", options.limits.stackBytes),
                       "allow a smaller one"};
    return QueryRun(compiled, consumer, options, begun).Run();
}

// ---- Libraries

std::filesystem::path StandardInspectorsFolder() {
    Dl_info self;
    if (dladdr(reinterpret_cast<void const*>(&StandardInspectorsFolder), &self) == 0) return "Inspectors";
    std::error_code error;
    std::filesystem::path library = std::filesystem::canonical(self.dli_fname, error);
    return (error ? std::filesystem::path(self.dli_fname) : library).parent_path() / "Inspectors";
}

std::vector<Problem> LoadInspectorLibrary(std::filesystem::path const& file) {
    Evaluating evaluating(evaluationLock);
    Consulting consulting(vocabularyLock);
    if (Evaluation::Running())
        return {LibraryProblem(fmt::format("cannot load \"{}\": a query is being evaluated", file.string()))};
    RegisterCore();
    std::vector<Problem> problems = LibraryProblems(Libraries::Instance().Load(file));
    Vocabulary::Present();  // brought up to date here, where nobody else reads it
    return problems;
}

std::vector<Problem> LoadInspectors(std::filesystem::path const& folder) {
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        if (entry->path().extension() == ".dylib") files.push_back(entry->path());
    if (error)
        return {LibraryProblem(
            fmt::format("cannot read the inspectors folder \"{}\": {}", folder.string(), error.message()))};
    std::sort(files.begin(), files.end());
    std::vector<Problem> problems;
    for (std::filesystem::path const& file : files)
        for (Problem& problem : LoadInspectorLibrary(file)) problems.push_back(std::move(problem));
    return problems;
}

std::optional<Problem> UnloadInspectorLibrary(std::string_view name) {
    Evaluating evaluating(evaluationLock);
    Consulting consulting(vocabularyLock);
    if (Evaluation::Running())
        return LibraryProblem(fmt::format("cannot unload \"{}\": a query is being evaluated", name));
    if (auto why = Libraries::Instance().Unload(name)) return LibraryProblem(std::move(*why));
    Vocabulary::Present();
    return std::nullopt;
}

std::vector<std::string> LoadedLibraries() {
    Consulting consulting(vocabularyLock);
    std::vector<std::string> names;
    for (Library const& library : Libraries::Instance().Loaded()) names.push_back(library.name);
    return names;
}

namespace {

std::vector<RegistrationInfo> Registered(bool withCore) {
    Consulting consulting(vocabularyLock);
    if (withCore) RegisterCore();
    std::vector<RegistrationInfo> infos;
    for (auto const& entry : Registry::Instance().All()) {
        if (entry->library->IsCore() && !withCore) continue;
        infos.push_back(entry->Info());
        infos.back().library = entry->library->name;
    }
    return infos;
}

}  // namespace

std::vector<RegistrationInfo> Registrations() { return Registered(false); }
std::vector<RegistrationInfo> AllRegistrations() { return Registered(true); }

char const* Version() { return ZELQ_VERSION; }

}  // namespace Evaluator
