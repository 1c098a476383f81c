#pragma once

// What look-ups remember between two clearings, so that a query that asks for the same few items over and
// over does not ask the platform each time.

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>

namespace Inspectors {

/// Items by a text and, for a look-up below a folder, that folder. Holds the last `kSlots` items stored: the
/// oldest gives way. Texts compare byte for byte, also where the file system minds no case. The style and the
/// encoding of a path are no part of the key: a path found in one style answers in the other, too.
template <class Item, std::size_t kSlots, class... Base>
class LookupCache {
    static_assert((kSlots & (kSlots - 1)) == 0, "the next slot is found with a mask");

  public:
    /// The item that was stored with the key; null when there is none. Lent until the next Store.
    Item const* Find(std::string_view text, Base const&... base) const {
        auto const end = slots.begin() + static_cast<std::ptrdiff_t>(full);
        auto const found = std::find_if(slots.begin(), end, [&](Slot const& slot) {
            return slot.text == text && slot.base == std::tie(base...);
        });
        return found == end ? nullptr : &found->item;
    }

    void Store(Item const& item, std::string_view text, Base const&... base) {
        slots[next] = {std::tuple<Base...>(base...), std::string(text), item};
        ++next;
        full = std::max(full, next);
        next &= kSlots - 1;
    }

    /// Forgets everything. The items are let go when their slots are used again.
    void Clear() { full = next = 0; }

  private:
    struct Slot {
        std::tuple<Base...> base;
        std::string text;
        Item item;
    };
    std::array<Slot, kSlots> slots;
    std::size_t full = 0;  // slots that hold an item
    std::size_t next = 0;
};

}  // namespace Inspectors
