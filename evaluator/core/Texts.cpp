// Strings: bytes, compared as such.

#include <algorithm>
#include <charconv>
#include <cstring>
#include <functional>
#include <string_view>

#include "Evaluator/Context.h"
#include "Evaluator/Exceptions.h"
#include "Evaluator/Text.h"
#include "core/Rows.h"

namespace Evaluator {
namespace {

std::string_view View(inspector_string const& text) {
    return {reinterpret_cast<char const*>(text.begin()), text.length};
}

// ---- Relations

int Order(inspector_string const& a, inspector_string const& b) {
    std::size_t common = std::min(a.length, b.length);
    int order = common == 0 ? 0 : std::memcmp(a.bytes, b.bytes, common);
    return order != 0 ? order : (a.length > b.length) - (a.length < b.length);
}
int TextOrder(void const* left, void const* right) {
    return Order(*static_cast<inspector_string const*>(left), *static_cast<inspector_string const*>(right));
}
std::uint64_t TextHash(void const* value) {
    return std::hash<std::string_view>()(View(*static_cast<inspector_string const*>(value)));
}
boolean EqualText(inspector_string const& a, inspector_string const& b) { return Order(a, b) == 0; }
boolean LessText(inspector_string const& a, inspector_string const& b) { return Order(a, b) < 0; }
boolean LessOrEqualText(inspector_string const& a, inspector_string const& b) { return Order(a, b) <= 0; }
boolean ContainsText(inspector_string const& a, inspector_string const& b) { return Contains(a, b); }
boolean StartsWithText(inspector_string const& a, inspector_string const& b) { return StartsWith(a, b); }
boolean EndsWithText(inspector_string const& a, inspector_string const& b) {
    return View(a).ends_with(View(b));
}

// ---- Casts

// Decimal digits, with a minus before them for a negative number, and nothing else.
integer TextAsInteger(inspector_string const& text) {
    long long number = 0;
    std::string_view digits = View(text);
    char const* end = digits.data() + digits.size();
    auto [stopped, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stopped != end) throw NoSuchObject();
    return number;
}

template <Data (*fold)(ConstData, Data)>
inspector_string Folded(inspector_string const& text) {
    Data room(static_cast<unsigned char*>(Allocate_Inspector_Memory(text.length)), text.length);
    fold(text, room);
    return {room.begin(), text.length};
}

// ---- Parts. They lie in the text that they are parts of.

inspector_string Part(inspector_string const& text, std::size_t begin, std::size_t end) {
    return {text.begin() + begin, static_cast<std::uint32_t>(end - begin)};
}

// Where `index` occurs first in the text from `from` on; npos for nowhere. An empty index is no such object.
std::size_t Find(inspector_string const& index, inspector_string const& text, std::size_t from = 0) {
    if (index.length == 0) throw NoSuchObject();
    return View(text).find(View(index), from);
}

std::size_t FindOccurring(inspector_string const& index, inspector_string const& text) {
    std::size_t at = Find(index, text);
    if (at == std::string_view::npos) throw NoSuchObject();
    return at;
}

integer Length(inspector_string const& text) { return text.length; }
inspector_string Before(inspector_string const& index, inspector_string const& text) {
    return Part(text, 0, FindOccurring(index, text));
}
inspector_string After(inspector_string const& index, inspector_string const& text) {
    return Part(text, FindOccurring(index, text) + index.length, text.length);
}

// The parts between the occurrences of a separator; one more than there are of these.
class SeparatedParts {
  public:
    inspector_string First(inspector_string const& separator, inspector_string const& text) {
        return Next(separator, text);
    }
    inspector_string Next(inspector_string const& separator, inspector_string const& text) {
        if (ended) throw NoSuchObject();
        std::size_t begin = at, end = Find(separator, text, at);
        ended = end == std::string_view::npos;
        if (ended) return Part(text, begin, text.length);
        at = end + separator.length;
        return Part(text, begin, end);
    }

  private:
    std::size_t at = 0;
    bool ended = false;
};

// ---- Tables

constexpr TypeRow kTypes[] = {
    {"string", sizeof(inspector_string), true, TextOrder, TextHash},
};
constexpr PropertyRow kProperties[] = {
    {"length", "lengths", "", "string", "integer", Adapted<Length>::GetOf},
    {"substring before", "substrings before", "string", "string", "string", Adapted<Before>::GetIndexedOf},
    {"substring after", "substrings after", "string", "string", "string", Adapted<After>::GetIndexedOf},
};
constexpr IteratedRow kIterated[] = {
    Iterated<SeparatedParts, inspector_string, inspector_string, inspector_string>::Row(
        "substring separated by", "substrings separated by"),
};
constexpr CastRow kCasts[] = {
    {"integer", "string", "integer", Adapted<TextAsInteger>::Cast},
    {"uppercase", "string", "string", Adapted<Folded<Ascii::RaiseCase>>::Cast},
    {"lowercase", "string", "string", Adapted<Folded<Ascii::LowerCase>>::Cast},
};
constexpr OperatorRow kOperators[] = {
    Row<Concatenate>(kOperatorJoin),      Row<EqualText>(kRelationEqual),
    Row<LessText>(kRelationLess),         Row<LessOrEqualText>(kRelationLessOrEqual),
    Row<ContainsText>(kRelationContains), Row<StartsWithText>(kRelationStartsWith),
    Row<EndsWithText>(kRelationEndsWith),
};

}  // namespace

inspector_string CoreText(std::string_view text) {
    return MakeString(ConstData(reinterpret_cast<unsigned char const*>(text.data()), text.size()));
}

CorePart Texts() { return {kTypes, kProperties, kIterated, kCasts, kOperators}; }

}  // namespace Evaluator
