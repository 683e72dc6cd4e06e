#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/bytes.hpp"

/// A password on its way to an account service, [MS-SAMR] 3.2.2.1 and 3.2.2.2:
///
///     offset  bytes
///          0  …      random bytes, as many as the password leaves
///          …  …      the password in UTF-16, little-endian, up to offset 512
///        512  4      its length in bytes
///
/// encrypted with RC4. The ciphers are old, but this is the only form that NT4-style domains know; it is sent
/// over a signed SMB connection. For a directory, passwords are sent over LDAP.
namespace twk::live {

inline constexpr std::size_t kPasswordBufferSize = 516;
inline constexpr std::size_t kPasswordSaltSize = 16;

/// The buffer with 512 bytes of `random` filling it. Raises 2245, the policy's number, for a password of more
/// than 256 UTF-16 units.
base::Bytes password_buffer(std::string_view password, std::span<const std::uint8_t> random);

/// The cipher of RFC 6229; the same call decrypts.
base::Bytes rc4(std::span<const std::uint8_t> key, std::span<const std::uint8_t> bytes);
/// The digest of RFC 1321.
std::array<std::uint8_t, 16> md5(std::span<const std::uint8_t> bytes);

}  // namespace twk::live
