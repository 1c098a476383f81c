#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

/// While it lives the process is in another time zone.
class TimeZone {
  public:
    explicit TimeZone(char const* name) {
        if (char const* now = std::getenv("TZ")) before = now;
        Set(name);
    }
    ~TimeZone() { Set(before ? before->c_str() : nullptr); }
    TimeZone(TimeZone const&) = delete;
    TimeZone& operator=(TimeZone const&) = delete;

  private:
    static void Set(char const* name) {
        if (name != nullptr) {
            setenv("TZ", name, 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

    std::optional<std::string> before;
};
