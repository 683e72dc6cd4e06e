// NETLOGON_SAM_LOGON_RESPONSE_EX, [MS-ADTS] 6.3.1.9, numbers with the low byte first:
//
//   offset  size
//        0     2  opcode, 23, or 25 for a user who was asked about and is unknown
//        2     2  0
//        4     4  flags
//        8    16  GUID of the domain
//       24        names of the forest, the domain, the controller; NetBIOS names of domain and controller; the user;
//                 the sites of the controller and of who asks; each as labels that end with an empty one, or with a
//                 pointer to where the rest stands before (RFC 1035 4.1.4; offsets count from the first byte)
//
// What follows, addresses and versions, is not needed.

#include "live/domain/netlogon_answer.hpp"

#include <array>
#include <cstddef>

namespace twk::live {
namespace {

constexpr unsigned kResponseOpcode = 23;
constexpr unsigned kUnknownUserOpcode = 25;
constexpr std::size_t kFirstName = 24;
constexpr std::size_t kNames = 8;
constexpr unsigned kPointer = 0xC0;
constexpr std::size_t kLongestLabel = 63;
constexpr std::size_t kLongestName = 255;

unsigned byte_at(std::string_view bytes, std::size_t place) {
  return static_cast<unsigned char>(bytes[place]);
}

/// Leaves `place` behind the name. A pointer may only lead to what is in front of the labels that are being
/// read, so that it ends.
std::optional<std::string> read_name(std::string_view bytes, std::size_t& place) {
  std::string name;
  std::size_t at = place;
  std::size_t begin = place;
  bool jumped = false;
  while (at < bytes.size()) {
    const unsigned length = byte_at(bytes, at++);
    if ((length & kPointer) == kPointer) {
      if (at == bytes.size())
        return std::nullopt;
      const std::size_t target = (length & ~kPointer) << 8U | byte_at(bytes, at++);
      if (target >= begin)
        return std::nullopt;
      place = jumped ? place : at;
      jumped = true;
      at = begin = target;
      continue;
    }
    if (length == 0) {
      place = jumped ? place : at;
      return name;
    }
    if (length > kLongestLabel || length > bytes.size() - at || name.size() + length >= kLongestName)
      return std::nullopt;
    name.append(name.empty() ? "" : ".").append(bytes.substr(at, length));
    at += length;
  }
  return std::nullopt;
}

}  // namespace

std::optional<NetlogonAnswer> parse_netlogon_answer(std::string_view bytes) {
  if (bytes.size() < kFirstName)
    return std::nullopt;
  const unsigned opcode = byte_at(bytes, 0) | byte_at(bytes, 1) << 8U;
  if (opcode != kResponseOpcode && opcode != kUnknownUserOpcode)
    return std::nullopt;
  std::array<std::string, kNames> names;
  std::size_t place = kFirstName;
  for (std::string& name : names) {
    auto next = read_name(bytes, place);
    if (!next)
      return std::nullopt;
    name = std::move(*next);
  }
  auto& [forest, domain, host, netbios, computer, user, site, own_site] = names;
  return NetlogonAnswer{std::move(domain), std::move(host), std::move(site), std::move(own_site)};
}

}  // namespace twk::live
