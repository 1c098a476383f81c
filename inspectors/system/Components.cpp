#include "system/Components.h"

#include <Carbon/MacMemory.h>

#include <algorithm>

#include "Evaluator/Context.h"
#include "Evaluator/Exceptions.h"

namespace {

ComponentDescription GetInfo(ComponentClass const& component, Handle name, Handle info) {
    ComponentDescription description{};
    OSErr const error = GetComponentInfo(component.Number(), &description, name, info, nullptr);
    if (error != noErr) throw OSError(error);
    return description;
}

// The bytes in memory of the host's.
inspector_string Kept(unsigned char const* bytes, std::uint32_t length) {
    auto* const kept = static_cast<unsigned char*>(Allocate_Inspector_Memory(length));
    std::copy_n(bytes, length, kept);
    return {kept, length};
}

inspector_string TextOfCode(OSType code) {
    unsigned char bytes[4];
    for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(code >> (24 - 8 * i));
    return Kept(bytes, sizeof bytes);
}

// A block of the platform's for a text with a length byte.
class TextHandle {
  public:
    TextHandle() : handle(NewHandle(size)) {
        if (handle == nullptr) throw MemoryFullError();
    }
    ~TextHandle() { DisposeHandle(handle); }
    TextHandle(TextHandle const&) = delete;
    TextHandle& operator=(TextHandle const&) = delete;
    operator Handle() const { return handle; }

    inspector_string Text() const {
        auto const bytes = reinterpret_cast<unsigned char const*>(*handle);
        if (bytes[0] == 0) throw NoSuchObject();
        return Kept(bytes + 1, bytes[0]);
    }

  private:
    static constexpr Size size = 16;  // to begin with
    Handle const handle;
};

}  // namespace

MacVersion ComponentClass::theVersion() const {
    ComponentInstance const instance = OpenComponent(component);
    if (instance == nullptr) throw NoSuchObject();
    auto const number = static_cast<std::uint32_t>(GetComponentVersion(instance));
    CloseComponent(instance);
    MacVersion version;
    version.major = static_cast<std::uint16_t>(number >> 16);
    version.minor = static_cast<std::uint16_t>(number);
    return version;
}

inspector_string maker_of(ComponentClass const& component) {
    return TextOfCode(GetInfo(component, nullptr, nullptr).componentManufacturer);
}
inspector_string type_of(ComponentClass const& component) {
    return TextOfCode(GetInfo(component, nullptr, nullptr).componentType);
}
inspector_string subtype_of(ComponentClass const& component) {
    return TextOfCode(GetInfo(component, nullptr, nullptr).componentSubType);
}

inspector_string name_of(ComponentClass const& component) {
    TextHandle const name;
    GetInfo(component, name, nullptr);
    return name.Text();
}
inspector_string info_of(ComponentClass const& component) {
    TextHandle const info;
    GetInfo(component, nullptr, info);
    return info.Text();
}

MacVersion version_of(ComponentClass const& component) { return component.theVersion(); }

ComponentClass ComponentIterator::First() {
    position = 0;
    return Next();
}

ComponentClass ComponentIterator::Next() {
    ComponentDescription any{};
    Component const next = FindNextComponent(position, &any);
    if (next == 0) throw NoSuchObject();
    position = next;
    return ComponentClass(next);
}
