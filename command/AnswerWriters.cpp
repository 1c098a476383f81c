#include "command/AnswerWriters.h"

#include <utility>

#include "command/Json.h"

namespace Command {
namespace {

// Each value as text, with a byte behind it that ends it.
class TextWriter : public AnswerWriter {
  public:
    TextWriter(Output& output, char terminator) : output(output), terminator(terminator) {}
    void Add(Evaluator::Result const& value) override {
        output.Write(value.Text());
        output.Write({&terminator, 1});
    }

  private:
    Output& output;
    char const terminator;
};

// Each value as JSON on a line of its own.
class JsonLinesWriter : public AnswerWriter {
  public:
    explicit JsonLinesWriter(Output& output) : output(output) {}
    void Add(Evaluator::Result const& value) override { output.Write(JsonOfValue(value) + '\n'); }

  private:
    Output& output;
};

// One object for the whole answer, on one line.
class JsonDocumentWriter : public AnswerWriter {
  public:
    explicit JsonDocumentWriter(Output& output) : output(output) {}
    void Begin(std::string_view text, Evaluator::Query const* query) override {
        output.Write("{\"query\":" + JsonOfText(text));
        output.Write(",\"type\":" + (query ? JsonOfText(query->TypeName()) : "null"));
        output.Write(std::string(",\"plural\":") + (!query ? "null" : query->IsPlural() ? "true" : "false"));
        output.Write(",\"values\":[");
    }
    void Add(Evaluator::Result const& value) override {
        output.Write(std::exchange(separator, ",") + JsonOfValue(value));
    }
    void End(std::vector<Evaluator::Problem> const& problems, double seconds) override {
        output.Write("],\"error\":" + (problems.empty() ? "null" : ErrorOf(problems)));
        output.Write(",\"seconds\":" + std::to_string(seconds) + "}\n");
    }

  private:
    static std::string ErrorOf(std::vector<Evaluator::Problem> const& problems) {
        auto membersOf = [](Evaluator::Problem const& problem) {
            return JsonMembersOf(problem, NameOf(problem.kind));
        };
        std::string more;
        for (std::size_t i = 1; i < problems.size(); ++i)
            more += (more.empty() ? "{" : ",{") + membersOf(problems[i]) + '}';
        return '{' + membersOf(problems.front()) + ",\"more\":[" + more + "]}";
    }

    Output& output;
    std::string separator;
};

}  // namespace

std::unique_ptr<AnswerWriter> MakeAnswerWriter(Format format, Output& output) {
    switch (format) {
        case Format::json:
            return std::make_unique<JsonDocumentWriter>(output);
        case Format::ndjson:
            return std::make_unique<JsonLinesWriter>(output);
        case Format::nulls:
            return std::make_unique<TextWriter>(output, '\0');
        default:
            return std::make_unique<TextWriter>(output, '\n');
    }
}

}  // namespace Command
