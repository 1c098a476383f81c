#include "propertylists/OtherObjects.h"

#include <algorithm>
#include <functional>

#include "foundation/Containers.h"
#include "foundation/Object.h"

namespace Platform {

namespace {

struct Null final : Object {
    CFTypeID TypeID() const override {
        static CFTypeID const id = NewTypeID();
        return id;
    }
    bool EqualTo(Object const&) const override { return true; }
    CFHashCode Hash() const override { return 0; }
};

struct UniqueIdentifier final : Object {
    explicit UniqueIdentifier(UInt64 value) noexcept : number(value) {}
    CFTypeID TypeID() const override {
        static CFTypeID const id = NewTypeID();
        return id;
    }
    bool EqualTo(Object const& other) const override {
        return number == static_cast<UniqueIdentifier const&>(other).number;
    }
    CFHashCode Hash() const override { return std::hash<UInt64>()(number); }

    UInt64 const number;
};

// What is in the set is never asked for; an array keeps it.
struct Set final : Object {
    explicit Set(CFArrayRef array) noexcept : elements(array) { elements->Retain(); }
    ~Set() override { elements->Release(); }
    CFTypeID TypeID() const override {
        static CFTypeID const id = NewTypeID();
        return id;
    }
    bool EqualTo(Object const& other) const override {
        return elements->EqualTo(*static_cast<Set const&>(other).elements);
    }
    CFHashCode Hash() const override { return elements->Hash(); }
    unsigned Levels() const override { return elements->Levels(); }

    CFArrayRef const elements;
};

}  // namespace

CFTypeRef NewNull() { return new Null; }

CFTypeRef NewUniqueIdentifier(UInt64 number) { return new UniqueIdentifier(number); }

CFTypeRef NewSet(CFArrayRef elements) { return new Set(elements); }

}  // namespace Platform
