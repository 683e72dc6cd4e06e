#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Security identifiers as bytes, [MS-DTYP] 2.4.2.2: revision 1, count of sub-authorities, authority (6
/// bytes, big-endian), sub-authorities (4 bytes each, little-endian). The last sub-authority is the relative
/// id.
namespace twk::ads {

/// "S-1-5-21-a-b-c" as bytes.
std::string make_domain_sid(std::uint32_t a, std::uint32_t b, std::uint32_t c);
/// "S-1-5-32-rid": a local group that every domain has.
std::string make_builtin_sid(std::uint32_t rid);
/// The domain's identifier followed by a relative id.
std::string append_rid(std::string_view domain_sid, std::uint32_t rid);
/// None for bytes that are not an identifier with a relative id.
std::optional<std::uint32_t> rid_of(std::string_view sid);
/// Without the relative id; empty for bytes that are not an identifier.
std::string without_rid(std::string_view sid);

}  // namespace twk::ads
