#pragma once

// One file that is written again and again, in memory where the system has a place for that, and the texts of
// tests as the inspectors take them.

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "Evaluator/Values.h"
#include "filesystem/File.h"

inline ConstData DataOf(std::string_view text) {
    return {reinterpret_cast<unsigned char const*>(text.data()), text.size()};
}

/// Refers to the text, which must outlive it.
inline inspector_string StringOf(std::string_view text) {
    return {DataOf(text).begin(), static_cast<std::uint32_t>(text.size())};
}

inline std::string TextOf(ConstData text) { return {text.begin(), text.end()}; }

class Fork {
  public:
    Fork() : path(NewPath()), descriptor(mkstemp(path.data())), asFile(FileOf(path)) {}
    Fork(Fork const&) = delete;
    Fork& operator=(Fork const&) = delete;
    ~Fork() {
        close(descriptor);
        unlink(path.c_str());
    }

    /// Makes these the bytes of the file.
    void Write(std::string_view bytes) {
        if (pwrite(descriptor, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()) ||
            ftruncate(descriptor, static_cast<off_t>(bytes.size())) != 0)
            throw std::system_error(errno, std::generic_category(), path);
    }
    file const& AsFile() const { return asFile; }

  private:
    static std::string NewPath() {
        std::string const folder = access("/dev/shm", W_OK) == 0
                                       ? std::string("/dev/shm")
                                       : std::filesystem::temp_directory_path().string();
        return std::filesystem::canonical(folder) / "zelq-XXXXXX";
    }
    static file FileOf(std::string const& path) {
        return posix_file_of_world(DataOf(path).begin(), path.size());
    }

    std::string path;
    int descriptor;
    file asFile;
};

/// Bytes as they can be read: those that repeat are counted, and what is long is cut.
inline std::string Dump(std::string_view bytes) {
    constexpr std::size_t kLongest = 1500;
    std::string shown;
    for (std::size_t i = 0; i < bytes.size() && shown.size() < kLongest;) {
        std::size_t const next = bytes.find_first_not_of(bytes[i], i);
        std::size_t const times = std::min(next, bytes.size()) - i;
        auto const byte = static_cast<unsigned char>(bytes[i]);
        char one[8];
        if (byte == '\r' || byte == '\n') {
            std::snprintf(one, sizeof one, "%s", byte == '\r' ? "\\r" : "\\n");
        } else if (byte < ' ' || byte > '~' || byte == '\\') {
            std::snprintf(one, sizeof one, "\\x%02X", byte);
        } else {
            std::snprintf(one, sizeof one, "%c", byte);
        }
        for (std::size_t n = 0; n < (times < 5 ? times : 1); ++n) shown += one;
        if (times >= 5) shown += "{" + std::to_string(times) + "}";
        i += times;
    }
    return '"' + shown + '"' + (shown.size() < kLongest ? "" : " …") + ", " + std::to_string(bytes.size()) +
           " bytes";
}
