#pragma once

// Random files for the line and section inspectors, and random texts to ask for. The same from the same seed,
// whatever the library.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

class RandomFiles {
  public:
    explicit RandomFiles(std::uint64_t seed) : engine(seed) {}

    /// A number from 0 to `behind` - 1.
    std::size_t Below(std::size_t behind) { return engine() % behind; }
    bool OneIn(std::size_t chances) { return Below(chances) == 0; }

    /// Up to some 200 bytes.
    std::string Small();
    /// Of these bytes, of about one kind.
    std::string OfSize(std::size_t size);
    /// Some buffers of a size long, with line endings where buffers are full, one byte before and behind.
    std::string EndingAtBufferEnds(std::size_t bufferSize);
    /// Lines with headers, keys and values.
    std::string Settings(std::size_t lines);
    /// Puts line endings at the multiples of a number, or beside them.
    void PutEndingsAround(std::string& file, std::size_t multiple);

    /// A text that is in the file, nearly in it, or anything else.
    std::string TextFor(std::string_view file);
    /// A name of a section or a key, as settings have them.
    std::string Name();

  private:
    std::string Ending();
    std::string Filling(std::size_t size);
    template <std::size_t count>
    std::string OneOf(char const* const (&texts)[count]) {
        return texts[Below(count)];
    }

    std::mt19937_64 engine;
};
