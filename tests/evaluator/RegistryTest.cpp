#include "registry/Registry.h"

#include <gtest/gtest.h>

#include "registry/PhrasesOfMany.h"
#include "registry/Vocabulary.h"

using namespace Evaluator;

namespace {

class Registering : public testing::Test {
  protected:
    ~Registering() override {
        registry.Forget(library);
        registry.TakeProblems();
    }
    static void Get(void*, void const*, void const*, void*, void const*) {}
    static void Operate(void*, void const*, void const*, void const*) {}
    static void Convert(void*, void const*, void const*) {}
    static void Clear(void*) {}

    void* Record() { return &records[used++]; }
    void* Type(char const* name, char const* base = "", unsigned long size = 4) {
        void* record = Record();
        Register_Type(record, 512, name, size, nullptr, base, nullptr);
        return record;
    }
    void* Property(char const* singular, char const* plural, char const* index, char const* object,
                   char const* result) {
        void* record = Record();
        Register_Property(record, 128, singular, plural, index, object, result, Get, record, nullptr);
        return record;
    }
    void* Operator(int code, char const* left, char const* right, char const* result) {
        void* record = Record();
        Register_Binary_Operator(record, 128, code, left, right, result, Operate, record, nullptr);
        return record;
    }
    static std::string Only(std::vector<std::string> const& problems) {
        return problems.size() == 1 ? problems[0] : std::to_string(problems.size()) + " problems";
    }

    Registry& registry = Registry::Instance();
    int handle = 0;
    Library library{"Some.dylib", "/some", &handle, 0};
    struct alignas(16) Bytes {
        unsigned char bytes[512];
    } records[128];
    int used = 0;
    Registry::Turn turn{registry, library};
};

TEST_F(Registering, TypesAreFoundByNameWhateverTheCaseAndBlanks) {
    Type("Some  Thing");
    ASSERT_TRUE(Vocabulary::Present().Type("some thing"));
    EXPECT_EQ(Vocabulary::Present().Type("some thing")->size, 4u);
    EXPECT_FALSE(Vocabulary::Present().Type("some"));
}

TEST_F(Registering, APropertyMayNameATypeThatComesLater) {
    Property("wheel", "wheels", "", "cart", "wheel");
    Type("cart");
    EXPECT_THROW(Vocabulary::Present().Result(*Vocabulary::Present().WithPhrase("wheel")[0].entry),
                 UnknownType);
    Type("wheel");
    Vocabulary const& vocabulary = Vocabulary::Present();
    auto found = vocabulary.FindProperty("wheel", vocabulary.Type("cart"), nullptr);
    ASSERT_TRUE(found);
    EXPECT_FALSE(found->plural);
    EXPECT_EQ(vocabulary.Result(*found->entry)->name, "wheel");
    EXPECT_TRUE(vocabulary.FindProperty("wheels", vocabulary.Type("cart"), nullptr)->plural);
}

TEST_F(Registering, PropertiesAreFoundOnTheTypeThenOnItsBases) {
    Type("thing");
    Type("cart", "thing");
    Type("hand cart", "cart");
    Property("name", "names", "", "thing", "thing");
    Property("name", "names", "", "cart", "cart");
    Property("part", "parts", "thing", "thing", "thing");
    Vocabulary const& vocabulary = Vocabulary::Present();
    auto result = [&](char const* phrase, char const* object, TypeEntry const* index) {
        auto found = vocabulary.FindProperty(phrase, vocabulary.Type(object), index);
        return found ? found->entry->result : std::string("none");
    };
    EXPECT_EQ(result("name", "hand cart", nullptr), "cart");
    EXPECT_EQ(result("name", "thing", nullptr), "thing");
    EXPECT_EQ(result("part", "hand cart", vocabulary.Type("cart")), "thing");
    EXPECT_EQ(result("part", "hand cart", nullptr), "none");
}

TEST_F(Registering, OperatorsAreTriedWithFewestStepsUpAndTheLeftOperandFirst) {
    Type("thing");
    Type("cart", "thing");
    void* upRight = Operator(6, "cart", "thing", "boolean");
    void* upLeft = Operator(6, "thing", "cart", "boolean");
    void* both = Operator(7, "thing", "thing", "boolean");
    Vocabulary const& vocabulary = Vocabulary::Present();
    TypeEntry const& cart = *vocabulary.Type("cart");
    EXPECT_EQ(vocabulary.FindOperator(6, cart, cart)->record, upRight);
    Unregister_Binary_Operator(upRight);
    EXPECT_EQ(Vocabulary::Present().FindOperator(6, cart, cart)->record, upLeft);
    EXPECT_EQ(Vocabulary::Present().FindOperator(7, cart, cart)->record, both);
    EXPECT_EQ(Vocabulary::Present().FindOperator(8, cart, cart), nullptr);
}

TEST_F(Registering, TheNearestCommonBase) {
    Type("thing");
    Type("cart", "thing");
    Type("hand cart", "cart");
    Type("barrow", "cart");
    Type("cloud");
    Vocabulary const& vocabulary = Vocabulary::Present();
    auto common = [&](char const* left, char const* right) {
        TypeEntry const* base = vocabulary.CommonBase(*vocabulary.Type(left), *vocabulary.Type(right));
        return base ? base->name : "none";
    };
    EXPECT_EQ(common("hand cart", "barrow"), "cart");
    EXPECT_EQ(common("hand cart", "thing"), "thing");
    EXPECT_EQ(common("cart", "cart"), "cart");
    EXPECT_EQ(common("cart", "cloud"), "none");
}

TEST_F(Registering, BasesThatFormARingAreReported) {
    Type("hen", "egg");
    Type("egg", "hen");
    EXPECT_THROW(
        Vocabulary::Present().Serves(*Vocabulary::Present().Type("hen"), *Vocabulary::Present().Type("egg")),
        UnknownType);
}

TEST_F(Registering, WhatIsWithdrawnIsGoneAndMayComeAgain) {
    void* record = Type("thing");
    Unregister_Property(record);  // of another kind: nothing happens
    EXPECT_TRUE(Vocabulary::Present().Type("thing"));
    Unregister_Type(record);
    EXPECT_FALSE(Vocabulary::Present().Type("thing"));
    Unregister_Type(record);
    EXPECT_TRUE(Register_Type(record, 512, "thing", 4, nullptr, "", nullptr));
    EXPECT_TRUE(registry.TakeProblems().empty());
}

TEST_F(Registering, RefusalsNameLibraryKindAndPhrase) {
    auto refused = [&] { return Only(registry.TakeProblems()); };
    EXPECT_FALSE(Register_Type(Record(), 500, "thing", 4, nullptr, "", nullptr));
    EXPECT_EQ(refused(), "Some.dylib: type \"thing\": its record has 500 bytes for the host instead of 512");
    EXPECT_FALSE(Register_Type(nullptr, 512, "thing", 4, nullptr, "", nullptr));
    EXPECT_EQ(refused(), "Some.dylib: type \"thing\": registered without a record");
    Type("2 things");
    EXPECT_EQ(refused(), "Some.dylib: type \"2 things\": \"2\" in its phrase \"2 things\" is no word");
    Type("");
    EXPECT_EQ(refused(), "Some.dylib: type \"\": its phrase is empty");
    Type("giant", "", 1 << 21);
    EXPECT_EQ(
        refused(),
        "Some.dylib: type \"giant\": its 2097152 bytes are more than the 1048576 that a value may have");
    Property("contains", "contained", "", "thing", "thing");
    EXPECT_EQ(
        refused(),
        "Some.dylib: property \"contains\" of \"thing\": its phrase \"contains\" holds the reserved word "
        "\"contains\"");
    Property("line with", "lines with", "string", "thing", "thing");
    EXPECT_TRUE(registry.TakeProblems().empty());
    EXPECT_FALSE(Register_Cast(Record(), 128, "word", "a", "b", nullptr, nullptr, nullptr));
    EXPECT_EQ(refused(), "Some.dylib: cast \"word\" of \"a\": a function that it needs is missing");
    Operator(9, "thing", "thing", "thing");
    EXPECT_EQ(refused(),
              "Some.dylib: operator 9 of \"thing\" and \"thing\": there is no operator of that code");
}

TEST_F(Registering, PhrasesOfTheLanguageItselfAreRefused) {
    std::string phrases;
    for (PhraseOfMany const& row : kPhrasesOfMany)
        for (std::string phrase : {std::string(row.singular), std::string(row.plural)}) {
            Property(phrase.c_str(), "others", "", "thing", "thing");
            Property("other", phrase.c_str(), "integer", "thing", "thing");
            std::string const fault = ": \"" + phrase + "\" is a phrase of the language itself";
            EXPECT_EQ(registry.TakeProblems(),
                      (std::vector<std::string>{
                          "Some.dylib: property \"" + phrase + "\" of \"thing\"" + fault,
                          "Some.dylib: property \"other\" with index \"integer\" of \"thing\"" + fault}));
            phrases += phrase + ", ";
        }
    EXPECT_EQ(
        phrases,
        "number, numbers, sum, sums, minimum, minimums, maximum, maximums, unique value, unique values, "
        "sorted value, sorted values, first value, first values, last value, last values, concatenation, "
        "concatenations, ");
}

TEST(RegisteringOutsideALoad, IsRefusedWithoutANote) {
    alignas(16) unsigned char record[512];
    EXPECT_FALSE(Register_Type(record, 512, "thing", 4, nullptr, "", nullptr));
    EXPECT_TRUE(Registry::Instance().TakeProblems().empty());
}

TEST_F(Registering, TheSamePhraseIndexAndObjectOnce) {
    Property("name", "names", "", "thing", "thing");
    Property("name", "names", "string", "thing", "thing");
    Property("name", "names", "", "cart", "thing");
    EXPECT_TRUE(registry.TakeProblems().empty());
    Property("label", "names", "", "thing", "thing");
    EXPECT_EQ(Only(registry.TakeProblems()),
              "Some.dylib: property \"label\" of \"thing\": already registered by Some.dylib");
    Register_Cast(Record(), 128, "word", "a", "b", Convert, nullptr, nullptr);
    Register_Cast(Record(), 128, "word", "a", "c", Convert, nullptr, nullptr);
    EXPECT_EQ(Only(registry.TakeProblems()),
              "Some.dylib: cast \"word\" of \"a\": already registered by Some.dylib");
    Register_Cache(Record(), 64, Clear, nullptr);
    Register_Cache(Record(), 64, Clear, nullptr);
    EXPECT_TRUE(registry.TakeProblems().empty());
}

}  // namespace
