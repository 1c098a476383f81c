#pragma once

// Internal. The core's registrations as rows of tables, each part of the core in a file of its own, and the
// adapters that make a row of a typed function.

#include <new>
#include <span>
#include <type_traits>

#include "Evaluator/Registration.h"
#include "Evaluator/Time.h"
#include "Evaluator/Values.h"
#include "registry/Entries.h"

namespace Evaluator {

/// Values of the vocabulary's own types, "type" and "property".
using TypeValue = TypeEntry const*;
using PropertyValue = PropertyEntry const*;

struct TypeRow {
    char const* name;
    std::size_t size;
    bool isString;                                      ///< else its values are bits and need nothing else
    int (*order)(void const* left, void const* right);  ///< null: only operators compare
    std::uint64_t (*hash)(void const* value);
};
struct OperatorRow {
    int code;
    char const *left, *right, *result;
    BinaryOperatorFunction function;
};
struct CastRow {
    char const *phrase, *source, *target;
    CastFunction function;
};
struct PropertyRow {
    char const *singular, *plural, *index, *object, *result;
    PropertyFunction function;
};
struct IteratedRow {
    char const *singular, *plural, *index, *object, *result;
    std::size_t stateSize;
    ConstructFunction construct;
    DestroyFunction destroy;
    PropertyFunction first, next;
};

/// One part of the core.
struct CorePart {
    std::span<TypeRow const> types;
    std::span<PropertyRow const> properties;
    std::span<IteratedRow const> iterated;
    std::span<CastRow const> casts;
    std::span<OperatorRow const> operators;
};
CorePart Numbers();  ///< integers and booleans
CorePart Texts();
CorePart Times();             ///< times and time intervals
CorePart VocabularyItself();  ///< types and properties

// ---- Names of types

template <class T>
constexpr char const* kNameOf = nullptr;
template <>
inline constexpr char const* kNameOf<void> = "";
template <>
inline constexpr char const* kNameOf<inspector_string> = "string";
template <>
inline constexpr char const* kNameOf<integer> = "integer";
template <>
inline constexpr char const* kNameOf<boolean> = "boolean";
template <>
inline constexpr char const* kNameOf<moment> = "time";
template <>
inline constexpr char const* kNameOf<time_interval> = "time interval";
template <>
inline constexpr char const* kNameOf<TypeValue> = "type";
template <>
inline constexpr char const* kNameOf<PropertyValue> = "property";

// ---- Functions of one and two operands, of the kinds that a row can hold

template <auto function>
struct Adapted;

template <class R, R (*function)()>
struct Adapted<function> {
    static void Get(void* result, void const*, void const*, void*, void const*) {
        if (result) new (result) R(function());
    }
};

template <class R, class A, R (*function)(A const&)>
struct Adapted<function> {
    static void Cast(void* result, void const* source, void const*) {
        if (result) new (result) R(function(*static_cast<A const*>(source)));
    }
    static void GetIndexed(void* result, void const* index, void const*, void*, void const*) {
        Cast(result, index, nullptr);
    }
    static void GetOf(void* result, void const*, void const* object, void*, void const*) {
        Cast(result, object, nullptr);
    }
};

template <class R, class A, class B, R (*function)(A const&, B const&)>
struct Adapted<function> {
    static void Operate(void* result, void const* left, void const* right, void const*) {
        if (result) new (result) R(function(*static_cast<A const*>(left), *static_cast<B const*>(right)));
    }
    /// `function` takes the index, then the object.
    static void GetIndexedOf(void* result, void const* index, void const* object, void*, void const*) {
        Operate(result, index, object, nullptr);
    }
    static constexpr OperatorRow Row(int code) { return {code, kNameOf<A>, kNameOf<B>, kNameOf<R>, Operate}; }
};

template <auto function>
constexpr OperatorRow Row(int code) {
    return Adapted<function>::Row(code);
}

// ---- Iterated properties. `It` has First and Next, which take what the index and object types say.

template <class It, class R, class Index, class Object>
struct Iterated {
    static void Construct(void* state) { new (state) It; }
    static void Destroy(void const* state) { static_cast<It const*>(state)->~It(); }

    template <auto step>
    static void Take(void* result, void const* index, void const* object, void* state, void const*) {
        if (!result) return;
        auto& it = *static_cast<It*>(state);
        if constexpr (std::is_void_v<Index> && std::is_void_v<Object>)
            new (result) R((it.*step)());
        else if constexpr (std::is_void_v<Object>)
            new (result) R((it.*step)(*static_cast<Index const*>(index)));
        else if constexpr (std::is_void_v<Index>)
            new (result) R((it.*step)(*static_cast<Object const*>(object)));
        else
            new (result)
                R((it.*step)(*static_cast<Index const*>(index), *static_cast<Object const*>(object)));
    }

    static constexpr IteratedRow Row(char const* singular, char const* plural) {
        return {singular,   plural,    kNameOf<Index>, kNameOf<Object>,  kNameOf<R>,
                sizeof(It), Construct, Destroy,        Take<&It::First>, Take<&It::Next>};
    }
};

// ---- Relations of values that C++ compares

template <class T>
boolean Equal(T const& a, T const& b) {
    return a == b;
}
template <class T>
boolean Less(T const& a, T const& b) {
    return a < b;
}
template <class T>
boolean LessOrEqual(T const& a, T const& b) {
    return !(b < a);
}
template <class T>
int NativeOrder(void const* left, void const* right) {
    T const &a = *static_cast<T const*>(left), &b = *static_cast<T const*>(right);
    return (b < a) - (a < b);
}
/// Spreads the bits of a number, so that neighbours do not collide.
inline std::uint64_t HashOfNumber(std::uint64_t number) {
    number = (number ^ (number >> 32)) * 0x9E3779B97F4A7C15;
    return number ^ (number >> 29);
}

/// A text in inspector memory.
inspector_string CoreText(std::string_view text);

}  // namespace Evaluator
