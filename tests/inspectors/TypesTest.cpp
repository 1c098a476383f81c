#include "frame/Types.h"

#include <gtest/gtest.h>

#include "RegistrationLog.h"
#include "Slot.h"

namespace {

struct Plain {
    std::uint16_t number;
    std::uint8_t more[3];
};

struct Ending {
    explicit Ending(int& count) : ended(&count) {}
    ~Ending() { ++*ended; }
    int* ended;
};

struct Named {
    std::uint32_t code;
    friend Fingerprinter& operator<<(Fingerprinter& print, Named const& value) {
        FingerprintBytewise(print, value.code);
        return print;
    }
};

class RecordingFingerprinter : public Fingerprinter {
  public:
    void Add(ConstData bytes) override { identity.append(bytes.begin(), bytes.end()); }
    std::string identity;
};

}  // namespace

TEST(TypeRecord, RegistersSizeNameAndBase) {
    {
        TypeRecord<Plain> const record{"plain thing"};
        Registration const one = RegisteredAs("type \"plain thing\"");
        EXPECT_EQ(&record, one.record);
        EXPECT_EQ(512u, one.recordSize);
        EXPECT_EQ(6u, one.valueSize);
        EXPECT_EQ(nullptr, one.fingerprint);
        TypeRecord<Plain> const derived{"better thing", "plain thing"};
        RegisteredAs("type \"better thing\" based on \"plain thing\"");
    }
    EXPECT_TRUE(Registered().empty());
}

TEST(TypeRecord, EndsValuesInPlace) {
    TypeRecord<Ending> const record{"ending"};
    int ended = 0;
    Slot<Ending> slot;
    ::new (static_cast<void*>(slot)) Ending(ended);
    RegisteredAs("type \"ending\"").destroy(slot);
    EXPECT_EQ(1, ended);
}

TEST(TypeRecord, HasADestroyThatDoesNothingForPlainValues) {
    TypeRecord<Plain> const record{"plain"};
    Plain const value{7, {1, 2, 3}};
    DestroyFunction const destroy = RegisteredAs("type \"plain\"").destroy;
    ASSERT_NE(nullptr, destroy);
    destroy(&value);
    EXPECT_EQ(7, value.number);
    EXPECT_EQ(3, value.more[2]);
}

TEST(TypeRecord, RegistersTheTypesOwnFingerprintOnChoiceOne) {
    TypeRecord<Named, 1> const record{"named"};
    Named const value{0x64636261};
    RecordingFingerprinter print;
    RegisteredAs("type \"named\"").fingerprint(print, &value);
    EXPECT_EQ("abcd", print.identity);
}

TEST(FingerprintBytewise, AddsTheBytesInMemoryOrder) {
    RecordingFingerprinter print;
    FingerprintBytewise(print, std::uint16_t{0x6261});
    FingerprintBytewise(print, std::int64_t{0x3837363534333231});
    EXPECT_EQ("ab12345678", print.identity);
}

TEST(DependsOnlyOnParameters, WritesNothing) {
    RecordingFingerprinter print;
    DependsOnlyOnParameters(print);
    EXPECT_EQ("", print.identity);
}

namespace {
int cleared;
void Clear(void* argument) { cleared += argument == nullptr ? 1 : 100; }
}  // namespace

TEST(CacheRecord, RegistersItsFunction) {
    {
        CacheRecord const record{Clear};
        Registration const one = RegisteredAs("cache");
        EXPECT_EQ(&record, one.record);
        EXPECT_EQ(64u, one.recordSize);
        EXPECT_EQ(nullptr, one.reserved);
        one.clear(nullptr);
        EXPECT_EQ(1, cleared);
    }
    EXPECT_TRUE(Registered().empty());
}
