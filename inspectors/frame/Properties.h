#pragma once

// Records of properties that yield one value. Each kind is a template over the types of its inspector; the
// constructor's arguments are the row of the module's table: singular and plural phrase, the names of the
// index type (where the kind leaves it open), of the direct object's type (where it has one) and of the
// result's type, the inspector, and the dependency marker where there is one.
//
// Get is the function that the host calls. It is in every kind the same but for the inspector's arguments:
// without a result slot it does nothing; otherwise it constructs the inspector's result in the slot. What an
// inspector throws goes through to the host, and the slot then holds no value.

#include <new>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Registration.h"
#include "Evaluator/Values.h"
#include "frame/HostArea.h"

namespace Inspectors {

/// What all kinds have in common: a host area, and behind it the inspector.
template <class Inspector>
class PropertyRecord : HostArea<kPropertyRecordSize> {
  protected:
    PropertyRecord(char const* singular, char const* plural, char const* index, char const* object,
                   char const* result, PropertyFunction get, Inspector inspector,
                   DependencyFunction dependency) {
        Register_Property(this, kPropertyRecordSize, singular, plural, index, object, result, get, this,
                          dependency);
        function = inspector;
    }
    ~PropertyRecord() { Unregister_Property(this); }

    static Inspector InspectorOf(void const* record) {
        return static_cast<PropertyRecord const*>(record)->function;
    }

  private:
    Inspector function;
};

/// The object, index or state that an untyped address of the host's stands for.
template <class T>
T const& As(void const* address) {
    return *static_cast<T const*>(address);
}

/// The index of a numbered property. Throws NoSuchObject for a negative one.
inline unsigned long long NumberedIndex(void const* argument) {
    long long const index = As<integer>(argument);
    if (index < 0) throw NoSuchObject();
    return static_cast<unsigned long long>(index);
}

}  // namespace Inspectors

/// A property of an object.
template <class T, class R>
class Property : public Inspectors::PropertyRecord<R (*)(T const&)> {
    using Record = Inspectors::PropertyRecord<R (*)(T const&)>;

  public:
    Property(char const* singular, char const* plural, char const* object, char const* result,
             R (*inspector)(T const&), DependencyFunction dependency = nullptr)
        : Record(singular, plural, "", object, result, Get, inspector, dependency) {}

    static void Get(void* result, void const*, void const* object, void*, void const* record) {
        if (result == nullptr) return;
        ::new (result) R(Record::InspectorOf(record)(Inspectors::As<T>(object)));
    }
};

/// A property of an object, named by a string.
template <class T, class R>
class NamedProperty
    : public Inspectors::PropertyRecord<R (*)(unsigned char const*, unsigned long, T const&)> {
    using Record = Inspectors::PropertyRecord<R (*)(unsigned char const*, unsigned long, T const&)>;

  public:
    NamedProperty(char const* singular, char const* plural, char const* object, char const* result,
                  R (*inspector)(unsigned char const* text, unsigned long length, T const&),
                  DependencyFunction dependency = nullptr)
        : Record(singular, plural, "string", object, result, Get, inspector, dependency) {}

    static void Get(void* result, void const* argument, void const* object, void*, void const* record) {
        if (result == nullptr) return;
        auto const& name = Inspectors::As<inspector_string>(argument);
        ::new (result) R(Record::InspectorOf(record)(name.bytes, name.length, Inspectors::As<T>(object)));
    }
};

/// A property of an object, numbered by an integer. A negative number is NoSuchObject, result slot or not.
template <class T, class R>
class NumberedProperty : public Inspectors::PropertyRecord<R (*)(unsigned long long, T const&)> {
    using Record = Inspectors::PropertyRecord<R (*)(unsigned long long, T const&)>;

  public:
    NumberedProperty(char const* singular, char const* plural, char const* object, char const* result,
                     R (*inspector)(unsigned long long index, T const&),
                     DependencyFunction dependency = nullptr)
        : Record(singular, plural, "integer", object, result, Get, inspector, dependency) {}

    static void Get(void* result, void const* argument, void const* object, void*, void const* record) {
        unsigned long long const index = Inspectors::NumberedIndex(argument);
        if (result == nullptr) return;
        ::new (result) R(Record::InspectorOf(record)(index, Inspectors::As<T>(object)));
    }
};

/// A property of the world.
template <class R>
class GlobalProperty : public Inspectors::PropertyRecord<R (*)()> {
    using Record = Inspectors::PropertyRecord<R (*)()>;

  public:
    GlobalProperty(char const* singular, char const* plural, char const* result, R (*inspector)(),
                   DependencyFunction dependency = nullptr)
        : Record(singular, plural, "", "", result, Get, inspector, dependency) {}

    static void Get(void* result, void const*, void const*, void*, void const* record) {
        if (result == nullptr) return;
        ::new (result) R(Record::InspectorOf(record)());
    }
};

/// A property of the world, named by a string.
template <class R>
class NamedGlobalProperty : public Inspectors::PropertyRecord<R (*)(unsigned char const*, unsigned long)> {
    using Record = Inspectors::PropertyRecord<R (*)(unsigned char const*, unsigned long)>;

  public:
    NamedGlobalProperty(char const* singular, char const* plural, char const* result,
                        R (*inspector)(unsigned char const* text, unsigned long length),
                        DependencyFunction dependency = nullptr)
        : Record(singular, plural, "string", "", result, Get, inspector, dependency) {}

    static void Get(void* result, void const* argument, void const*, void*, void const* record) {
        if (result == nullptr) return;
        auto const& name = Inspectors::As<inspector_string>(argument);
        ::new (result) R(Record::InspectorOf(record)(name.bytes, name.length));
    }
};

/// A property of the world, numbered by an integer. A negative number is NoSuchObject, result slot or not.
template <class R>
class NumberedGlobalProperty : public Inspectors::PropertyRecord<R (*)(unsigned long long)> {
    using Record = Inspectors::PropertyRecord<R (*)(unsigned long long)>;

  public:
    NumberedGlobalProperty(char const* singular, char const* plural, char const* result,
                           R (*inspector)(unsigned long long index), DependencyFunction dependency = nullptr)
        : Record(singular, plural, "integer", "", result, Get, inspector, dependency) {}

    static void Get(void* result, void const* argument, void const*, void*, void const* record) {
        unsigned long long const index = Inspectors::NumberedIndex(argument);
        if (result == nullptr) return;
        ::new (result) R(Record::InspectorOf(record)(index));
    }
};

/// A property of an object, by an inspector that says so with the tag Of.
template <class R, class T>
class PropertyOfObject : public Inspectors::PropertyRecord<R (*)(Of, T const&)> {
    using Record = Inspectors::PropertyRecord<R (*)(Of, T const&)>;

  public:
    PropertyOfObject(char const* singular, char const* plural, char const* object, char const* result,
                     R (*inspector)(Of, T const&), DependencyFunction dependency = nullptr)
        : Record(singular, plural, "", object, result, Get, inspector, dependency) {}

    static void Get(void* result, void const*, void const* object, void*, void const* record) {
        if (result == nullptr) return;
        ::new (result) R(Record::InspectorOf(record)(Of(), Inspectors::As<T>(object)));
    }
};

/// A property of an object, by an index of any type.
template <class R, class I, class T>
class PropertyByIndexOfObject : public Inspectors::PropertyRecord<R (*)(I const&, Of, T const&)> {
    using Record = Inspectors::PropertyRecord<R (*)(I const&, Of, T const&)>;

  public:
    PropertyByIndexOfObject(char const* singular, char const* plural, char const* index, char const* object,
                            char const* result, R (*inspector)(I const& index, Of, T const&),
                            DependencyFunction dependency = nullptr)
        : Record(singular, plural, index, object, result, Get, inspector, dependency) {}

    static void Get(void* result, void const* argument, void const* object, void*, void const* record) {
        if (result == nullptr) return;
        ::new (result)
            R(Record::InspectorOf(record)(Inspectors::As<I>(argument), Of(), Inspectors::As<T>(object)));
    }
};

/// A property of the world, where its siblings have an object or an index: the same as a global one.
template <class R>
using PropertyOfWorld = GlobalProperty<R>;

/// A property of the world, by an index of any type.
template <class R, class I>
class PropertyByIndexOfWorld : public Inspectors::PropertyRecord<R (*)(I const&)> {
    using Record = Inspectors::PropertyRecord<R (*)(I const&)>;

  public:
    PropertyByIndexOfWorld(char const* singular, char const* plural, char const* index, char const* result,
                           R (*inspector)(I const& index), DependencyFunction dependency = nullptr)
        : Record(singular, plural, index, "", result, Get, inspector, dependency) {}

    static void Get(void* result, void const* argument, void const*, void*, void const* record) {
        if (result == nullptr) return;
        ::new (result) R(Record::InspectorOf(record)(Inspectors::As<I>(argument)));
    }
};
