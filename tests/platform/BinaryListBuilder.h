#pragma once

// Binary property lists for tests, object by object; also ones that no writer would make.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

inline std::string BigEndian(std::uint64_t number, std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = size; i > 0 && number > 0; --i, number >>= 8)
        bytes[i - 1] = static_cast<char>(number);
    return bytes;
}

class BinaryList {
  public:
    std::size_t offsetSize = 2, referenceSize = 1;
    std::uint64_t root = 0;

    /// Adds an object by its bytes, the marker first, and returns its number.
    std::size_t Add(std::string const& object) {
        offsets.push_back(kHeader.size() + objects.size());
        objects += object;
        return offsets.size() - 1;
    }
    /// A container's references, one after the other.
    std::string References(std::vector<std::size_t> const& numbers) const {
        std::string bytes;
        for (std::size_t const number : numbers) bytes += BigEndian(number, referenceSize);
        return bytes;
    }
    std::size_t AddArray(std::vector<std::size_t> const& elements) {
        return Add(Sized(0xA0, elements.size()) + References(elements));
    }
    /// Makes the entry of an object in the table lead elsewhere.
    void Misplace(std::size_t number, std::uint64_t offset) { offsets[number] = offset; }
    std::uint64_t OffsetOf(std::size_t number) const { return offsets[number]; }

    /// A marker with its size, behind it if need be.
    static std::string Sized(unsigned marker, std::size_t size) {
        std::string const front(1, static_cast<char>(marker | (size < 15 ? size : 15)));
        return size < 15 ? front : front + '\x12' + BigEndian(size, 4);
    }

    std::string Bytes() const {
        std::string table;
        for (std::uint64_t const offset : offsets) table += BigEndian(offset, offsetSize);
        return std::string(kHeader) + objects + table +
               Trailer(offsets.size(), kHeader.size() + objects.size());
    }
    std::string Trailer(std::uint64_t count, std::uint64_t tableOffset) const {
        return std::string(6, '\0') + static_cast<char>(offsetSize) + static_cast<char>(referenceSize) +
               BigEndian(count, 8) + BigEndian(root, 8) + BigEndian(tableOffset, 8);
    }

  private:
    static constexpr std::string_view kHeader = "bplist00";
    std::string objects;
    std::vector<std::uint64_t> offsets;
};
