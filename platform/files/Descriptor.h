#pragma once

// Open files and folders.

#include <unistd.h>

#include <memory>

namespace Platform {

/// An open file or folder; closed with its last owner.
class Descriptor {
  public:
    explicit Descriptor(int open) : number(open) {}
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    ~Descriptor() { close(number); }
    int Number() const { return number; }

  private:
    int const number;
};
using SharedDescriptor = std::shared_ptr<Descriptor const>;

}  // namespace Platform
