#pragma once

// Where the test program is. Found out before main: a process in namespaces of its own may not see it any
// more.

#include <filesystem>

inline std::filesystem::path const ownPath = std::filesystem::canonical("/proc/self/exe");
