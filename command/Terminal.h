#pragma once

namespace Command {

/// Whether a person may be looking at standard error: a terminal, and one that understands control sequences
/// (TERM is not "dumb").
bool StandardErrorIsTerminal();

}  // namespace Command
