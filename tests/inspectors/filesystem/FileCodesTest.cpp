#include "filesystem/FileCodes.h"

#include <gtest/gtest.h>

#include "Evaluator/Exceptions.h"
#include "support/Owned.h"

namespace {

std::uint32_t TypeCode(std::string_view text) { return file_type_of(Bytes(text), text.size()).code; }
std::uint32_t SignatureCode(std::string_view text) {
    return file_signature_of(Bytes(text), text.size()).code;
}

}  // namespace

TEST(FileCodes, HaveTheFirstCharacterInTheTopByte) {
    EXPECT_EQ(0x54455854u, TypeCode("TEXT"));
    EXPECT_EQ(0x74747874u, SignatureCode("ttxt"));
    EXPECT_EQ(0xFF20C100u, TypeCode(std::string_view("\xFF \xC1\0", 4)));
}

TEST(FileCodes, AreOfExactlyFourBytes) {
    for (char const* text : {"", "TXT", "TEXT2"}) {
        EXPECT_THROW(TypeCode(text), NoSuchObject) << text;
        EXPECT_THROW(SignatureCode(text), NoSuchObject) << text;
    }
}

TEST(FileCodes, AreEqualWhenTheNumbersAre) {
    EXPECT_TRUE(file_type{1} == file_type{1});
    EXPECT_FALSE(file_type{1} == file_type{2});
    EXPECT_TRUE(file_signature{1} == file_signature{1});
    EXPECT_FALSE(file_signature{1} == file_signature{2});
}
