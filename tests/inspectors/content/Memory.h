#pragma once

// Inspector memory for tests without an evaluation. Each block has exactly the bytes that were asked for, so
// that the address sanitizer sees what is written or read behind them.

#include <cstddef>

/// Blocks that were given since the last release.
std::size_t BlocksGiven();
/// Takes all blocks back.
void ReleaseInspectorMemory();
