// XML property lists, made directly from a parser's events: no tree of the document ever exists.

#include <expat.h>
#include <iconv.h>

#include <algorithm>
#include <array>
#include <bit>
#include <exception>
#include <memory>
#include <string>

#include "foundation/Data.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include "propertylists/OtherObjects.h"
#include "propertylists/PendingObjects.h"
#include "propertylists/PropertyLists.h"
#include "propertylists/Scalars.h"
#include "propertylists/StringTable.h"

namespace Platform {

namespace {

enum class Element { Document, Plist, Array, Dict, Key, String, Data, Date, True, False, Real, Integer };

constexpr std::array<std::string_view, 12> kElementNames = {"the document", "plist",  "array", "dict",
                                                            "key",          "string", "data",  "date",
                                                            "true",         "false",  "real",  "integer"};

std::string_view NameOf(Element element) { return kElementNames[static_cast<std::size_t>(element)]; }

// Elements that hold others.
bool IsContainer(Element element) { return element <= Element::Dict; }

bool IsAllWhite(std::string_view text) {
    return std::ranges::all_of(text, [](char character) { return IsWhite(character); });
}

struct ParserEnd {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

class Reader {
  public:
    // `encoding` is what the text is known to be in; null when only the document may know.
    Reader(char const* encoding, std::size_t lines) : parser(XML_ParserCreate(encoding)), linesBefore(lines) {
        if (!parser) throw std::bad_alloc();
        XML_SetUserData(parser.get(), this);
        XML_SetElementHandler(parser.get(), Started, Ended);
        XML_SetCharacterDataHandler(parser.get(), CameText);
        // With a default handler no entity that the document declares is expanded. It comes to the handler of
        // what is skipped, or, if its text would be elsewhere, to the default handler.
        XML_SetDefaultHandler(parser.get(), CameOther);
        XML_SetCommentHandler(parser.get(), [](void*, XML_Char const*) {});
        XML_SetProcessingInstructionHandler(parser.get(), [](void*, XML_Char const*, XML_Char const*) {});
        XML_SetAttlistDeclHandler(parser.get(), CameAttribute);
        XML_SetSkippedEntityHandler(parser.get(), CameEntity);
        XML_SetUnknownEncodingHandler(parser.get(), CameEncoding, nullptr);
        frames.push_back({Element::Document, 0, 0});
    }

    CFTypeRef Read(std::span<UInt8 const> bytes) {
        // Small pieces stay in the processor's cache. A token that is longer than a piece is looked at again
        // from its beginning with each of them, so they grow with it.
        constexpr std::size_t piece = std::size_t{64} << 10, most = std::size_t{1} << 30;
        for (std::size_t at = 0; !isComplete;) {
            std::size_t const size = std::min({std::max(piece, at - Consumed()), most, bytes.size() - at});
            bool const isLast = at + size == bytes.size();
            XML_Status const status =
                XML_Parse(parser.get(), reinterpret_cast<char const*>(bytes.data()) + at,
                          static_cast<int>(size), isLast);
            at += size;
            if (failure) std::rethrow_exception(failure);
            if (isComplete) break;
            if (status != XML_STATUS_OK) Refuse(XML_ErrorString(XML_GetErrorCode(parser.get())));
            if (isLast) Refuse("there is no property list in it");
        }
        return pending.Pop();
    }

  private:
    // An element that has begun.
    struct Frame {
        Element element;
        std::size_t from;   // the size of the stack of objects at its beginning
        std::size_t taken;  // objects that it has
    };

    std::unique_ptr<XML_ParserStruct, ParserEnd> parser;
    std::size_t const linesBefore;
    std::vector<Frame> frames;
    PendingObjects pending;
    StringTable keys;
    std::string text;          // of the innermost element
    std::size_t defaults = 0;  // attributes that get a value by their declaration
    bool isComplete = false;
    std::exception_ptr failure;

    [[noreturn]] void Refuse(std::string const& reason) const {
        std::size_t const line = linesBefore + XML_GetCurrentLineNumber(parser.get());
        throw PropertyListError("line " + std::to_string(line) + ": " + reason);
    }

    [[noreturn]] void RefuseEntity(std::string_view name) const {
        Refuse("unknown entity \"" + std::string(Excerpt(name)) + "\"");
    }

    // Bytes that the parser is done with.
    std::size_t Consumed() const {
        return static_cast<std::size_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser.get()), 0));
    }

    // Does what an event asks for. No exception may go through the parser.
    template <class Action>
    static void Handle(void* self, Action action) noexcept {
        auto& reader = *static_cast<Reader*>(self);
        if (reader.failure || reader.isComplete) return;
        try {
            action(reader);
            if (!reader.isComplete) return;
        } catch (...) {
            reader.failure = std::current_exception();
        }
        XML_StopParser(reader.parser.get(), XML_FALSE);
    }

    static void Started(void* self, XML_Char const* name, XML_Char const**) {
        Handle(self, [name](Reader& reader) { reader.Begin(name); });
    }
    static void Ended(void* self, XML_Char const*) {
        Handle(self, [](Reader& reader) { reader.End(); });
    }
    static void CameText(void* self, XML_Char const* characters, int size) {
        Handle(self, [=](Reader& reader) { reader.Add({characters, static_cast<std::size_t>(size)}); });
    }
    static void CameOther(void* self, XML_Char const* characters, int size) {
        std::string_view const other(characters, static_cast<std::size_t>(size));
        if (!other.starts_with('&')) return;
        Handle(self, [=](Reader& reader) {
            // Before the root there may be pieces of anything.
            if (reader.frames.size() == 1) return;
            reader.RefuseEntity(other.substr(1, other.size() - 2));
        });
    }
    static void CameEntity(void* self, XML_Char const* name, int isParameter) {
        if (isParameter != 0) return;
        Handle(self, [name](Reader& reader) { reader.RefuseEntity(name); });
    }
    // The parser gives each element all of its declared attributes, so they must be few.
    static void CameAttribute(void* self, XML_Char const*, XML_Char const*, XML_Char const*,
                              XML_Char const* value, int) {
        constexpr std::size_t most = 100;
        if (value == nullptr) return;
        Handle(self, [](Reader& reader) {
            if (++reader.defaults > most) reader.Refuse("more than 100 attributes are declared with a value");
        });
    }
    // Besides the encodings that the parser has, those of one byte for each character that the system has.
    static int CameEncoding(void*, XML_Char const* name, XML_Encoding* encoding);

    Element ElementOf(std::string_view name) const {
        for (std::size_t i = 1; i < kElementNames.size(); ++i) {
            // Most names differ in their first letters already.
            if (name.front() == kElementNames[i].front() && name == kElementNames[i])
                return static_cast<Element>(i);
        }
        Refuse("unknown element \"" + std::string(Excerpt(name)) + "\"");
    }

    std::size_t OpenContainers() const {
        bool const isInPlist = frames.size() > 1 && frames[1].element == Element::Plist;
        return frames.size() - (isInPlist ? 2 : 1);
    }

    void Begin(std::string_view name) {
        Element const element = ElementOf(name);
        Frame& outer = frames.back();
        if (!IsContainer(outer.element))
            Refuse("an element within \"" + std::string(NameOf(outer.element)) + "\"");
        if (element == Element::Plist && outer.element != Element::Document)
            Refuse("\"plist\" is not the root");
        if (outer.element == Element::Plist && outer.taken == 1)
            Refuse("\"plist\" holds more than one object");
        bool const isKeyDue = outer.element == Element::Dict && outer.taken % 2 == 0;
        if (isKeyDue && element != Element::Key) Refuse("\"" + std::string(name) + "\" where a key is due");
        if (!isKeyDue && element == Element::Key) Refuse("a key where none is due");
        if (IsContainer(element) && element != Element::Plist && OpenContainers() == kMostLevels)
            RefuseLevels();
        frames.push_back({element, pending.Size(), 0});
        text.clear();
    }

    void Add(std::string_view characters) {
        if (!IsContainer(frames.back().element)) {
            text += characters;
            return;
        }
        if (!IsAllWhite(characters))
            Refuse("text within \"" + std::string(NameOf(frames.back().element)) + "\"");
    }

    void End() {
        Frame const frame = frames.back();
        // An element such as <data/> has an end of no bytes.
        bool const isEmptyTag = XML_GetCurrentByteCount(parser.get()) == 0;
        if (frame.element == Element::Plist) {
            if (frame.taken == 0) Refuse("\"plist\" is empty");
        } else {
            Make(frame, isEmptyTag);
        }
        frames.pop_back();
        if (frames.back().element == Element::Document) isComplete = true;
        if (frame.element != Element::Plist) ++frames.back().taken;
    }

    void Make(Frame const& frame, bool isEmptyTag) {
        switch (frame.element) {
            case Element::Array:
                pending.MakeArray(frame.from);
                return;
            case Element::Dict:
                if (frame.taken % 2 != 0) Refuse("a key without a value");
                MakeDictionary(frame);
                return;
            default:
                pending.Push(NewScalar(frame.element, isEmptyTag));
        }
    }

    // A dictionary that says no more than the number of an object of an archive is that number.
    void MakeDictionary(Frame const& frame) {
        auto const entries = pending.From(frame.from);
        if (entries.size() == 2 && CFGetTypeID(entries[1]) == CFNumberGetTypeID()) {
            auto const key = static_cast<CFStringRef>(entries[0]);
            auto const number = static_cast<CFNumberRef>(entries[1]);
            if (key->IsAscii() && key->Ascii() == "CF$UID" && !number->IsReal()) {
                CFTypeRef const identifier = NewUniqueIdentifier(static_cast<UInt64>(number->Whole()));
                CFRelease(pending.Pop());
                CFRelease(pending.Pop());
                pending.Push(identifier);
                return;
            }
        }
        pending.MakeDictionary(frame.from);
    }

    // What an optional has, or a refusal of the innermost element's text.
    template <class Value>
    Value Checked(std::optional<Value> value, Element element) const {
        if (!value)
            Refuse("\"" + std::string(NameOf(element)) + "\" cannot be \"" + std::string(Excerpt(text)) +
                   "\"");
        return *std::move(value);
    }

    CFTypeRef NewScalar(Element element, bool isEmptyTag) {
        switch (element) {
            case Element::Key:
                return keys.Get(text);
            case Element::String:
                return NewUtf8String(text);
            case Element::True:
            case Element::False:
                if (!IsAllWhite(text)) Refuse("text within \"" + std::string(NameOf(element)) + "\"");
                return RetainedBoolean(element == Element::True);
            case Element::Integer:
                return NewWholeNumber(Checked(ParseInteger(text), element));
            case Element::Real:
                return NewRealNumber(Checked(ParseReal(text), element));
            case Element::Date:
                return new __CFDate(Checked(ParseDate(text), element));
            default:
                if (isEmptyTag) Refuse("\"data\" is empty");
                return NewData(Checked(DecodeBase64(text), Element::Data));
        }
    }
};

// The character that a byte is in an encoding; -1 for what is none, or is part of one only.
int CharacterOf(iconv_t conversion, char byte) {
    char32_t character = 0;
    char *from = &byte, *to = reinterpret_cast<char*>(&character);
    std::size_t fromSize = 1, toSize = sizeof character;
    iconv(conversion, nullptr, nullptr, nullptr, nullptr);
    bool const isOne = iconv(conversion, &from, &fromSize, &to, &toSize) == 0 && toSize == 0;
    return isOne && character <= 0xFFFF ? static_cast<int>(character) : -1;
}

int Reader::CameEncoding(void*, XML_Char const* name, XML_Encoding* encoding) {
    constexpr bool isBigEndian = std::endian::native == std::endian::big;
    iconv_t const conversion = iconv_open(isBigEndian ? "UTF-32BE" : "UTF-32LE", name);
    if (conversion == reinterpret_cast<iconv_t>(-1)) return XML_STATUS_ERROR;
    for (int byte = 0; byte < 256; ++byte)
        encoding->map[byte] = CharacterOf(conversion, static_cast<char>(byte));
    iconv_close(conversion);
    encoding->convert = nullptr;
    encoding->release = nullptr;
    return XML_STATUS_OK;
}

}  // namespace

CFPropertyListRef ReadXmlPropertyList(std::span<UInt8 const> bytes, bool isUtf8, std::size_t linesBefore) {
    return Reader(isUtf8 ? "UTF-8" : nullptr, linesBefore).Read(bytes);
}

}  // namespace Platform
