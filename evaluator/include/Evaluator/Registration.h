#pragma once

// How an inspector library tells the host what it offers: the registration calls and the functions they
// carry.
//
// A registration names a record: an object of the library that lives from load to unload and whose address is
// the registration's identity. A record begins with an area that is the host's alone; its size is the second
// argument of the call and must be the one given here. The `context`, which is the record's address again, is
// handed back as the last argument of every call that the host makes, so that one adapter can serve many
// registrations. The host calls none of the functions from inside a registration call.
//
// Types are named by text, and a name may be that of a type which another module, or another library,
// registers later; an empty text, or null, means none. Phrases and type names must stay readable during the
// call only.
//
// A library registers while it is being loaded, from the constructors of its static objects, and withdraws
// from their destructors. A constructor must not throw: nobody could catch it.
//
// It is a shared library linked with Evaluator.dylib and compiled with -fno-gnu-unique, without which the
// loader might keep it mapped for ever. Its file belongs to the user or to root, and nobody else may write
// it.
//
// A value stays where a call has made it, neither copied nor moved, until the destroy function of its own
// type ends it. The host keeps what the call was given (direct object, index, operands) at least as long, so
// a value may point into them.
//
// Every call returns whether the host accepted it. A caller may ignore that: a library with a registration
// that was refused is not loaded, and the reason names the library, the kind and the phrase.

#include <cstddef>

#include "Evaluator/Export.h"

class Fingerprinter;

/// Sizes, in bytes, of the host's area at the front of each kind of record.
inline constexpr unsigned long kTypeRecordSize = 512;
inline constexpr unsigned long kPropertyRecordSize = 128;
inline constexpr unsigned long kCastRecordSize = 128;
inline constexpr unsigned long kBinaryOperatorRecordSize = 128;
inline constexpr unsigned long kCacheRecordSize = 64;

/// Codes of Register_Binary_Operator.
enum BinaryOperatorCode : int {
    kOperatorPlus = 0,
    kOperatorMinus = 1,
    kOperatorTimes = 2,
    kOperatorDividedBy = 3,
    kRelationEqual = 6,
    kRelationLess = 7,
    kRelationLessOrEqual = 8,
    kRelationContains = 11,
};

/// Ends the life of the value at `value`, in place.
using DestroyFunction = void (*)(void const* value);
/// Writes the identity of the value at `value` into the sink.
using FingerprintFunction = void (*)(Fingerprinter&, void const* value);
/// Begins the life of an iteration's state at `state`.
using ConstructFunction = void (*)(void* state);
/// A property: constructs its result at `result`. `argument` is the index, `object` the direct object,
/// `state` an iteration's state; each is null where the registration has none. With a null `result` nothing
/// happens.
using PropertyFunction = void (*)(void* result, void const* argument, void const* object, void* state,
                                  void const* record);
/// A cast: constructs its result at `result`.
using CastFunction = void (*)(void* result, void const* source, void const* record);
/// A binary operator: constructs its result at `result`.
using BinaryOperatorFunction = void (*)(void* result, void const* left, void const* right,
                                        void const* record);
/// Tells what else a result depends on. Null: on the state of the machine, and the result is not used again.
using DependencyFunction = void (*)(Fingerprinter&);
/// Drops cached knowledge of the machine's state. The host calls it at the start of every evaluation, with
/// null.
using ClearCacheFunction = void (*)(void*);

/// Registers a type by its name. `valueSize` is the number of bytes of a value; `destroy` may be null for
/// values that need no end; `base` is null, or names a type whose layout is a prefix of this one's, so that a
/// value of this type serves wherever the base is expected; `fingerprint` may be null.
EVALUATOR_API bool Register_Type(void* record, unsigned long recordSize, char const* name,
                                 unsigned long valueSize, DestroyFunction destroy, char const* base,
                                 FingerprintFunction fingerprint);

/// Registers a property. `index` is the type of its index ("string", "integer", …) or empty; `object` the
/// type of its direct object or empty for a property of the world.
EVALUATOR_API bool Register_Property(void* record, unsigned long recordSize, char const* singular,
                                     char const* plural, char const* index, char const* object,
                                     char const* result, PropertyFunction get, void const* context,
                                     DependencyFunction dependency);

/// Registers a property that yields its values one at a time. `stateSize` is the number of bytes of an
/// iteration's state, whose life `construct` and `destroy` begin and end; `first` and `next` yield, and end
/// the iteration by throwing NoSuchObject.
EVALUATOR_API bool Register_Iterated_Property(void* record, unsigned long recordSize, char const* singular,
                                              char const* plural, char const* index, char const* object,
                                              char const* result, unsigned long stateSize,
                                              ConstructFunction construct, DestroyFunction destroy,
                                              PropertyFunction first, PropertyFunction next,
                                              void const* context, DependencyFunction dependency);

/// Registers a conversion, asked for as `value as phrase`.
EVALUATOR_API bool Register_Cast(void* record, unsigned long recordSize, char const* phrase,
                                 char const* source, char const* target, CastFunction thunk,
                                 void const* context, DependencyFunction dependency);

/// Registers an operator by its code.
EVALUATOR_API bool Register_Binary_Operator(void* record, unsigned long recordSize, int code,
                                            char const* left, char const* right, char const* result,
                                            BinaryOperatorFunction thunk, void const* context,
                                            DependencyFunction dependency);

/// Registers a function that drops cached knowledge. `reserved` is 0.
EVALUATOR_API bool Register_Cache(void* record, unsigned long recordSize, ClearCacheFunction clear,
                                  void* reserved);

/// Withdraw the registration that was made with the record. A record that is not registered is ignored.
EVALUATOR_API void Unregister_Type(void* record);
EVALUATOR_API void Unregister_Property(void* record);
EVALUATOR_API void Unregister_Cast(void* record);
EVALUATOR_API void Unregister_Binary_Operator(void* record);
EVALUATOR_API void Unregister_Cache(void* record);
