// An inspector library in one file: the environment variables of the process that asks.
//
//     value of environment variable "HOME"
//     names of environment variables whose (value of it contains "/usr/bin")

#include <Evaluator/Exceptions.h>
#include <Evaluator/Registration.h>
#include <Evaluator/Text.h>
#include <unistd.h>

#include <cstring>
#include <new>

namespace {

// ---- Types: a value is the bytes of one of these

// An entry of the environment, NAME=VALUE. Plain data: it needs no destroy function.
struct Variable {
    char const* entry;

    inspector_string Name() const { return Part(entry, std::strcspn(entry, "=")); }
    inspector_string Value() const {
        char const* sign = std::strchr(entry, '=');
        return sign ? Part(sign + 1, std::strlen(sign + 1)) : inspector_string();
    }

  private:
    // A copy in memory that goes with the value: a text may be kept longer than the environment stays as it
    // is.
    static inspector_string Part(char const* begin, std::size_t size) {
        return MakeString(ConstData(reinterpret_cast<unsigned char const*>(begin), size));
    }
};

// ---- Inspectors, by phrase
//
// Each constructs its result at `result`, and says with NoSuchObject that there is none. The evaluator does
// all the rest: a plural, a missing object, a wrong type of index never come here. Without a place for the
// result nothing happens.

// environment variable "NAME"
void VariableNamed(void* result, void const* index, void const*, void*, void const*) {
    if (!result) return;
    auto const& name = *static_cast<inspector_string const*>(index);
    for (char** at = environ; *at; ++at)
        if (std::strcspn(*at, "=") == name.length && std::memcmp(*at, name.bytes, name.length) == 0) {
            ::new (result) Variable{*at};
            return;
        }
    throw NoSuchObject();
}

// name of an environment variable
void NameOf(void* result, void const*, void const* object, void*, void const*) {
    if (result) ::new (result) inspector_string(static_cast<Variable const*>(object)->Name());
}

// value of an environment variable
void ValueOf(void* result, void const*, void const* object, void*, void const*) {
    if (result) ::new (result) inspector_string(static_cast<Variable const*>(object)->Value());
}

// ---- Iterators
//
// The state of an iteration lies in memory of the evaluator's, which begins and ends its life here.

// environment variables
struct Walk {
    char** at = environ;

    static void Begin(void* state) { ::new (state) Walk; }
    static void End(void const* state) { static_cast<Walk const*>(state)->~Walk(); }
    // First and Next are one function here: each yields the entry at hand and steps on.
    static void Step(void* result, void const*, void const*, void* state, void const*) {
        if (!result) return;
        auto& walk = *static_cast<Walk*>(state);
        if (!*walk.at) throw NoSuchObject();
        ::new (result) Variable{*walk.at++};
    }
};

// ---- Registrations

// A record is memory of the evaluator's use; its address stands for the registration, which ends with it.
template <unsigned long size, void (*withdraw)(void*)>
struct Record {
    alignas(void*) unsigned char memory[size];
    ~Record() { withdraw(memory); }
};
using Type = Record<kTypeRecordSize, Unregister_Type>;
using Property = Record<kPropertyRecordSize, Unregister_Property>;

// Registers when the library is loaded; its members withdraw before it is unloaded, the last one first. What
// the evaluator does not accept it reports by itself, and does not load the library.
struct Registrations {
    Type variable;
    Property named, all, name, value;

    Registrations() {
        char const* const type = "environment variable";
        Register_Type(&variable, kTypeRecordSize, type, sizeof(Variable), nullptr, nullptr, nullptr);
        Register_Property(&named, kPropertyRecordSize, type, "environment variables", "string", "", type,
                          VariableNamed, &named, nullptr);
        Register_Iterated_Property(&all, kPropertyRecordSize, type, "environment variables", "", "", type,
                                   sizeof(Walk), Walk::Begin, Walk::End, Walk::Step, Walk::Step, &all,
                                   nullptr);
        Register_Property(&name, kPropertyRecordSize, "name", "names", "", type, "string", NameOf, &name,
                          nullptr);
        Register_Property(&value, kPropertyRecordSize, "value", "values", "", type, "string", ValueOf, &value,
                          nullptr);
    }
} registrations;

}  // namespace
