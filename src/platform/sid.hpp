#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/bytes.hpp"

namespace twk::platform {

/// A security identifier, [MS-DTYP] 2.4.2. As bytes (2.4.2.2): revision 1, the count of sub-authorities (at
/// most 15), the authority (6 bytes, big-endian), the sub-authorities (4 bytes each, little-endian). Always
/// well formed.
class Sid {
 public:
  /// "S-1-<authority>-<sub-authority>…"; any beyond 15 sub-authorities are left out.
  Sid(std::uint64_t authority, std::initializer_list<std::uint32_t> sub_authorities);

  /// The identifier that `bytes` begins with; what follows it is ignored. None when there is none.
  static std::optional<Sid> decode(std::span<const std::uint8_t> bytes);
  /// "S-1-5-32-544", in either case. None for any other text.
  static std::optional<Sid> parse(std::string_view text);

  [[nodiscard]] const base::Bytes& bytes() const { return bytes_; }
  /// `GetLengthSid`: number of bytes.
  [[nodiscard]] std::size_t size() const { return bytes_.size(); }
  /// "S-1-5-32-544"; an authority of 2^32 or more is in hexadecimal digits.
  [[nodiscard]] std::string text() const;

  friend bool operator==(const Sid&, const Sid&) = default;
  friend bool operator<(const Sid& a, const Sid& b) { return a.bytes_ < b.bytes_; }

 private:
  explicit Sid(base::Bytes bytes) : bytes_(std::move(bytes)) {}
  base::Bytes bytes_;
};

/// Identifiers that are the same everywhere, [MS-DTYP] 2.4.2.4.
namespace well_known {

Sid everyone();             ///< "World", S-1-1-0
Sid creator_owner();        ///< S-1-3-0: replaced by the owner when a list is inherited
Sid creator_group();        ///< S-1-3-1
Sid owner_rights();         ///< S-1-3-4
Sid principal_self();       ///< S-1-5-10: in the list of an account that account itself
Sid authenticated_users();  ///< S-1-5-11
Sid local_system();         ///< S-1-5-18
Sid administrators();       ///< S-1-5-32-544
Sid users();                ///< S-1-5-32-545

}  // namespace well_known

}  // namespace twk::platform
