#pragma once

// Domains: whose a special folder is.

#include <Carbon/Folders.h>

/// A domain, by the platform's code.
struct domain {
    SInt16 code;
};

/// The domain of a code.
template <SInt16 code>
domain domain_of_world() {
    return {code};
}
