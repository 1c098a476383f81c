#pragma once

// The records of Carbon/InternetConfig.h as bytes.

#include <string>

namespace Platform {

/// The bytes of a record as they lie in memory.
template <class Record>
std::string BytesOf(Record const& record) {
    return {reinterpret_cast<char const*>(&record), sizeof record};
}

}  // namespace Platform
