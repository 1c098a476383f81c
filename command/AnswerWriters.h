#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Evaluator/Embedding.h"
#include "command/Options.h"
#include "command/Output.h"

namespace Command {

/// Writes one answer, piece by piece: Begin, Add for each value as it is found, End.
class AnswerWriter {
  public:
    virtual ~AnswerWriter() = default;
    /// `query` is null when the text is no valid query.
    virtual void Begin(std::string_view /*text*/, Evaluator::Query const* /*query*/) {}
    virtual void Add(Evaluator::Result const& value) = 0;
    /// The problems that made the query invalid, or the one that ended it; none where it was answered.
    virtual void End(std::vector<Evaluator::Problem> const& /*problems*/, double /*seconds*/) {}
};

/// The output must outlive the writer.
std::unique_ptr<AnswerWriter> MakeAnswerWriter(Format format, Output& output);

}  // namespace Command
