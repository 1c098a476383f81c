#pragma once

// Files that are read, and what is thrown then.

#include <cxxabi.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <typeinfo>

#include "content/FileReading.h"
#include "filesystem/Asking.h"

inline MacintoshPlatform::FileLocation At(std::string const& path) {
    return MacintoshPlatform::FileLocation(NewURL(path));
}

/// The mangled name of the class that a call throws, which is not one of its bases; "" when it returns.
template <class Call>
std::string Thrown(Call const& call) {
    try {
        call();
    } catch (...) {
        return abi::__cxa_current_exception_type()->name();
    }
    return {};
}
template <class Exception>
std::string Name() {
    return typeid(Exception).name();
}

/// How many files the process has open.
inline std::ptrdiff_t OpenFiles() {
    std::filesystem::directory_iterator const files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

/// Makes a file of that size in the folder, which takes no room, with some bytes at its end.
inline std::string WriteSparse(TemporaryFolder const& folder, std::uintmax_t size, std::string_view end) {
    std::string path = folder.Write("sparse");
    std::filesystem::resize_file(path, size - end.size());
    std::ofstream(path, std::ios::binary | std::ios::app) << end;
    return path;
}
