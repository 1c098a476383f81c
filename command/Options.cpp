#include "command/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>

#include "Evaluator/Embedding.h"
#include "command/ExitStatus.h"

namespace Command {
namespace {

constexpr char const* kPurpose = "Answers questions about this machine, posed in readable English.";

constexpr char const* kFooter = R"(Examples:
  zelq 'name of file "/etc/hosts"'
  zelq 'modification time of folder "/etc"'
  zelq 'exists file "/etc/shadow"'
  zelq '(name of it, year of creation time of it) of (file "/etc/hosts"; file "/etc/passwd")'
  zelq 'day_of_week of now'
  zelq '(now - creation time of folder "/usr") / day'
  zelq --ndjson '(name of it, exists parent folder of it) of (folder "/"; folder "/etc")'
  zelq --explain 'number of (1; 2; 3) whose (it mod 2 = 1)'
  zelq --timeout 2.5 --json 'names of (file "/etc/hosts"; folder "/usr")'

Values go to standard output as they are found; everything else goes to standard error.

A query that runs longer than a second tells there how far it has come: values, files looked at (one that is looked
at again counts again), seconds. It does so on a terminal only, unless TERM is "dumb", on one line, which goes when
values come, and at the end.

An argument that begins with one minus and is none of the options above, exactly, is the QUERY, such as '-5 + 3'.
What stands behind -- is no option.

JSON:
  Integers (64 bits) and booleans are such, times ISO 8601 text, tuples arrays; everything else is text. Text that
  is not UTF-8 is {"base64": "…"}.
  --json prints {"query", "type", "plural", "values", "error", "seconds"}. Type and plural are null if the query is
  not valid. Error is null or {"kind", "message", "hint", "begin", "end", "more"}: the first problem, the bytes of
  the query that it is about, and in "more" the other problems, alike. Values found before an error stay.
  --error-format=json prints {"kind", "message", "hint", "begin", "end", "file", "count"} for each problem.
  Kinds: syntax, meaning, evaluation, limit, cancelled, library; and command, where the command itself cannot go on.
  Wrong use of the command line is always told as text.

Exit status:
  0    answered; a plural may have no values at all
  1    the evaluation failed, after the values already printed, or standard output cannot be written
  2    the query is not valid
  3    wrong use, the query cannot be read, or no inspector library could be loaded
  4    a limit was reached, by the query or, after the values already printed, by its evaluation
  130  interrupted (Ctrl-C), after the values already printed; a second Ctrl-C ends at once
  141  whoever read the output has closed it, as "head" does; nothing is said
  143  terminated, as interrupted)";

// What stands on the command line.
struct Arguments {
    std::vector<std::string> options;  ///< and their values, last first, as the parser wants them
    std::vector<std::string> queries;
};

// The parser would take everything that begins with a minus for options.
Arguments Sorted(CLI::App const& app, int argc, char** argv) {
    Arguments sorted;
    bool isValue = false, isLiteral = false;
    for (int i = 1; i < argc; ++i) {
        std::string const argument = argv[i];
        bool const hasMinus = !isValue && !isLiteral && argument.size() > 1 && argument[0] == '-';
        CLI::Option const* option = hasMinus ? app.get_option_no_throw(argument) : nullptr;
        bool const isOption = option || (hasMinus && argument[1] == '-');
        if (argument == "--" && isOption)
            isLiteral = true;
        else
            (isOption || isValue ? sorted.options : sorted.queries).push_back(argument);
        isValue = option && option->get_items_expected_max() > 0;
    }
    std::reverse(sorted.options.begin(), sorted.options.end());
    return sorted;
}

// Seconds as decimal digits, with a point or without.
std::chrono::nanoseconds ReadSeconds(std::string const& text) {
    constexpr double kMost = 9e9;  // seconds that fit, some 290 years
    double seconds = 0;
    char const* end = text.data() + text.size();
    auto [rest, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    bool isDecimal = text.find_first_not_of("0123456789.") == std::string::npos;
    if (!isDecimal || error != std::errc() || rest != end || seconds <= 0)
        throw CLI::ValidationError("--timeout", "a number of seconds above 0 is needed, such as 2.5");
    std::chrono::duration<double> const time(std::min(seconds, kMost));
    return std::max(std::chrono::nanoseconds(1), std::chrono::duration_cast<std::chrono::nanoseconds>(time));
}

// The forms in which values can be written.
void AddFormats(CLI::App& app, Format& format) {
    struct Row {
        char const* names;
        Format format;
        char const* description;
    };
    constexpr Row rows[] = {
        {"-0,--null", Format::nulls, "End each value with a NUL byte instead of a line end"},
        {"--json", Format::json, "Print one JSON document: the query, its values, its error"},
        {"--ndjson", Format::ndjson, "Print each value as JSON, one a line"},
    };
    for (Row const& row : rows) {
        auto choose = [&format, chosen = row.format] {
            if (format != Format::lines)
                throw CLI::ValidationError("only one of --null, --json and --ndjson can be asked for");
            format = chosen;
        };
        app.add_flag_callback(row.names, choose, row.description);
    }
}

void AddOptions(CLI::App& app, Options& options) {
    app.set_version_flag("--version", std::string("zelq ") + Evaluator::Version(), "Print the version");
    app.set_help_flag("--help", "Print this help");
    app.add_option("QUERY", "The question, as one argument; - reads it from standard input");
    app.add_option("-f", options.file, "Read the question from this file")->type_name("FILE");
    app.add_option("--inspectors", options.inspectors,
                   "Load the inspector libraries of this folder, or this one library")
        ->type_name("DIR");
    app.add_flag("--registrations", options.registrations,
                 "Print what the loaded libraries registered, in order, one JSON object a line");
    app.add_flag(
        "--explain", options.explain,
        "Do not answer, but tell how the question is understood: with all its parentheses, and what is "
        "behind each phrase");
    AddFormats(app, options.format);
    auto setTimeout = [&options](std::string const& text) { options.timeout = ReadSeconds(text); };
    app.add_option_function<std::string>("--timeout", setTimeout,
                                         "End the evaluation after so many seconds, such as 2.5")
        ->type_name("SECONDS");
    app.add_flag("--quiet", options.quiet, "Show no progress; this silences nothing else");
    auto setErrorFormat = [&options](std::string const& text) { options.errorsAsJson = text == "json"; };
    app.add_option_function<std::string>("--error-format", setErrorFormat,
                                         "How problems are told: text, or json, one object a line")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json"}));
}

// What each option alone does not tell.
void Settle(Options& options, CLI::App const& app, std::vector<std::string> const& queries) {
    if (queries.size() > 1) throw CLI::ValidationError("the QUERY is one argument: put quotes around it");
    std::size_t const asked = queries.size() + app.count("-f") + app.count("--registrations");
    if (asked == 0) throw CLI::ValidationError("a QUERY is needed, or -f FILE, or -");
    if (asked > 1)
        throw CLI::ValidationError("only one of QUERY, -f, - and --registrations can be asked for");
    for (char const* list : {"--registrations", "--explain"})
        if (app.count(list) > 0 && (options.format != Format::lines || app.count("--timeout") > 0))
            throw CLI::ValidationError(std::string(list) + " has one format and no time limit");
    if (options.registrations && options.explain)
        throw CLI::ValidationError("only one of --registrations and --explain can be asked for");
    if (queries.empty()) return;
    if (queries.front() == "-")
        options.file = "-";
    else
        options.query = queries.front();
}

}  // namespace

std::optional<Options> ReadOptions(int argc, char** argv, int& status) {
    Options options;
    CLI::App app(kPurpose, "zelq");
    app.footer(kFooter);
    AddOptions(app, options);
    try {
        Arguments arguments = Sorted(app, argc, argv);
        app.parse(arguments.options);
        Settle(options, app, arguments.queries);
        return options;
    } catch (CLI::ParseError const& outcome) {
        status = app.exit(outcome) == 0 ? kAnswered : kWrongUse;
        return std::nullopt;
    }
}

}  // namespace Command
