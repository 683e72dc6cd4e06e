#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/security_descriptor.hpp"

/// Who has which right on an object of a directory.
namespace twk::platform {

/// Bits of an access mask that mean something else in a directory than of files, [MS-ADTS] 5.1.3.2.
namespace directory_access {
inline constexpr std::uint32_t kCreateChild = 0x1;
inline constexpr std::uint32_t kDeleteChild = 0x2;
inline constexpr std::uint32_t kWriteProperty = 0x20;
inline constexpr std::uint32_t kControlAccess = 0x100;
}  // namespace directory_access

/// What an entry is about (a class, an attribute, an extended right), as [MS-DTYP] 2.3.4.2 packs it.
using Guid = std::array<std::uint8_t, 16>;

/// "00299570-246d-11d0-a768-00aa006e0529": of the first three groups the last byte comes first.
constexpr Guid guid(std::string_view text) {
  constexpr std::size_t kPlaces[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  Guid bytes{};
  std::size_t digit = 0;
  for (const char c : text) {
    if (c == '-')
      continue;
    const int value = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
    std::uint8_t& byte = bytes.at(kPlaces[digit++ / 2]);
    byte = static_cast<std::uint8_t>(byte * 16 + value);
  }
  return bytes;
}

/// None for an entry that is about everything.
std::optional<Guid> object_type(const Ace& ace);

/// A right that is asked for.
struct ObjectRight {
  std::uint32_t mask = 0;     ///< one bit
  std::optional<Guid> about;  ///< the class of the child, the attribute, the extended right
  std::optional<Sid> self;    ///< the object's own identifier, for which entries say "self"
};

/// True when the descriptor grants the right to someone with these identifiers, by the algorithm of [MS-DTYP]
/// 2.5.3.2 for one right: the first entry about it counts; the owner may always read and write the list.
/// Conditions, which only the server can evaluate, count as met where they allow and as not met where they
/// deny.
bool grants(const SecurityDescriptor& descriptor, std::span<const Sid> identifiers, const ObjectRight& right);

}  // namespace twk::platform
