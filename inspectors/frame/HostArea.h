#pragma once

// The front of every registration record.

#include <cstddef>

namespace Inspectors {

/// The host's own bytes in a record, which this side never reads or writes. A record's address is its
/// identity, so records are neither copied nor moved.
template <unsigned long size>
class HostArea {
  public:
    HostArea(HostArea const&) = delete;
    HostArea& operator=(HostArea const&) = delete;

  protected:
    HostArea() = default;
    ~HostArea() = default;

  private:
    alignas(void*) std::byte bytes[size] = {};
};

}  // namespace Inspectors
