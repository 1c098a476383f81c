#pragma once

#include <string>
#include <vector>

#include "Evaluator/Embedding.h"
#include "command/Question.h"

namespace Command {

/// What the command has to say on standard error: as text, in colours where a person may see them, or as
/// JSON, one object a line.
class Messages {
  public:
    explicit Messages(bool asJson);

    /// Problems of a question, or of libraries. One that repeats is told once, with a count.
    void Tell(std::vector<Evaluator::Problem> const& problems, Question const& question = {}) const;
    /// What the command itself cannot do.
    void Tell(std::string const& message) const;

  private:
    void TellOne(Evaluator::Problem problem, std::string_view kind, std::size_t count,
                 Question const& question) const;
    bool const asJson;
    Evaluator::Colour const colour;
};

}  // namespace Command
