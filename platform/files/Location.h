#pragma once

// Where an item is and how it is to be described.

#include <cstdint>

#include "foundation/Path.h"

namespace Platform {

/// How an item is described whose last component is a symbolic link.
enum class LinkRule : std::uint8_t {
    Follow,  // by what it leads to; by itself when that cannot be reached
    Listed,  // the same, but a link to a folder by itself: a listing does not enter it
    Itself,  // by itself
};

struct Location {
    Path path;  // plain
    LinkRule rule = LinkRule::Follow;
};

}  // namespace Platform
