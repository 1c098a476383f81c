#pragma once

// Variables of the environment that tests change for a while.

#include <stdlib.h>

#include <optional>
#include <string>

/// Gives a variable of the environment a value, or none, as long as one lives.
class Variable {
  public:
    Variable(char const* variable, std::optional<std::string> value) : name(variable) {
        if (char const* const now = getenv(name); now != nullptr) former = now;
        Set(value);
    }
    Variable(Variable const&) = delete;
    Variable& operator=(Variable const&) = delete;
    ~Variable() { Set(former); }

    void Set(std::optional<std::string> const& value) const {
        if (value) {
            setenv(name, value->c_str(), 1);
        } else {
            unsetenv(name);
        }
    }

  private:
    char const* const name;
    std::optional<std::string> former;
};
