// The vocabulary as a query asks for it.

#include "evaluator/Stones.h"

namespace {

using VocabularyAsked = Stones;

TEST_F(VocabularyAsked, AllTypesInTheOrderOfTheirRegistration) {
    EXPECT_EQ(Answer("names of types"),
              "string|integer|boolean|time|time interval|type|property|stone|pebble|cloud");
    EXPECT_EQ(Answer("type \"stone\""), "type stone");
    EXPECT_EQ(Answer("type \"Time  INTERVAL\""), "type time interval");
    EXPECT_EQ(Ask("type \"boulder\"").problems, "error: no such object\n  type \"boulder\"\n  ^~~~\n");
    EXPECT_EQ(Answer("exists type \"boulder\"; exists type \"\""), "false|false");
}

TEST_F(VocabularyAsked, BaseTypes) {
    EXPECT_EQ(Answer("base type of type \"pebble\""), "type stone");
    EXPECT_EQ(Ask("base type of type \"stone\"").problems,
              "error: no such object\n  base type of type \"stone\"\n  ^~~~~~~~~\n");
    EXPECT_EQ(Answer("names of base types of types"), "stone");
}

TEST_F(VocabularyAsked, PropertiesOfATypeThenThoseOfItsBases) {
    EXPECT_EQ(Answer("properties of type \"stone\""), "mark of stone: integer|name of stone: string");
    EXPECT_EQ(Answer("properties of type \"pebble\""),
              "shine of pebble: integer|name of pebble: string|mark of stone: integer");
    EXPECT_EQ(Answer("properties of type \"time\""), "");
    EXPECT_EQ(
        Answer("properties of type \"string\""),
        "length of string: integer|substring before (string) of string: string|substring after (string) "
        "of string: string|substring separated by (string) of string: string");
}

TEST_F(VocabularyAsked, PropertiesAreShownByIndexObjectAndResult) {
    EXPECT_EQ(Answer("properties whose (singular phrase of it = \"time\")"), "time (string): time");
    EXPECT_EQ(Answer("properties whose (singular phrase of it = \"now\") as string"), "now: time");
}

TEST_F(VocabularyAsked, AllPropertiesIncludeThoseOfTheWorldAndTheCores) {
    EXPECT_EQ(Answer("number of properties whose (library of it = \"StoneInspectors.dylib\")"), "11");
    EXPECT_EQ(Answer("unique values of libraries of properties"), "core|StoneInspectors.dylib");
    EXPECT_EQ(Answer("properties whose (library of it = \"core\" and not exists object type of it)"),
              "integer up to (integer): integer|now: time|time (string): time|second: time interval|minute: "
              "time interval|hour: time interval|day: time interval|week: time interval|type (string): "
              "type|type: type|property: property");
    EXPECT_EQ(Answer("number of properties = number of properties whose (exists plural phrase of it)"),
              "true");
}

TEST_F(VocabularyAsked, WhatTakesManyIsNoRegistration) {
    EXPECT_EQ(Answer("exists properties whose (singular phrase of it = \"number\")"), "false");
}

TEST_F(VocabularyAsked, EverythingOfAProperty) {
    std::string const before =
        "(properties of type \"string\") whose (singular phrase of it = \"substring before\")";
    EXPECT_EQ(Answer("(singular phrase of it, plural phrase of it, name of index type of it, name of object "
                     "type of it, name of result type of it, library of it) of " +
                     before),
              "substring before, substrings before, string, string, string, core");
    std::string const now = "properties whose (singular phrase of it = \"now\")";
    EXPECT_EQ(Answer("exists index type of (" + now + "); exists object type of (" + now + ")"),
              "false|false");
    EXPECT_EQ(Ask("index type of " + now).problems,
              "error: no such object\n  index type of " + now + "\n  ^~~~~~~~~~\n");
}

TEST_F(VocabularyAsked, ATypeThatNobodyRegisteredIsNamed) {
    ASSERT_EQ(Messages(Evaluator::LoadInspectorLibrary(TestLibrary("UnknownInspectors"))), "");
    std::string const strange = "properties whose (singular phrase of it = \"strange answer\")";
    EXPECT_EQ(Answer(strange), "strange answer: stranger");
    EXPECT_EQ(Ask("result type of " + strange).problems,
              "error: \"result type\" failed: UnknownInspectors.dylib: property \"strange answer\" of the "
              "world: no library registers the type \"stranger\" that it names\n  result type of " +
                  strange + "\n  ^~~~~~~~~~~\n");
    EXPECT_FALSE(Evaluator::UnloadInspectorLibrary("UnknownInspectors.dylib"));
}

TEST_F(VocabularyAsked, CastsOfATypeAreTheirPhrases) {
    EXPECT_EQ(Answer("casts of type \"string\""), "integer|uppercase|lowercase");
    EXPECT_EQ(Answer("casts of type \"integer\"; casts of type \"property\""), "string|string");
    EXPECT_EQ(Answer("casts of type \"stone\""), "string|integer");
    EXPECT_EQ(Answer("casts of type \"pebble\""), "integer|string");
    EXPECT_EQ(Answer("casts of type \"cloud\""), "");
}

}  // namespace
