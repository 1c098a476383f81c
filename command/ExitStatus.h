#pragma once

namespace Command {

/// What the command's exit status tells. The numbers are part of its interface.
enum ExitStatus : int {
    kAnswered = 0,          ///< also when a plural has no values
    kEvaluationFailed = 1,  ///< after the values already printed; or they could not be written
    kInvalidQuery = 2,
    kWrongUse = 3,      ///< of the command line; or no query could be read, or no inspector library loaded
    kLimitReached = 4,  ///< by the query or by its evaluation
    kSignalled = 128,   ///< and the signal's number: interrupted, terminated, or the output's reader has gone
};

}  // namespace Command
