// The embedding interface: what a program may ask of the evaluator, made of the parts in this folder.

#include "Evaluator/Embedding.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

#include "Evaluator/Exceptions.h"
#include "core/Core.h"
#include "language/Checker.h"
#include "registry/Libraries.h"

namespace Evaluator {
namespace {

// ---- One at a time

// Held by whoever evaluates, checks, loads or lets go of something that lives in inspector libraries. The
// thread that holds it may come back, as a consumer does that lets go of a kept value.
std::recursive_mutex evaluationLock;
using Locked = std::lock_guard<std::recursive_mutex>;

// ---- Uses of libraries

// Keeps libraries from being unloaded.
class Uses {
  public:
    explicit Uses(std::vector<Library*> libraries) : libraries(std::move(libraries)) {
        for (Library* library : this->libraries) ++library->uses;
    }
    ~Uses() {
        Locked locked(evaluationLock);
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

struct KeptValue {
    KeptValue(std::shared_ptr<CompiledQuery> query, ValueRef value)
        : query(std::move(query)), value(std::move(value)) {}
    ~KeptValue() {
        Locked locked(evaluationLock);
        value = {};
        query.reset();
    }
    std::shared_ptr<CompiledQuery> query;
    ValueRef value;
};

// Hands the values of one evaluation to a consumer.
class QueryRun {
  public:
    QueryRun(std::shared_ptr<CompiledQuery> const& query, Consumer const& consumer)
        : query(query),
          checked(*query->checked),
          consumer(consumer),
          evaluation(checked.bindings, checked.literals) {}

    // What the consumer throws passes through; nothing else does.
    std::optional<Problem> Run() {
        try {
            return RunGuarded();
        } catch (EvaluationError const& error) {
            return error.problem;
        } catch (ConsumerFailure const& failure) {
            std::rethrow_exception(failure.exception);
        } catch (MemoryFullError const&) {
            return OutOfMemory();
        } catch (std::bad_alloc const&) {
            return OutOfMemory();
        }
    }

  private:
    struct ConsumerFailure {
        std::exception_ptr exception;
    };

    Problem OutOfMemory() const { return {ProblemKind::limit, checked.root->range, "out of memory", {}}; }

    std::optional<Problem> RunGuarded() {
        evaluation.ClearCaches(checked.root->range);
        CursorPointer cursor = checked.root->Open(evaluation);
        ValueRef value;
        Cursor::Step step = Cursor::Step::absent;
        while (cursor && (step = cursor->Next(evaluation, value)) == Cursor::Step::value)
            if (!Deliver(value)) return std::nullopt;
        if (step == Cursor::Step::end) return std::nullopt;
        return AsProblem(evaluation.absence);
    }

    bool Deliver(ValueRef const& value) {
        Result result;
        result.text = checked.shown.Text(evaluation, value, checked.root->range);
        result.value = value.Get();
        result.query = &query;
        if (!consumer) return true;
        try {
            return consumer(result);
        } catch (...) {
            throw ConsumerFailure{std::current_exception()};
        }
    }

    std::shared_ptr<CompiledQuery> const query;  // the consumer may let go of the Query
    CheckedQuery const& checked;
    Consumer const& consumer;
    Evaluation evaluation;
};

// ---- Results

std::string Result::TypeName() const { return static_cast<Value const*>(value)->type->name; }

std::shared_ptr<KeptValue> Result::Keep() const {
    auto* kept = static_cast<Value*>(value);
    ++kept->references;
    return std::make_shared<KeptValue>(*query, ValueRef::Adopt(kept));
}

// ---- Queries

Query::Compiled Query::Compile(std::string_view text) {
    Locked locked(evaluationLock);
    RegisterCore();
    Compiled result;
    if (auto checked = Check(text, result.problems))
        result.query = Query(std::make_shared<CompiledQuery>(std::move(checked)));
    return result;
}

Query::Query(std::shared_ptr<CompiledQuery> query) : compiled(std::move(query)) {}
Query::Query(Query&&) noexcept = default;
Query& Query::operator=(Query&&) noexcept = default;
Query::~Query() = default;

bool Query::IsPlural() const { return compiled->checked->root->plural; }
std::string Query::TypeName() const { return compiled->checked->root->type->name; }

std::optional<Problem> Query::Run(Consumer const& consumer) const {
    Locked locked(evaluationLock);
    if (Evaluation::Running())
        return Problem{ProblemKind::evaluation, compiled->checked->root->range,
                       "another query is being evaluated",
                       "a consumer that is being handed a value cannot start a query"};
    return QueryRun(compiled, consumer).Run();
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
    Locked locked(evaluationLock);
    if (Evaluation::Running())
        return {LibraryProblem(fmt::format("cannot load \"{}\": a query is being evaluated", file.string()))};
    RegisterCore();
    return LibraryProblems(Libraries::Instance().Load(file));
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
    Locked locked(evaluationLock);
    if (Evaluation::Running())
        return LibraryProblem(fmt::format("cannot unload \"{}\": a query is being evaluated", name));
    if (auto why = Libraries::Instance().Unload(name)) return LibraryProblem(std::move(*why));
    return std::nullopt;
}

std::vector<std::string> LoadedLibraries() {
    Locked locked(evaluationLock);
    std::vector<std::string> names;
    for (Library const& library : Libraries::Instance().Loaded()) names.push_back(library.name);
    return names;
}

std::vector<RegistrationInfo> Registrations() {
    Locked locked(evaluationLock);
    std::vector<RegistrationInfo> infos;
    for (auto const& entry : Registry::Instance().All()) {
        if (entry->library->IsCore()) continue;
        infos.push_back(entry->Info());
        infos.back().library = entry->library->name;
    }
    return infos;
}

char const* Version() { return ZELQ_VERSION; }

}  // namespace Evaluator
