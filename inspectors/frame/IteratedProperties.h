#pragma once

// Records of properties that yield their values one at a time. The state of an iteration is an object of an
// iterator class in memory of the host's, which constructs it, asks for the first value and for the next
// ones, and destroys it. The end, and an iteration without values, is NoSuchObject thrown by either step. The
// direct object and the index are passed again at every step, so an iterator keeps only its position.
//
// The constructor's arguments are the row of the module's table, as those of the other properties; the kinds
// that name an object or the world by tag take the iterator's two steps too, so that one iterator class can
// serve several registrations. The results of iterations always depend on the state of the machine.

#include <new>

#include "frame/Properties.h"

/// Begins and ends the life of an iteration's state, in place.
template <class It>
struct IteratorBasics {
    /// Does nothing when there is no memory.
    static void Construct(void* state) {
        if (state != nullptr) ::new (state) It();
    }
    static void Destroy(void const* state) { static_cast<It const*>(state)->~It(); }
};

namespace Inspectors {

/// What all iterated kinds have in common: a host area.
template <class It>
class IteratedRecord : HostArea<kPropertyRecordSize> {
  protected:
    IteratedRecord(char const* singular, char const* plural, char const* index, char const* object,
                   char const* result, PropertyFunction first, PropertyFunction next) {
        Register_Iterated_Property(this, kPropertyRecordSize, singular, plural, index, object, result,
                                   sizeof(It), IteratorBasics<It>::Construct, IteratorBasics<It>::Destroy,
                                   first, next, this, nullptr);
    }
    ~IteratedRecord() { Unregister_Property(this); }

    static It& StateAt(void* state) { return *static_cast<It*>(state); }
};

/// An iterated kind that holds its steps behind the host area: member functions, possibly virtual ones.
template <class It, class Step>
class SteppingRecord : public IteratedRecord<It> {
  protected:
    SteppingRecord(char const* singular, char const* plural, char const* index, char const* object,
                   char const* result, PropertyFunction firstEntry, PropertyFunction nextEntry,
                   Step firstStep, Step nextStep)
        : IteratedRecord<It>(singular, plural, index, object, result, firstEntry, nextEntry) {
        first = firstStep;
        next = nextStep;
    }

    static Step FirstOf(void const* record) { return At(record)->first; }
    static Step NextOf(void const* record) { return At(record)->next; }

  private:
    static SteppingRecord const* At(void const* record) {
        return static_cast<SteppingRecord const*>(static_cast<IteratedRecord<It> const*>(record));
    }

    Step first;
    Step next;
};

}  // namespace Inspectors

/// The values of an object, by the members First and Next of the iterator.
template <class It, class T, class R>
class IteratedProperty : public Inspectors::IteratedRecord<It> {
    using Record = Inspectors::IteratedRecord<It>;

  public:
    IteratedProperty(char const* singular, char const* plural, char const* object, char const* result)
        : Record(singular, plural, "", object, result, First, Next) {}

    static void First(void* result, void const*, void const* object, void* state, void const*) {
        if (result == nullptr) return;
        ::new (result) R(Record::StateAt(state).First(Inspectors::As<T>(object)));
    }
    static void Next(void* result, void const*, void const* object, void* state, void const*) {
        if (result == nullptr) return;
        ::new (result) R(Record::StateAt(state).Next(Inspectors::As<T>(object)));
    }
};

/// The values of the world, by the members First and Next of the iterator.
template <class It, class R>
class IteratedGlobalProperty : public Inspectors::IteratedRecord<It> {
    using Record = Inspectors::IteratedRecord<It>;

  public:
    IteratedGlobalProperty(char const* singular, char const* plural, char const* result)
        : Record(singular, plural, "", "", result, First, Next) {}

    static void First(void* result, void const*, void const*, void* state, void const*) {
        if (result == nullptr) return;
        ::new (result) R(Record::StateAt(state).First());
    }
    static void Next(void* result, void const*, void const*, void* state, void const*) {
        if (result == nullptr) return;
        ::new (result) R(Record::StateAt(state).Next());
    }
};

/// The values of the world that a string names, by the members First and Next of the iterator.
template <class It, class R>
class IteratedNamedGlobalProperty : public Inspectors::IteratedRecord<It> {
    using Record = Inspectors::IteratedRecord<It>;

  public:
    IteratedNamedGlobalProperty(char const* singular, char const* plural, char const* result)
        : Record(singular, plural, "string", "", result, First, Next) {}

    static void First(void* result, void const* argument, void const*, void* state, void const*) {
        if (result == nullptr) return;
        auto const& name = Inspectors::As<inspector_string>(argument);
        ::new (result) R(Record::StateAt(state).First(name.bytes, name.length));
    }
    static void Next(void* result, void const* argument, void const*, void* state, void const*) {
        if (result == nullptr) return;
        auto const& name = Inspectors::As<inspector_string>(argument);
        ::new (result) R(Record::StateAt(state).Next(name.bytes, name.length));
    }
};

/// The values of an object, by two members of the iterator.
template <class It, class R, class T>
class IteratedPropertyOfObject : public Inspectors::SteppingRecord<It, R (It::*)(Of, T const&)> {
    using Step = R (It::*)(Of, T const&);
    using Record = Inspectors::SteppingRecord<It, Step>;

  public:
    IteratedPropertyOfObject(char const* singular, char const* plural, char const* object, char const* result,
                             R (It::*first)(Of, T const&), R (It::*next)(Of, T const&))
        : Record(singular, plural, "", object, result, First, Next, first, next) {}

    static void First(void* result, void const*, void const* object, void* state, void const* record) {
        Take(Record::FirstOf(record), result, object, state);
    }
    static void Next(void* result, void const*, void const* object, void* state, void const* record) {
        Take(Record::NextOf(record), result, object, state);
    }

  private:
    static void Take(Step step, void* result, void const* object, void* state) {
        if (result == nullptr) return;
        ::new (result) R((Record::StateAt(state).*step)(Of(), Inspectors::As<T>(object)));
    }
};

/// The values of an object, by an index of any type and two members of the iterator.
template <class It, class R, class I, class T>
class IteratedPropertyByIndexOfObject
    : public Inspectors::SteppingRecord<It, R (It::*)(I const&, Of, T const&)> {
    using Step = R (It::*)(I const&, Of, T const&);
    using Record = Inspectors::SteppingRecord<It, Step>;

  public:
    IteratedPropertyByIndexOfObject(char const* singular, char const* plural, char const* index,
                                    char const* object, char const* result,
                                    R (It::*first)(I const&, Of, T const&),
                                    R (It::*next)(I const&, Of, T const&))
        : Record(singular, plural, index, object, result, First, Next, first, next) {}

    static void First(void* result, void const* argument, void const* object, void* state,
                      void const* record) {
        Take(Record::FirstOf(record), result, argument, object, state);
    }
    static void Next(void* result, void const* argument, void const* object, void* state,
                     void const* record) {
        Take(Record::NextOf(record), result, argument, object, state);
    }

  private:
    static void Take(Step step, void* result, void const* argument, void const* object, void* state) {
        if (result == nullptr) return;
        ::new (result)
            R((Record::StateAt(state).*step)(Inspectors::As<I>(argument), Of(), Inspectors::As<T>(object)));
    }
};

/// The values of the world, by two members of the iterator.
template <class It, class R>
class IteratedPropertyOfWorld : public Inspectors::SteppingRecord<It, R (It::*)()> {
    using Step = R (It::*)();
    using Record = Inspectors::SteppingRecord<It, Step>;

  public:
    IteratedPropertyOfWorld(char const* singular, char const* plural, char const* result, R (It::*first)(),
                            R (It::*next)())
        : Record(singular, plural, "", "", result, First, Next, first, next) {}

    static void First(void* result, void const*, void const*, void* state, void const* record) {
        Take(Record::FirstOf(record), result, state);
    }
    static void Next(void* result, void const*, void const*, void* state, void const* record) {
        Take(Record::NextOf(record), result, state);
    }

  private:
    static void Take(Step step, void* result, void* state) {
        if (result == nullptr) return;
        ::new (result) R((Record::StateAt(state).*step)());
    }
};

/// The values of the world, by an index of any type and two members of the iterator.
template <class It, class R, class I>
class IteratedPropertyByIndexOfWorld : public Inspectors::SteppingRecord<It, R (It::*)(I const&)> {
    using Step = R (It::*)(I const&);
    using Record = Inspectors::SteppingRecord<It, Step>;

  public:
    IteratedPropertyByIndexOfWorld(char const* singular, char const* plural, char const* index,
                                   char const* result, R (It::*first)(I const&), R (It::*next)(I const&))
        : Record(singular, plural, index, "", result, First, Next, first, next) {}

    static void First(void* result, void const* argument, void const*, void* state, void const* record) {
        Take(Record::FirstOf(record), result, argument, state);
    }
    static void Next(void* result, void const* argument, void const*, void* state, void const* record) {
        Take(Record::NextOf(record), result, argument, state);
    }

  private:
    static void Take(Step step, void* result, void const* argument, void* state) {
        if (result == nullptr) return;
        ::new (result) R((Record::StateAt(state).*step)(Inspectors::As<I>(argument)));
    }
};
