#pragma once

// A folder of a test's own, which goes with everything in it when the test ends.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/xattr.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern =
            (std::filesystem::canonical(std::filesystem::temp_directory_path()) / "zelq-XXXXXX");
        path = mkdtemp(pattern.data());
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    /// The absolute path of the folder, or of something in it; without symbolic links above it.
    std::string const& Path() const { return path; }
    std::string Path(std::string_view name) const { return path + "/" + std::string(name); }

    /// These make something in the folder and return its path.
    std::string Write(std::string_view name, std::string_view bytes = {}) const {
        std::ofstream file(Path(name), std::ios::binary);
        file << bytes;
        EXPECT_TRUE(file.flush()) << name;
        return Path(name);
    }
    std::string MakeFolder(std::string_view name) const {
        std::filesystem::create_directories(Path(name));
        return Path(name);
    }
    std::string Link(std::string_view name, std::string const& target) const {
        std::filesystem::create_symlink(target, Path(name));
        return Path(name);
    }
    void SetAttribute(std::string_view name, char const* attribute, std::string_view value) const {
        EXPECT_EQ(0, setxattr(Path(name).c_str(), attribute, value.data(), value.size(), 0))
            << "the temporary folder's file system must take attributes of users";
    }

  private:
    std::string path;
};
