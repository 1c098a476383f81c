#pragma once

// Tests of what depends on the user's settings, which have a home of their own and no other settings.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/TemporaryFolder.h"
#include "support/Variable.h"

class OwnHome : public testing::Test {
  protected:
    /// Writes a file with the folders above it, and returns its path.
    std::string Write(std::string const& name, std::string_view bytes) const {
        here.MakeFolder(std::filesystem::path(name).parent_path().string());
        return here.Write(name, bytes);
    }

    TemporaryFolder const here;
    Variable const home{"HOME", here.MakeFolder("home")};
    Variable const userFolder{"XDG_CONFIG_HOME", std::nullopt};
    Variable const commonFolders{"XDG_CONFIG_DIRS", here.Path("xdg")};
    Variable const machine{"ZELQ_MACHINE_ROOT", here.MakeFolder("machine")};
    Variable const gnustep{"GNUSTEP_CONFIG_FILE", here.Path("GNUstep.conf")};
    Variable const languages{"LANGUAGE", std::nullopt};
    Variable const allLocales{"LC_ALL", std::nullopt};
    Variable const messages{"LC_MESSAGES", std::nullopt};
    Variable const locale{"LANG", std::nullopt};
};
