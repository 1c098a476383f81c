// Any bytes as two texts of versions: read as the plain rules read them, shown so that they can be read
// again, and in an order.

#include "versions/Version.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "Invariants.h"
#include "Memory.h"

namespace {

ConstData Bytes(std::string_view text) {
    return {reinterpret_cast<unsigned char const*>(text.data()), text.size()};
}

bool AreSame(MacVersion const& left, MacVersion const& right) {
    return left.major == right.major && left.minor == right.minor && left.bugrev == right.bugrev &&
           left.stage == right.stage && left.nonrel == right.nonrel && left.text == right.text;
}

int Sign(int number) { return (number > 0) - (number < 0); }

// ---- The plain rules: N N.N N.N.N N.NS N.NSN N.N.NS N.N.NSN N.N.N.N

// Reads a text from the left.
class Reader {
  public:
    explicit Reader(std::string_view text) : rest(text) {}

    bool IsAtEnd() const { return rest.empty(); }
    bool Take(char c) {
        if (rest.empty() || rest[0] != c) return false;
        rest.remove_prefix(1);
        return true;
    }
    /// A number up to 65535; nothing when there is none, or a larger one.
    std::optional<std::uint16_t> Number() {
        std::uint32_t number = 0;
        bool isThere = false;
        for (; !rest.empty() && rest[0] >= '0' && rest[0] <= '9'; rest.remove_prefix(1)) {
            isThere = true;
            number = std::min(number * 10 + static_cast<std::uint32_t>(rest[0] - '0'), 65536u);
        }
        if (!isThere || number > 65535) return std::nullopt;
        return static_cast<std::uint16_t>(number);
    }
    std::optional<std::uint8_t> Stage() {
        static constexpr std::string_view kLetters = "dDaAbBfF";
        std::size_t const which = rest.empty() ? std::string_view::npos : kLetters.find(rest[0]);
        if (which == std::string_view::npos) return std::nullopt;
        rest.remove_prefix(1);
        return static_cast<std::uint8_t>(0x20 * (which / 2 + 1));
    }

  private:
    std::string_view rest;
};

// The numbers of a text that is of one of the forms.
std::optional<MacVersion> Recognise(std::string_view text) {
    MacVersion version;
    Reader reader(text);
    auto const read = [&](std::uint16_t& field) {
        auto const number = reader.Number();
        if (number) field = *number;
        return number.has_value();
    };
    auto const whole = [&] { return reader.IsAtEnd() ? std::optional(version) : std::nullopt; };
    if (!read(version.major)) return std::nullopt;
    if (!reader.Take('.')) return whole();
    if (!read(version.minor)) return std::nullopt;
    bool const hasBug = reader.Take('.');
    if (hasBug && !read(version.bugrev)) return std::nullopt;
    if (hasBug && reader.Take('.')) {
        version.stage = 0xA0;
        if (!read(version.nonrel)) return std::nullopt;
    } else if (auto const stage = reader.Stage()) {
        version.stage = *stage;
        if (!reader.IsAtEnd() && !read(version.nonrel)) return std::nullopt;
    }
    return whole();
}

MacVersion Expected(std::string_view text) {
    if (auto const version = Recognise(text)) return *version;
    MacVersion textual;
    textual.text = text;
    return textual;
}

// ---- What holds

void HoldReading(std::string_view text, MacVersion const& version) {
    Fuzz::Hold(AreSame(version, Expected(text)), "a version is that of the plain rules");
    Fuzz::Hold(AreSame(version, TextToVersion(Bytes(text))), "a text is always the same version");
    std::string const shown = VersionToString(version);
    inspector_string const string = versionAsString(version);
    Fuzz::Hold(std::string(string.begin(), string.end()) == shown, "the string of a version is its text");
    MacVersion const again = TextToVersion(Bytes(shown));
    // With a bug revision of 0 the fourth number comes to stand in its place.
    bool const isShifted = version.stage == 0xA0 && version.bugrev == 0 && version.nonrel != 0;
    Fuzz::Hold(isShifted || version == again, "the text of a version is of an equal one");
    Fuzz::Hold(!version.text.empty() || again.text.empty(), "the text of a numeric version is that of one");
}

void HoldOrder(MacVersion const& left, MacVersion const& right) {
    int const order = Sign(CompareVersions(left, right));
    Fuzz::Hold(order == -Sign(CompareVersions(right, left)), "the order is the same from either side");
    Fuzz::Hold(CompareVersions(left, left) == 0, "a version is equal to itself");
    Fuzz::Hold((left == right) == (order == 0), "equal is of order 0");
    Fuzz::Hold((left < right) == (order < 0), "less is of order below 0");
    Fuzz::Hold((left <= right) == (order < 1), "less or equal is of order below 1");
}

// Relations hold of a version and a string, on either side, as they do of its version.
void HoldStrings(MacVersion const& left, std::string_view text, MacVersion const& right) {
    inspector_string const string(Bytes(text).begin(), static_cast<std::uint32_t>(text.size()));
    Fuzz::Hold((left == string) == (left == right) && (left < string) == (left < right) &&
                   (left <= string) == (left <= right),
               "a string on the right compares as its version");
    Fuzz::Hold((string == left) == (right == left) && (string < left) == (right < left) &&
                   (string <= left) == (right <= left),
               "a string on the left compares as its version");
}

// Bytes as what a resource holds: every stage, with every number.
MacVersion FromResource(std::string_view bytes) {
    auto const at = [&](std::size_t place) {
        return place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0u;
    };
    MacVersion version;
    version.major = static_cast<std::uint16_t>(at(0));
    version.minor = static_cast<std::uint16_t>(at(1) >> 4);
    version.bugrev = static_cast<std::uint16_t>(at(1) & 15);
    version.stage = static_cast<std::uint8_t>(at(2));
    version.nonrel = static_cast<std::uint16_t>(at(3));
    return version;
}

}  // namespace

// The first byte says how long the first text is, and the second one is what is left.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const bytes(data, data + size);
    std::size_t const length = size == 0 ? 0 : std::min<std::size_t>(data[0] % 64, size - 1);
    std::string const first = bytes.substr(std::min<std::size_t>(size, 1), length);
    std::string const second = bytes.substr(std::min(size, 1 + length));

    MacVersion const left = TextToVersion(Bytes(first));
    MacVersion const right = TextToVersion(Bytes(second));
    HoldReading(first, left);
    HoldReading(second, right);
    HoldOrder(left, right);
    HoldStrings(left, second, right);
    MacVersion const stored = FromResource(second);
    Fuzz::Hold(VersionToString(stored).size() <= 24, "the text of a numeric version is short");
    HoldOrder(stored, left);
    ReleaseInspectorMemory();
    return 0;
}
