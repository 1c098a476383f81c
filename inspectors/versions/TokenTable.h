#pragma once

// Tables of words and what they stand for.

#include <cstddef>
#include <iterator>
#include <string_view>

#include "Evaluator/Text.h"

/// A constant table that is searched by name. It lends an array of associations, which must outlive it:
/// sorted ascending by the bytes of their names, and ended by one without a name, whose value is the default.
template <class T>
class TokenTable {
  public:
    struct Association {
        char const* name;  // null in the last one
        T value;
    };

    template <std::size_t size>
    explicit TokenTable(Association const (&associations)[size])
        : first(associations), end(associations + size - 1), defaultValue(&end->value) {}

    /// The value of a name; null when the table does not have it.
    T const* LookFor(ConstData text) const {
        std::size_t low = 0;
        std::size_t high = static_cast<std::size_t>(end - first);
        while (low < high) {
            std::size_t const middle = (low + high) / 2;
            int const order = Compare(first[middle].name, text);
            if (order == 0) return &first[middle].value;
            if (order < 0) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return nullptr;
    }

    /// The value of a name, or the default.
    T const& operator[](ConstData text) const {
        T const* const value = LookFor(text);
        return value != nullptr ? *value : *defaultValue;
    }

    /// Whether an array is as the table needs it.
    template <std::size_t size>
    static constexpr bool IsInOrder(Association const (&associations)[size]) {
        for (std::size_t i = 0; i + 1 < size; ++i) {
            if (associations[i].name == nullptr) return false;
            if (i > 0 && std::string_view(associations[i - 1].name) >= associations[i].name) return false;
        }
        return associations[size - 1].name == nullptr;
    }

  private:
    Association const* first;
    Association const* end;
    T const* defaultValue;
};
