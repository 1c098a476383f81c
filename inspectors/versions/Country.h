#pragma once

// The region codes of the script manager.

#include <cstdint>

struct country {
    std::uint32_t code;
};

bool operator==(country const& left, country const& right);

/// The region of a constant's name, such as "verFrance", letter for letter. NoSuchObject for any other name.
country country_of(unsigned char const* name, unsigned long length);
