#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/bytes.hpp"

/// Text as little-endian UTF-16 bytes.
namespace twk::platform {

/// A byte that is not well-formed UTF-8 becomes U+FFFD.
base::Bytes to_utf16(std::string_view text);
/// The number of its 16-bit units, by which directories and file systems of Windows limit a text: a character
/// beyond U+FFFF counts twice.
std::size_t utf16_length(std::string_view text);
/// Empty for bytes that are not UTF-16: an odd number of them, half a surrogate pair.
std::optional<std::string> from_utf16(std::span<const std::uint8_t> bytes);

}  // namespace twk::platform
