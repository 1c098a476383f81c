#pragma once

// How a program uses the evaluator: load inspector libraries, compile a query, run it, receive its values.
//
//     Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder());
//     auto compiled = Evaluator::Query::Compile("name of file \"/etc/hosts\"");
//     compiled.query->Run([](Evaluator::Result const& result) { puts(result.Text().c_str()); return true; });
//
// Every function may be called from any thread; one evaluation runs at a time in a process, and a second
// thread waits for the first. Nothing here throws, but std::bad_alloc where a problem cannot be told for want
// of memory, and what a consumer throws, which passes through Run.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Evaluator/Export.h"

namespace Evaluator {

/// Bytes of a query, from begin up to, not including, end.
struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
    friend bool operator==(Range const&, Range const&) = default;
};

enum class ProblemKind {
    syntax,      ///< the text is no query
    meaning,     ///< an unknown phrase, wrong types, a plural where one value is needed
    evaluation,  ///< the query was sound, and its evaluation failed
    limit,       ///< a limit was reached; the message names it
    library,     ///< a library could not be loaded or unloaded; has no range
};

/// What went wrong, as data. The texts are the host's own and outlive every library.
struct Problem {
    ProblemKind kind = ProblemKind::evaluation;
    Range range;
    std::string message;
    std::string hint;  ///< empty: none
};

/// The problem as a person reads it: the message, the line of the query with a caret under the range, the
/// hint. Control characters are shown escaped. Ends with a line end.
EVALUATOR_API std::string Render(Problem const& problem, std::string_view query);

struct CompiledQuery;
struct KeptValue;

/// One value, for as long as the consumer that was handed it runs.
class EVALUATOR_API Result {
  public:
    /// The value as text, in bytes: by its cast to string, its nearest base that is a string, or its type and
    /// name.
    std::string const& Text() const { return text; }
    /// The name of the type that it was made with.
    std::string TypeName() const;
    /// The value, kept beyond the evaluation. Until it is let go, the libraries that made it cannot be
    /// unloaded.
    std::shared_ptr<KeptValue> Keep() const;

  private:
    friend class QueryRun;
    Result() = default;
    std::string text;
    void* value = nullptr;
    std::shared_ptr<CompiledQuery> const* query = nullptr;
};

/// Receives the values as they are found. Returns whether it wants more. An empty one lets every value
/// pass.
using Consumer = std::function<bool(Result const&)>;

/// A query that was found sound. While it lives, the libraries that it uses cannot be unloaded.
class EVALUATOR_API Query {
  public:
    struct Compiled;
    /// Reads and checks a query.
    static Compiled Compile(std::string_view text);

    Query(Query&&) noexcept;
    Query& operator=(Query&&) noexcept;
    ~Query();

    /// Whether it may have any number of values, rather than exactly one.
    bool IsPlural() const;
    /// The name of the type of its values; a tuple's is its fields' in parentheses.
    std::string TypeName() const;
    /// Evaluates the query and hands its values over one at a time. Returns the problem that ended it early,
    /// after the values already handed over. A consumer that starts a query while it is being handed a value
    /// gets one.
    std::optional<Problem> Run(Consumer const& consumer) const;

  private:
    explicit Query(std::shared_ptr<CompiledQuery> compiled);
    std::shared_ptr<CompiledQuery> compiled;
};

/// What Compile gives: a query, or the problems found (up to five).
struct Query::Compiled {
    std::optional<Query> query;
    std::vector<Problem> problems;
};

/// The folder `Inspectors` beside the evaluator's own library.
EVALUATOR_API std::filesystem::path StandardInspectorsFolder();
/// Loads one inspector library. It must belong to the user or to root, and nobody else may be able to write
/// it. Returns what was wrong, in which case nothing of it is loaded.
EVALUATOR_API std::vector<Problem> LoadInspectorLibrary(std::filesystem::path const& file);
/// Loads every library (*.dylib) of a folder, in the order of their names. Returns what was wrong with any of
/// them; the others are loaded.
EVALUATOR_API std::vector<Problem> LoadInspectors(std::filesystem::path const& folder);
/// Unloads the library of that file name and withdraws all that it registered. Refused while a compiled
/// query, a kept value or an evaluation uses it.
EVALUATOR_API std::optional<Problem> UnloadInspectorLibrary(std::string_view name);
/// The file names of the loaded libraries, in the order in which they were loaded.
EVALUATOR_API std::vector<std::string> LoadedLibraries();

/// One registration of a loaded library. Fields that do not apply to its kind are empty.
struct RegistrationInfo {
    std::string library;
    std::string kind;      ///< "type", "property", "iterated", "cast", "operator" or "cache"
    std::string singular;  ///< a type's name, a cast's phrase
    std::string plural;
    std::string index, object, result, base, left, right;  ///< type names
    int operatorCode = -1;
    std::optional<std::size_t> size, stateSize;  ///< bytes
    std::optional<bool> fingerprint, dependsOnlyOnParameters;
};
/// All registrations of the loaded libraries, in the order in which they were made.
EVALUATOR_API std::vector<RegistrationInfo> Registrations();

/// The version of the evaluator, such as "0.1.0".
EVALUATOR_API char const* Version();

}  // namespace Evaluator
