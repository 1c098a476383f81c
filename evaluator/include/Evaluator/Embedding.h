#pragma once

// How a program uses the evaluator: load inspector libraries, compile a query once, run it as often as
// wanted, receive its values one at a time.
//
//     Evaluator::LoadInspectors(Evaluator::StandardInspectorsFolder());
//     auto compiled = Evaluator::Query::Compile("name of file \"/etc/hosts\"");
//     compiled.query->Run([](Evaluator::Result const& result) { puts(result.Text().c_str()); return true; });
//
// Every function may be called from any thread; one evaluation runs at a time in a process, and a second
// thread waits for the first, as do loading, unloading, and keeping and letting go of kept values. So a
// consumer must not wait for a thread that does one of these. Compiling a query waits for nobody's
// evaluation. Nothing here throws, but std::bad_alloc where a problem cannot be told for want of memory, and
// what a consumer throws, which passes through Run.
//
// While a query runs, faults of memory (SIGSEGV) are the evaluator's: an inspector that recurses without end
// ends its evaluation, not the process. Any other fault does what it would have done. Afterwards the handler,
// and the thread's signal mask, are what they were.

#include <atomic>
#include <chrono>
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

// ---- Problems

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
    cancelled,   ///< the evaluation was cancelled
    library,     ///< a library could not be loaded or unloaded; has no range
};
/// The name of the kind as it is written above.
EVALUATOR_API std::string_view NameOf(ProblemKind kind);

/// What went wrong, as data. The texts are the host's own and outlive every library.
struct Problem {
    ProblemKind kind = ProblemKind::evaluation;
    Range range;
    std::string message;
    std::string hint;  ///< empty: none
};

/// The text as it may be shown on a terminal: control characters, and bytes that are not UTF-8, as \xHH (tab,
/// line end and return as \t \n \r).
EVALUATOR_API std::string Printable(std::string_view text);

enum class Colour { none, ansi };
/// The problem as a person reads it: the message, the line of the query with a caret under the range, the
/// hint, all of them printable. Ends with a line end.
EVALUATOR_API std::string Render(Problem const& problem, std::string_view query,
                                 Colour colour = Colour::none);

// ---- Limits

/// The bounds that a query is held to. A bound that is reached is a problem of kind `limit`, which names it
/// and its value.
struct Limits {
    // While it is read and checked.

    /// Bytes of a query. Far beyond what a person writes; bounds the work of reading one.
    std::size_t queryBytes = 1 << 20;
    /// Depth of the syntax tree, at most 400: reading, checking and evaluating descend it on the stack.
    std::size_t nesting = 400;
    /// Problems reported of one query, one at the least; more would not be read.
    std::size_t problems = 5;
    /// Suggestions in one hint.
    std::size_t suggestions = 3;

    // While it is evaluated.

    /// Time from the call of Run; zero or less: none. It takes effect at the next value, and in an inspector
    /// when it looks something up or gives the host its time; one that does neither, when it returns.
    std::chrono::nanoseconds time{0};
    /// Bytes of the stack that an evaluation runs on, at least 304 KiB and at most 1 GiB. It bounds how deep
    /// inspectors recurse.
    std::size_t stackBytes = 8 << 20;
    /// Bytes of one text that the language makes ("&", "concatenation", a tuple's text), at most 4294967295:
    /// a few bytes of query can double a text again and again.
    std::size_t textBytes = 256 << 20;
    /// Bytes of the memory that inspectors have asked for and that is in use at one time. Kept values count,
    /// and so do the texts that the language itself has joined or gathered.
    std::size_t inspectorMemory = std::size_t{1} << 30;
    /// Values that "sorted values", "unique values" or "last values" hold at one time.
    std::size_t gatheredValues = 10'000'000;
};

// ---- Queries

struct CompiledQuery;

/// What a value is to a program: one of the core's types, or something that only its library understands.
enum class ValueKind { string, integer, boolean, time, interval, tuple, other };

/// One value, during the consumer's call, and a copy of it no longer; Keep gives one that stays. What it
/// tells was settled when it was made: asking it calls no inspector.
class EVALUATOR_API Result {
  public:
    ValueKind Kind() const;
    /// The name of the type that it was made with; a tuple's is its fields' in parentheses.
    std::string TypeName() const;
    /// The value as text, in bytes: by its cast to string, its nearest base that is a string, or its type and
    /// name. A tuple's fields stand with ", " between.
    std::string const& Text() const;
    /// Of an integer: its value; of a boolean: 1 or 0; of a time: microseconds since 1970 in universal time;
    /// of an interval: microseconds; else 0.
    std::int64_t Number() const;
    /// Of a tuple: its fields, two or more; else none.
    std::vector<Result> const& Fields() const;
    /// The value, kept beyond the consumer's call and the evaluation. Until it is let go, the libraries that
    /// its query uses cannot be unloaded. One that a consumer lets go of ends when the consumer has returned.
    std::shared_ptr<Result const> Keep() const;

  private:
    friend class Shown;
    friend class QueryRun;
    friend class KeptValue;
    Result() = default;
    ValueKind kind = ValueKind::other;
    void* value = nullptr;
    std::int64_t number = 0;
    std::string text;
    std::vector<Result> fields;
    std::shared_ptr<CompiledQuery> const* query = nullptr;
};

/// Receives the values as they are found. Returns whether it wants more. An empty one lets every value
/// pass. It is called on the thread that called Run, on the evaluation's stack, of which at least 256 KiB are
/// left; if it exhausts them, the process ends. To compile there takes more, which Limits::stackBytes has by
/// default.
using Consumer = std::function<bool(Result const&)>;

/// Ends evaluations from outside. Request may be called from any thread and from a signal handler.
class Cancellation {
  public:
    void Request() noexcept { requested.store(true, std::memory_order_relaxed); }
    void Clear() noexcept { requested.store(false, std::memory_order_relaxed); }
    bool IsRequested() const noexcept { return requested.load(std::memory_order_relaxed); }

  private:
    std::atomic<bool> requested{false};
    static_assert(std::atomic<bool>::is_always_lock_free);
};

/// How far an evaluation has come. Run begins with zeros and counts up; any thread may read meanwhile, and
/// afterwards.
class Progress {
  public:
    /// Values handed to the consumer since Run began, with the one that it is being handed.
    std::uint64_t Values() const noexcept { return values.load(std::memory_order_relaxed); }
    /// Files and folders that the platform has been asked to look at since Run began, for look-ups and for
    /// listings; one that is looked at again counts again.
    std::uint64_t Items() const noexcept { return items.load(std::memory_order_relaxed); }

  private:
    friend class Query;
    friend class Evaluation;
    void Clear() noexcept { values = items = 0; }
    std::atomic<std::uint64_t> values{0}, items{0};
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
};

struct RunOptions {
    Limits limits;
    /// Looked at throughout the evaluation, and while it waits for another to end. May be null; must outlive
    /// Run.
    Cancellation const* cancellation = nullptr;
    /// Where to tell how far it has come; for one Run at a time. May be null; must outlive Run.
    Progress* progress = nullptr;
};

/// A checked query as a tree, one node for each phrase, word or operator.
struct Explanation {
    std::string words;         ///< its own words in the query: a phrase, an operator, a literal
    Range range;               ///< where they stand
    std::string typeName;      ///< of its values
    bool plural = false;       ///< any number of values, rather than exactly one
    std::string registration;  ///< what is behind it, such as `property "name" of "file"`; empty for the
                               ///< language's own
    std::string library;  ///< whose registration that is: a file name, or "core"; empty like `registration`
    std::vector<Explanation> parts;  ///< in the order of the query
};

/// A query that was found sound. While it lives, the libraries that it uses cannot be unloaded.
class EVALUATOR_API Query {
  public:
    struct Compiled;
    /// Reads and checks a query.
    static Compiled Compile(std::string_view text, Limits const& limits = {});

    Query(Query&&) noexcept;
    Query& operator=(Query&&) noexcept;
    ~Query();

    /// Whether it may have any number of values, rather than exactly one.
    bool IsPlural() const;
    /// The name of the type of its values; a tuple's is its fields' in parentheses.
    std::string TypeName() const;
    /// The query with all its parentheses. It is longer than the query and may be nested deeper, so it is for
    /// reading.
    std::string Bracketed() const;
    Explanation Explain() const;
    /// Evaluates the query and hands its values over one at a time. Returns the problem that ended it early,
    /// after the values already handed over. A consumer that starts a query while it is being handed a value
    /// gets one.
    std::optional<Problem> Run(Consumer const& consumer, RunOptions const& options = {}) const;

  private:
    explicit Query(std::shared_ptr<CompiledQuery> compiled);
    std::shared_ptr<CompiledQuery> compiled;
};

/// What Compile gives: a query, or the problems found.
struct Query::Compiled {
    std::optional<Query> query;
    std::vector<Problem> problems;
};

// ---- Libraries and vocabulary

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

/// All that a query may use: the registrations of the core, then those of the loaded libraries. The phrases
/// that take many ("number", "sum", …) are the language's own and no registrations.
EVALUATOR_API std::vector<RegistrationInfo> AllRegistrations();

/// The version of the evaluator, such as "0.1.0".
EVALUATOR_API char const* Version();

}  // namespace Evaluator
