// Binary property lists.
//
// All numbers are big-endian:
//
//   "bplist0" and a digit of the version
//   objects: a byte of kind and size, and what it announces
//   the offset of each object from the start, all of the same size
//   a trailer of 32 bytes: 6 unused, the size of an offset, that of a reference, 8 the number of objects, 8
//   the number of the root's, 8 the offset of the table of offsets
//
// A reference is the number of an object in the table. An object that is referred to more than once is made
// once and shared. No two objects may share bytes: what is made cannot be larger than the file allows.

#include <bit>
#include <string>
#include <vector>

#include "foundation/Data.h"
#include "foundation/Date.h"
#include "foundation/Number.h"
#include "foundation/String.h"
#include "propertylists/OtherObjects.h"
#include "propertylists/PendingObjects.h"
#include "propertylists/PropertyLists.h"

namespace Platform {

namespace {

using Bytes = std::span<UInt8 const>;

[[noreturn]] void Refuse(std::string const& reason) {
    throw PropertyListError("binary property list: " + reason);
}

UInt64 ReadUnsigned(Bytes bytes) {
    UInt64 number = 0;
    for (UInt8 const byte : bytes) number = number << 8 | byte;
    return number;
}

constexpr std::size_t kHeaderSize = 8, kTrailerSize = 32;

// The trailer and the table of offsets, held against the file.
class ObjectTable {
  public:
    explicit ObjectTable(Bytes file) {
        if (file.size() < kHeaderSize + kTrailerSize) Refuse("it is cut off");
        Bytes const trailer = file.last(kTrailerSize);
        offsetSize = trailer[6];
        referenceSize = trailer[7];
        count = ReadUnsigned(trailer.subspan(8, 8));
        root = ReadUnsigned(trailer.subspan(16, 8));
        UInt64 const table = ReadUnsigned(trailer.subspan(24, 8));
        if (offsetSize < 1 || offsetSize > 8 || referenceSize < 1 || referenceSize > 8)
            Refuse("numbers in it have an impossible size");
        UInt64 const end = file.size() - kTrailerSize;
        if (table < kHeaderSize || table > end || count > (end - table) / offsetSize)
            Refuse("its table of objects is outside of it");
        if (root >= count) Refuse("it has no root");
        offsets = file.subspan(table, count * offsetSize);
        objects = file.first(table);
    }

    UInt64 Count() const { return count; }
    UInt64 Root() const { return root; }
    std::size_t ReferenceSize() const { return referenceSize; }
    // The part of the file that objects lie in.
    Bytes Objects() const { return objects; }
    // Where an object begins.
    std::size_t OffsetOf(UInt64 number) const {
        UInt64 const offset = ReadUnsigned(offsets.subspan(number * offsetSize, offsetSize));
        if (offset < kHeaderSize || offset >= objects.size()) Refuse("an object lies outside of it");
        return offset;
    }

  private:
    std::size_t offsetSize, referenceSize;
    UInt64 count, root;
    Bytes offsets, objects;
};

// The bytes of one object, taken from the front.
class ObjectBytes {
  public:
    explicit ObjectBytes(Bytes fromObjectOn) : rest(fromObjectOn), all(rest.size()) {}

    Bytes Take(UInt64 size) {
        if (size > rest.size()) Refuse("an object is cut off");
        Bytes const taken = rest.first(size);
        rest = rest.subspan(size);
        return taken;
    }
    UInt8 TakeByte() { return Take(1)[0]; }
    Bytes TakeElements(UInt64 number, std::size_t size) {
        if (number > rest.size() / size) Refuse("an object is cut off");
        return Take(number * size);
    }
    // How many things an object of this marker has: in the marker, or in a whole number behind it.
    UInt64 TakeCount(UInt8 marker) {
        constexpr UInt8 isBehind = 0x0F;
        if ((marker & 0x0F) != isBehind) return marker & 0x0F;
        UInt8 const kind = TakeByte();
        if ((kind & 0xF0) != 0x10 || (kind & 0x0F) > 3) Refuse("an object has no size");
        return ReadUnsigned(Take(std::size_t{1} << (kind & 0x0F)));
    }

    std::size_t Taken() const { return all - rest.size(); }

  private:
    Bytes rest;
    std::size_t const all;
};

CFTypeRef ReadInteger(Bytes bytes) {
    UInt64 const low = ReadUnsigned(bytes.last(std::min<std::size_t>(bytes.size(), 8)));
    // Those of 8 and of 16 bytes have a sign, shorter ones do not.
    if (bytes.size() <= 8) return NewWholeNumber(static_cast<SInt64>(low));
    auto const high = static_cast<SInt64>(ReadUnsigned(bytes.first(8)));
    return NewWholeNumber((static_cast<WideInteger>(high) << 64) | low);
}

double ReadReal(Bytes bytes) {
    UInt64 const bits = ReadUnsigned(bytes);
    return bytes.size() == 4 ? double{std::bit_cast<float>(static_cast<UInt32>(bits))}
                             : std::bit_cast<double>(bits);
}

CFTypeRef ReadAscii(Bytes bytes) {
    std::string_view const text(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    if (!IsAscii(text)) Refuse("a string of ASCII has other bytes");
    return NewAsciiString(text);
}

CFTypeRef ReadUnits(Bytes bytes) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<char16_t>(bytes[2 * i] << 8 | bytes[2 * i + 1]);
    return NewString(text);
}

class Reader {
  public:
    explicit Reader(Bytes file) : table(file), made(table.Count()) {}
    Reader(Reader const&) = delete;
    Reader& operator=(Reader const&) = delete;
    ~Reader() {
        for (CFTypeRef const object : made) {
            if (object != nullptr && object != &underWay) CFRelease(object);
        }
    }

    // A new reference to the object of a number.
    CFTypeRef Read(UInt64 number, unsigned depth) {
        CFTypeRef& object = made[number];
        if (object == &underWay) Refuse("it contains itself");
        if (object == nullptr) {
            object = &underWay;
            object = Make(number, depth);
        }
        return CFRetain(object);
    }
    CFTypeRef ReadRoot() { return Read(table.Root(), 0); }

  private:
    // What stands for an object while its elements are read.
    static constexpr char underWay = 0;

    ObjectTable const table;
    std::vector<CFTypeRef> made;  // by number; null where none was asked for
    std::size_t bytesUsed = 0;
    PendingObjects pending;

    CFTypeRef Make(UInt64 number, unsigned depth) {
        ObjectBytes bytes(table.Objects().subspan(table.OffsetOf(number)));
        UInt8 const marker = bytes.TakeByte();
        switch (marker >> 4) {
            case 0x0: {
                Use(bytes);
                if (marker == 0x00) return NewNull();
                if (marker == 0x08 || marker == 0x09) return RetainedBoolean(marker == 0x09);
                break;
            }
            case 0x1:
                if (marker > 0x14) break;
                return ReadInteger(Used(bytes, std::size_t{1} << (marker & 0x0F)));
            case 0x2:
                if (marker != 0x22 && marker != 0x23) break;
                return NewRealNumber(ReadReal(Used(bytes, std::size_t{1} << (marker & 0x0F))));
            case 0x3:
                if (marker != 0x33) break;
                return new __CFDate(ReadReal(Used(bytes, 8)));
            case 0x4:
                return NewData(Used(bytes, bytes.TakeCount(marker)));
            case 0x5:
                return ReadAscii(Used(bytes, bytes.TakeCount(marker)));
            case 0x6:
                return ReadUnits(UsedElements(bytes, bytes.TakeCount(marker), 2));
            case 0x8:
                if (marker > 0x87) break;
                return NewUniqueIdentifier(ReadUnsigned(Used(bytes, (marker & 0x0F) + 1u)));
            case 0xA:
            case 0xC:
            case 0xD:
                return MakeContainer(bytes, marker, depth + 1);
            default:
                break;
        }
        Refuse("an object is of an unknown kind");
    }

    // Counts what was taken of an object. There is a budget of all bytes that objects can lie in.
    void Use(ObjectBytes const& bytes) {
        bytesUsed += bytes.Taken();
        if (bytesUsed > table.Objects().size()) Refuse("its objects share bytes");
    }
    Bytes Used(ObjectBytes& bytes, UInt64 size) {
        Bytes const taken = bytes.Take(size);
        Use(bytes);
        return taken;
    }
    Bytes UsedElements(ObjectBytes& bytes, UInt64 number, std::size_t size) {
        Bytes const taken = bytes.TakeElements(number, size);
        Use(bytes);
        return taken;
    }

    CFTypeRef MakeContainer(ObjectBytes& bytes, UInt8 marker, unsigned depth) {
        if (depth > kMostLevels) RefuseLevels();
        std::size_t const size = table.ReferenceSize();
        bool const isDictionary = marker >> 4 == 0xD;
        UInt64 const count = bytes.TakeCount(marker);
        Bytes const references = UsedElements(bytes, count, isDictionary ? 2 * size : size);
        std::size_t const from = pending.Size();
        auto const read = [&](UInt64 place) {
            UInt64 const number = ReadUnsigned(references.subspan(place * size, size));
            if (number >= table.Count()) Refuse("a reference leads to no object");
            pending.Push(Read(number, depth));
        };
        for (UInt64 i = 0; i < count; ++i) {
            read(i);
            if (!isDictionary) continue;
            if (CFGetTypeID(pending.Top()) != CFStringGetTypeID()) Refuse("a key is no string");
            read(count + i);
        }
        if (isDictionary) {
            pending.MakeDictionary(from);
        } else {
            pending.MakeArray(from);
        }
        // An element that was read before, less deep in the list, may be a tall one.
        if (static_cast<Object const*>(pending.Top())->Levels() > kMostLevels) RefuseLevels();
        if (marker >> 4 == 0xC) pending.Push(NewSet(static_cast<CFArrayRef>(pending.Top())));
        CFTypeRef const container = pending.Pop();
        while (pending.Size() > from) CFRelease(pending.Pop());
        return container;
    }
};

}  // namespace

bool IsBinaryPropertyList(Bytes bytes) {
    constexpr std::string_view front = "bplist0";
    return std::string_view(reinterpret_cast<char const*>(bytes.data()), bytes.size()).starts_with(front);
}

CFPropertyListRef ReadBinaryPropertyList(Bytes bytes) { return Reader(bytes).ReadRoot(); }

}  // namespace Platform
