#include "command/Terminal.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace Command {

bool StandardErrorIsTerminal() {
    char const* const kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) && !(kind && std::string_view(kind) == "dumb");
}

}  // namespace Command
