#pragma once

// A user with applications of the test's making, and no others.

#include <string>

#include "platform/OwnHome.h"

class OwnApplications : public OwnHome {
  protected:
    /// Writes the entry with an id or a path below a folder of data, such as "home/.local/share", and the
    /// program that it starts.
    void AddEntry(std::string const& data, std::string const& name, std::string const& lines = {}) const {
        Write(data + "/applications/" + name,
              "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=prog %U\n" + lines);
    }
    /// Makes a program, or a file of that name that may not be run.
    std::string AddProgram(std::string const& name, bool mayBeRun = true) const {
        std::string const path = Write(name, "#!/bin/sh\n");
        std::filesystem::permissions(path, std::filesystem::perms(mayBeRun ? 0755 : 0644));
        return path;
    }

    static constexpr char const* own = "home/.local/share";
    static constexpr char const* first = "first";
    static constexpr char const* second = "second";

    Variable const ownData{"XDG_DATA_HOME", std::nullopt};
    Variable const data{"XDG_DATA_DIRS", here.MakeFolder("first") + ":" + here.MakeFolder("second")};
    Variable const desktop{"XDG_CURRENT_DESKTOP", "One:Two"};
    Variable const path{"PATH", here.MakeFolder("bin") + ":" + here.MakeFolder("other bin") +
                                    ":/usr/local/bin:/usr/bin:/bin"};
    std::string const program = AddProgram("bin/prog");
};
