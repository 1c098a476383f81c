// The host's registration calls, for tests without a host: they write down what they are told. A withdrawal
// by the wrong call, or of a record that is not registered, is a test failure.

#include "RegistrationLog.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

std::vector<Registration> registered;
std::vector<std::string> withdrawn;

std::string Quoted(char const* text) { return " \"" + std::string(text) + "\""; }
std::string Optional(char const* before, char const* text, char const* after = "") {
    return *text == '\0' ? "" : before + std::string("\"") + text + "\"" + after;
}
std::string Marker(DependencyFunction dependency) { return dependency == nullptr ? "" : " pure"; }

bool Add(Registration registration) {
    for (Registration const& other : registered) EXPECT_NE(other.record, registration.record);
    registered.push_back(std::move(registration));
    return true;
}

void Withdraw(void* record, std::string const& kind) {
    auto const found = std::find_if(registered.begin(), registered.end(),
                                    [&](Registration const& one) { return one.record == record; });
    ASSERT_NE(registered.end(), found) << kind;
    EXPECT_NE(std::string::npos, found->row.find(kind)) << found->row;
    withdrawn.push_back(found->row);
    registered.erase(found);
}

std::string PropertyRow(std::string const& kind, char const* singular, char const* plural, char const* index,
                        char const* object, char const* result, DependencyFunction dependency) {
    return kind + Quoted(singular) + Quoted(plural) + Optional(" [", index, "]") + Optional(" of ", object) +
           ":" + Quoted(result) + Marker(dependency);
}

}  // namespace

std::vector<Registration> const& Registered() { return registered; }

std::vector<std::string> RegisteredRows() {
    std::vector<std::string> rows;
    for (Registration const& one : registered) rows.push_back(one.row);
    return rows;
}

Registration RegisteredAs(std::string const& row) {
    Registration found;
    int count = 0;
    for (Registration const& one : registered) {
        if (one.row != row) continue;
        found = one;
        ++count;
    }
    EXPECT_EQ(1, count) << row;
    return found;
}

std::vector<std::string> const& Withdrawn() { return withdrawn; }
void ForgetWithdrawn() { withdrawn.clear(); }

bool Register_Type(void* record, unsigned long recordSize, char const* name, unsigned long valueSize,
                   DestroyFunction destroy, char const* base, FingerprintFunction fingerprint) {
    Registration one;
    one.row = "type" + Quoted(name) + (base == nullptr ? "" : " based on" + Quoted(base));
    one.record = record;
    one.recordSize = recordSize;
    one.valueSize = valueSize;
    one.destroy = destroy;
    one.fingerprint = fingerprint;
    return Add(one);
}

bool Register_Property(void* record, unsigned long recordSize, char const* singular, char const* plural,
                       char const* index, char const* object, char const* result, PropertyFunction get,
                       void const* context, DependencyFunction dependency) {
    Registration one;
    one.row = PropertyRow("property", singular, plural, index, object, result, dependency);
    one.record = record;
    one.recordSize = recordSize;
    one.get = get;
    one.context = context;
    one.dependency = dependency;
    return Add(one);
}

bool Register_Iterated_Property(void* record, unsigned long recordSize, char const* singular,
                                char const* plural, char const* index, char const* object, char const* result,
                                unsigned long stateSize, ConstructFunction construct, DestroyFunction destroy,
                                PropertyFunction first, PropertyFunction next, void const* context,
                                DependencyFunction dependency) {
    Registration one;
    one.row = PropertyRow("iterated property", singular, plural, index, object, result, dependency);
    one.record = record;
    one.recordSize = recordSize;
    one.valueSize = stateSize;
    one.construct = construct;
    one.destroy = destroy;
    one.get = first;
    one.next = next;
    one.context = context;
    one.dependency = dependency;
    return Add(one);
}

bool Register_Cast(void* record, unsigned long recordSize, char const* phrase, char const* source,
                   char const* target, CastFunction thunk, void const* context,
                   DependencyFunction dependency) {
    Registration one;
    one.row = "cast" + Quoted(phrase) + " of" + Quoted(source) + ":" + Quoted(target) + Marker(dependency);
    one.record = record;
    one.recordSize = recordSize;
    one.cast = thunk;
    one.context = context;
    one.dependency = dependency;
    return Add(one);
}

bool Register_Binary_Operator(void* record, unsigned long recordSize, int code, char const* left,
                              char const* right, char const* result, BinaryOperatorFunction thunk,
                              void const* context, DependencyFunction dependency) {
    Registration one;
    one.row = "operator " + std::to_string(code) + Quoted(left) + Quoted(right) + ":" + Quoted(result) +
              Marker(dependency);
    one.record = record;
    one.recordSize = recordSize;
    one.compute = thunk;
    one.context = context;
    one.dependency = dependency;
    return Add(one);
}

bool Register_Cache(void* record, unsigned long recordSize, ClearCacheFunction clear, void* reserved) {
    Registration one;
    one.row = "cache";
    one.record = record;
    one.recordSize = recordSize;
    one.clear = clear;
    one.reserved = reserved;
    return Add(one);
}

void Unregister_Type(void* record) { Withdraw(record, "type"); }
void Unregister_Property(void* record) { Withdraw(record, "property"); }
void Unregister_Cast(void* record) { Withdraw(record, "cast"); }
void Unregister_Binary_Operator(void* record) { Withdraw(record, "operator"); }
void Unregister_Cache(void* record) { Withdraw(record, "cache"); }
