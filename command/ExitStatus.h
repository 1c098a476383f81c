#pragma once

namespace Command {

/// What the command's exit status tells. The numbers are part of its interface.
enum ExitStatus : int {
    kAnswered = 0,          ///< also when a plural has no values
    kEvaluationFailed = 1,  ///< after the values already printed
    kInvalidQuery = 2,
    kWrongUse = 3,  ///< of the command line; or no inspector library could be loaded
};

}  // namespace Command
