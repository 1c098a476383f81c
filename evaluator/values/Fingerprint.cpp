#include "Evaluator/Fingerprint.h"

#include "Evaluator/Time.h"

Fingerprinter::~Fingerprinter() = default;

void HashingFingerprinter::Add(ConstData bytes) {
    constexpr std::uint64_t prime = 0x100000001B3;
    for (unsigned char byte : bytes) hash = (hash ^ byte) * prime;
}

void Fingerprint_Byte_Range(Fingerprinter& print, void const* begin, void const* end) {
    print.Add({static_cast<unsigned char const*>(begin), static_cast<unsigned char const*>(end)});
}

Fingerprinter& operator<<(Fingerprinter& print, inspector_string const& text) {
    Fingerprint_Byte_Range(print, &text.length, &text.length + 1);
    print.Add(text);
    return print;
}

Fingerprinter& operator<<(Fingerprinter& print, moment const& time) {
    std::int64_t const microseconds = time.SinceEpoch().microseconds;
    Fingerprint_Byte_Range(print, &microseconds, &microseconds + 1);
    return print;
}
