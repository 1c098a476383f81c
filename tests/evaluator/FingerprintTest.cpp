#include "Evaluator/Fingerprint.h"

#include <gtest/gtest.h>

#include "Evaluator/Time.h"
#include "TextOf.h"

namespace {

class RecordingFingerprinter : public Fingerprinter {
  public:
    void Add(ConstData bytes) override { identity += TextOf(bytes); }
    std::string identity;
};

std::string const noBytes;

std::uint64_t HashOf(std::string const& text) {
    HashingFingerprinter print;
    print.Add(BytesOf(text));
    return print.Value();
}

}  // namespace

TEST(Fingerprint, OfAByteRangeIsItsBytesInMemoryOrder) {
    RecordingFingerprinter print;
    unsigned char const bytes[] = {'a', 0, 'b', 'c'};
    Fingerprint_Byte_Range(print, bytes, bytes + 3);
    EXPECT_EQ(std::string("a\0b", 3), print.identity);
}

TEST(Fingerprint, OfAnEmptyRangeIsNothing) {
    RecordingFingerprinter print;
    Fingerprint_Byte_Range(print, nullptr, nullptr);
    EXPECT_EQ("", print.identity);
}

TEST(Fingerprint, OfAStringTellsWhereItEnds) {
    RecordingFingerprinter together;
    RecordingFingerprinter apart;
    together << StringOf("ab") << StringOf("");
    apart << StringOf("a") << StringOf("b");
    EXPECT_EQ(std::string("\2\0\0\0ab\0\0\0\0", 10), together.identity);
    EXPECT_NE(together.identity, apart.identity);
}

TEST(Fingerprint, OfATimeIsItsMicroseconds) {
    RecordingFingerprinter print;
    print << AsMoment(Instant{0x0102030405060708});
    EXPECT_EQ("\x08\x07\x06\x05\x04\x03\x02\x01", print.identity);
}

TEST(HashingFingerprinter, IsTheWellKnownFunction) {
    EXPECT_EQ(0xCBF29CE484222325, HashOf(noBytes));
    EXPECT_EQ(0xAF63DC4C8601EC8C, HashOf("a"));
    EXPECT_EQ(0x85944171F73967E8, HashOf("foobar"));
}

TEST(HashingFingerprinter, DoesNotDependOnThePieces) {
    HashingFingerprinter pieces;
    pieces.Add("foo");
    pieces.Add("");
    pieces.Add("bar");
    EXPECT_EQ(HashOf("foobar"), pieces.Value());
}
