#pragma once

// Addresses of the Internet, of 32 bits.

#include <cstdint>

#include "Evaluator/Values.h"

/// An address: its first number in the most significant byte.
struct ip_address {
    std::uint32_t number;
};

/// Whether they are the same number.
bool operator==(ip_address const& left, ip_address const& right);

/// The address of a text that TextToIPAddress takes; NoSuchObject for any other.
ip_address ip_address_of(unsigned char const* text, unsigned long length);
/// Four decimal numbers with '.' between them.
inspector_string IPasString(ip_address const& address);
