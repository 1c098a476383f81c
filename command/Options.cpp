#include "command/Options.h"

#include <CLI/CLI.hpp>
#include <cstdio>

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

Values go to standard output, one a line, as they are found; everything else goes to standard error.

Exit status:
  0  answered; a plural may have no values at all
  1  the evaluation failed, after the values already printed
  2  the query is not valid
  3  wrong use, or no inspector library could be loaded)";

// A query may begin with a minus, and no option has only one: such an argument is the query. Returns the
// others, last first, as the parser wants them.
std::vector<std::string> TakeSignedQuery(int argc, char** argv, std::string& query) {
    std::vector<std::string> others;
    for (int i = argc - 1; i > 0; --i) {
        std::string argument = argv[i];
        bool isSigned = argument.size() > 1 && argument[0] == '-' && argument[1] != '-';
        if (isSigned && query.empty())
            query = std::move(argument);
        else
            others.push_back(std::move(argument));
    }
    return others;
}

}  // namespace

std::optional<Options> ReadOptions(int argc, char** argv, int& status) {
    Options options;
    CLI::App app(kPurpose, "zelq");
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("zelq ") + Evaluator::Version(), "Print the version");
    app.set_help_flag("--help", "Print this help");
    app.add_option("query", options.query, "The question, as one argument")->type_name("QUERY");
    app.add_option("--inspectors", options.inspectors,
                   "Load the inspector libraries of this folder, or this one library")
        ->type_name("DIR");
    app.add_flag("--registrations", options.registrations,
                 "Print what the loaded libraries registered, in order, one JSON object a line");
    try {
        std::string signedQuery;
        std::vector<std::string> arguments = TakeSignedQuery(argc, argv, signedQuery);
        app.parse(arguments);
        if (!signedQuery.empty() && app.count("query") > 0) throw CLI::ExtrasError({signedQuery});
        if (!signedQuery.empty()) options.query = signedQuery;
        if (!options.registrations && signedQuery.empty() && app.count("query") == 0)
            throw CLI::RequiredError("QUERY");
        return options;
    } catch (CLI::ParseError const& outcome) {
        status = app.exit(outcome) == 0 ? kAnswered : kWrongUse;
        return std::nullopt;
    }
}

}  // namespace Command
