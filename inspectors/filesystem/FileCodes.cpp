#include "filesystem/FileCodes.h"

#include "Evaluator/Exceptions.h"

namespace {

std::uint32_t CodeOf(unsigned char const* text, unsigned long length) {
    if (length != 4) throw NoSuchObject();
    return static_cast<std::uint32_t>(text[0]) << 24 | static_cast<std::uint32_t>(text[1]) << 16 |
           static_cast<std::uint32_t>(text[2]) << 8 | text[3];
}

}  // namespace

bool operator==(file_type const& left, file_type const& right) { return left.code == right.code; }
bool operator==(file_signature const& left, file_signature const& right) { return left.code == right.code; }

file_type file_type_of(unsigned char const* text, unsigned long length) { return {CodeOf(text, length)}; }
file_signature file_signature_of(unsigned char const* text, unsigned long length) {
    return {CodeOf(text, length)};
}
