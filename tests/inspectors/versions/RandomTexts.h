#pragma once

// Random texts that are versions, or nearly. The same from the same seed, whatever the library.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

class RandomTexts {
  public:
    explicit RandomTexts(std::uint64_t seed) : engine(seed) {}

    /// A number from 0 to `behind` - 1.
    std::size_t Below(std::size_t behind) { return engine() % behind; }
    bool OneIn(std::size_t chances) { return Below(chances) == 0; }

    /// One of the next four.
    std::string Any();
    /// Of one of the forms, with small numbers, large ones and some that are too large.
    std::string Version();
    /// A version with one to three bytes changed, added or taken away.
    std::string NearVersion();
    /// Numbers, letters, periods and words in any order.
    std::string Tokens();
    /// Any bytes.
    std::string AnyBytes();

  private:
    std::string Number();
    std::string Letter();
    char Byte();

    std::mt19937_64 engine;
};
