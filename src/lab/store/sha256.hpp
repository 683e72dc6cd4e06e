#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace twk::lab {

/// The SHA-256 digest of the bytes, FIPS 180-4 and RFC 6234.
std::array<std::uint8_t, 32> sha256(std::string_view bytes);

}  // namespace twk::lab
