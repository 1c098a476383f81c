// Old-style property lists, read from left to right:
//
//   { name = "a text"; list = (one, 'two'); bytes = <0fbd 77>; key; }   // a comment  /* another */
//
// and what .strings files are, a dictionary's content without braces. Values of the types that only GNUstep
// writes in this format are known too: <*I5>, <*R1.5>, <*BY> and <*D2001-01-01 00:00:00 +0000>, as is data in
// base64, <[D713]>.
//
// What is taken although it should not be there, or missing: the ';' before the '}' or the text's end, where
// a value stands before it, and a ',' behind the last element of an array.

#include <algorithm>
#include <array>
#include <string>

#include "foundation/Data.h"
#include "foundation/Date.h"
#include "foundation/TextCodec.h"
#include "propertylists/NextStepLatin.h"
#include "propertylists/PendingObjects.h"
#include "propertylists/PropertyLists.h"
#include "propertylists/Scalars.h"
#include "propertylists/StringTable.h"

namespace Platform {

namespace {

// Characters of strings without quotes.
constexpr std::array<bool, 256> kIsPlain = [] {
    std::array<bool, 256> plain{};
    for (char const character :
         std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_$/:.-"))
        plain[static_cast<unsigned char>(character)] = true;
    return plain;
}();

bool IsPlain(char character) { return kIsPlain[static_cast<unsigned char>(character)]; }

bool IsQuote(char character) { return character == '"' || character == '\''; }

// A digit's value; -1 for what is none.
int HexadecimalDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    char const letter = static_cast<char>(character | 0x20);
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

bool IsOctalDigit(char character) { return character >= '0' && character <= '7'; }

// What an escape of one letter stands for; the letter itself where it has no meaning of its own.
char16_t OfEscape(char letter) {
    constexpr std::string_view letters = "abfnrtv";
    constexpr std::u16string_view characters = u"\a\b\f\n\r\t\v";
    std::size_t const at = letters.find(letter);
    return at == letters.npos ? static_cast<unsigned char>(letter) : characters[at];
}

class TextReader {
  public:
    explicit TextReader(std::string_view list) : text(list) {}

    CFTypeRef Read() {
        RefuseOtherThanUtf8();
        SkipSpace();
        if (IsAtEnd()) return NewDictionary({});
        bool const isString = IsStringNext();
        ReadObject();
        SkipSpace();
        if (IsAtEnd()) return pending.Pop();
        if (!isString) Refuse("the end of the text is expected behind the list, not " + Met());
        return ReadContent();
    }

  private:
    std::string_view const text;
    std::size_t at = 0;  // what was read
    unsigned levels = 0;
    PendingObjects pending;
    StringTable strings;

    // Errors.

    std::string LineOf(std::size_t place) const {
        std::size_t line = 1;
        for (std::size_t i = 0; i < place; ++i) {
            bool const isBreak = text[i] == '\n' || (text[i] == '\r' && text.substr(i + 1, 1) != "\n");
            line += isBreak ? 1 : 0;
        }
        return std::to_string(line);
    }

    [[noreturn]] void RefuseAt(std::size_t place, std::string const& reason) const {
        throw PropertyListError("line " + LineOf(place) + ": " + reason);
    }
    [[noreturn]] void Refuse(std::string const& reason) const { RefuseAt(at, reason); }
    [[noreturn]] void RefuseString(std::size_t begin) const {
        RefuseAt(begin, "the string that begins here has no end");
    }

    // What is at hand, in words.
    std::string Met() const {
        if (IsAtEnd()) return "the end of the text";
        auto const first = static_cast<unsigned char>(text[at]);
        if (first < 0x20 || first == 0x7F) return "the control character " + std::to_string(first);
        std::size_t size = 1;
        while (at + size < text.size() && (text[at + size] & 0xC0) == 0x80) ++size;
        return "\"" + std::string(text.substr(at, size)) + "\"";
    }

    // Line by line, so that a long text needs little memory.
    void RefuseOtherThanUtf8() const {
        for (std::size_t from = 0; from < text.size();) {
            std::size_t const size = std::min(text.find_first_of("\r\n", from), text.size() - 1) + 1 - from;
            std::string_view const line = text.substr(from, size);
            if (!IsAscii(line) && !DecodeText(line, kCFStringEncodingUTF8, false))
                RefuseAt(from, "the text is not UTF-8");
            from += size;
        }
    }

    // Steps.

    bool IsAtEnd() const { return at == text.size(); }
    bool IsNext(char character) const { return !IsAtEnd() && text[at] == character; }
    bool IsNext(std::string_view characters) const { return text.substr(at).starts_with(characters); }
    bool IsStringNext() const { return !IsAtEnd() && (IsPlain(text[at]) || IsQuote(text[at])); }

    bool Take(char character) {
        if (!IsNext(character)) return false;
        ++at;
        return true;
    }

    // The text from here to a character, which it takes too.
    std::string_view TakeUntil(char end, char const* what) {
        std::size_t const from = at, to = text.find(end, from);
        if (to == text.npos) Refuse(std::string(what) + " that begins here has no end");
        at = to + 1;
        return text.substr(from, to - from);
    }

    void SkipSpace() {
        while (SkipWhite() || SkipComment()) {
        }
    }

    bool SkipWhite() {
        std::size_t const from = at;
        for (;;) {
            if (!IsAtEnd() && (text[at] == ' ' || (text[at] >= '\t' && text[at] <= '\r'))) {
                ++at;
            } else if (IsNext("\u2028") || IsNext("\u2029")) {
                at += 3;
            } else {
                return at != from;
            }
        }
    }

    bool SkipComment() {
        if (IsNext("//")) {
            at = std::min(text.find_first_of("\r\n", at), text.size());
            return true;
        }
        if (!IsNext("/*")) return false;
        std::size_t const end = text.find("*/", at + 2);
        if (end == text.npos) Refuse("the comment that begins here has no end");
        at = end + 2;
        return true;
    }

    // Objects: each goes onto the stack.

    void ReadObject() {
        if (IsStringNext()) {
            ReadString(false);
        } else if (IsNext('{')) {
            ReadContainer(&TextReader::ReadDictionary);
        } else if (IsNext('(')) {
            ReadContainer(&TextReader::ReadArray);
        } else if (IsNext('<')) {
            ReadBracketed();
        } else {
            Refuse("a string, data, array or dictionary is expected, not " + Met());
        }
    }

    void ReadContainer(void (TextReader::*read)(std::size_t)) {
        if (levels == kMostLevels) RefuseLevels();
        ++levels;
        std::size_t const begin = at++;
        (this->*read)(begin);
        --levels;
    }

    void ReadArray(std::size_t begin) {
        std::size_t const from = pending.Size();
        for (;;) {
            SkipSpace();
            if (Take(')')) return pending.MakeArray(from);
            if (IsAtEnd()) RefuseAt(begin, "the array that begins here has no end");
            ReadObject();
            SkipSpace();
            if (!Take(',') && !IsNext(')') && !IsAtEnd())
                Refuse("\",\" or \")\" is expected behind an element, not " + Met());
        }
    }

    void ReadDictionary(std::size_t begin) {
        std::size_t const from = pending.Size();
        for (;;) {
            SkipSpace();
            if (Take('}')) return pending.MakeDictionary(from);
            if (IsAtEnd()) RefuseAt(begin, "the dictionary that begins here has no end");
            ReadEntry('}');
        }
    }

    // The content of a dictionary that is the whole text.
    CFTypeRef ReadContent() {
        CFRelease(pending.Pop());
        at = 0;
        levels = 1;
        for (SkipSpace(); !IsAtEnd(); SkipSpace()) ReadEntry('\0');
        pending.MakeDictionary(0);
        return pending.Pop();
    }

    void ReadEntry(char end) {
        if (!IsStringNext()) Refuse("a key is expected, not " + Met());
        ReadString(true);
        SkipSpace();
        if (!Take('=')) {
            if (!Take(';')) Refuse("\"=\" or \";\" is expected behind a key, not " + Met());
            pending.Push(CFRetain(pending.Top()));
            return;
        }
        SkipSpace();
        ReadObject();
        SkipSpace();
        if (!Take(';') && !IsNext(end) && !IsAtEnd())
            Refuse("\";\" is expected behind a value, not " + Met());
    }

    // Strings.

    void ReadString(bool isKey) {
        if (IsQuote(text[at])) return ReadQuoted(isKey);
        std::size_t const from = at;
        while (!IsAtEnd() && IsPlain(text[at])) ++at;
        PushString(text.substr(from, at - from), isKey);
    }

    void PushString(std::string_view string, bool isKey) {
        // Short values, which cost more than their text, are shared as keys are.
        constexpr std::size_t shortest = 16;
        pending.Push(isKey || string.size() < shortest ? strings.Get(string) : NewUtf8String(string));
    }

    void ReadQuoted(bool isKey) {
        std::size_t const begin = at++;
        char const stops[] = {text[begin], '\\'};
        std::size_t const end = text.find_first_of({stops, 2}, at);
        if (end == text.npos) RefuseString(begin);
        if (text[end] == '\\') return ReadEscaped(begin);
        PushString(text.substr(at, end - at), isKey);
        at = end + 1;
    }

    void ReadEscaped(std::size_t begin) {
        std::u16string units;
        char const stops[] = {text[begin], '\\'};
        for (;;) {
            std::size_t const stop = text.find_first_of({stops, 2}, at);
            if (stop == text.npos || text.substr(stop) == "\\") RefuseString(begin);
            units += *DecodeText(text.substr(at, stop - at), kCFStringEncodingUTF8, false);
            at = stop + 1;
            if (text[stop] != '\\') break;
            AddEscape(units);
        }
        pending.Push(NewString(units));
    }

    // What is behind a backslash, which is not the text's last character.
    void AddEscape(std::u16string& units) {
        if (IsOctalDigit(text[at])) {
            units += TakeOctal();
        } else if (IsNext('U') ||
                   (IsNext('u') && at + 1 < text.size() && HexadecimalDigit(text[at + 1]) >= 0)) {
            units += TakeUnit();
        } else if (static_cast<unsigned char>(text[at]) < 0x80) {
            units += OfEscape(text[at++]);
        }
    }

    char16_t TakeOctal() {
        unsigned number = 0;
        std::size_t const from = at;
        while (at - from < 3 && !IsAtEnd() && IsOctalDigit(text[at]))
            number = 8 * number + static_cast<unsigned>(text[at++] - '0');
        if (number > 0xFF)
            Refuse("the escape \"\\" + std::string(text.substr(from, at - from)) + "\" is no character");
        return FromNextStepLatin(static_cast<unsigned char>(number));
    }

    char16_t TakeUnit() {
        unsigned number = 0;
        std::size_t const from = ++at;
        for (int digit; at - from < 4 && !IsAtEnd() && (digit = HexadecimalDigit(text[at])) >= 0; ++at)
            number = 16 * number + static_cast<unsigned>(digit);
        if (at == from) Refuse("hexadecimal digits are expected in an escape, not " + Met());
        return static_cast<char16_t>(number);
    }

    // What stands in angle brackets.

    void ReadBracketed() {
        std::size_t const begin = at++;
        if (Take('*')) {
            ReadTyped(begin);
        } else if (Take('[')) {
            auto const bytes = DecodeBase64(TakeUntil(']', "data"));
            if (!bytes || !Take('>')) RefuseAt(begin, "data that begins here is not base64 up to \"]>\"");
            pending.Push(NewData(*bytes));
        } else {
            ReadData();
        }
    }

    void ReadData() {
        std::vector<UInt8> bytes;
        int former = -1;  // the first digit of a byte
        for (SkipWhite(); !Take('>'); SkipWhite()) {
            int const digit = IsAtEnd() ? -1 : HexadecimalDigit(text[at]);
            if (digit < 0) Refuse("a hexadecimal digit or \">\" is expected in data, not " + Met());
            ++at;
            if (former >= 0) bytes.push_back(static_cast<UInt8>(16 * former + digit));
            former = former >= 0 ? -1 : digit;
        }
        if (former >= 0) Refuse("data has an odd number of digits");
        pending.Push(NewData(bytes));
    }

    void ReadTyped(std::size_t begin) {
        std::string_view value = TakeUntil('>', "a value");
        char const type = value.empty() ? '\0' : value.front();
        value.remove_prefix(value.empty() ? 0 : 1);
        if (value.size() > 1 && value.front() == '"' && value.back() == '"')
            value = value.substr(1, value.size() - 2);
        CFTypeRef const object = NewTyped(type, value);
        if (object == nullptr)
            RefuseAt(begin, "no value of a known type: \"" +
                                std::string(Excerpt(text.substr(begin, at - begin))) + "\"");
        pending.Push(object);
    }

    // Null for what is no value of the type.
    static CFTypeRef NewTyped(char type, std::string_view value) {
        if (type == 'I') {
            auto const number = ParseInteger(value);
            return number ? NewWholeNumber(*number) : nullptr;
        }
        if (type == 'R') {
            auto const number = ParseReal(value);
            return number ? NewRealNumber(*number) : nullptr;
        }
        if (type == 'B') return value == "Y" || value == "N" ? RetainedBoolean(value == "Y") : nullptr;
        if (type != 'D') return nullptr;
        auto const time = ParseDateOfZone(value);
        return time ? new __CFDate(*time) : nullptr;
    }
};

}  // namespace

CFPropertyListRef ReadTextPropertyList(std::string_view text) { return TextReader(text).Read(); }

}  // namespace Platform
