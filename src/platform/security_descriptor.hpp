#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/bytes.hpp"
#include "platform/acl.hpp"
#include "platform/sid.hpp"

namespace twk::platform {

/// Control bits of a descriptor, [MS-DTYP] 2.4.6.
namespace descriptor_control {
inline constexpr std::uint16_t kDaclPresent = 0x0004;
inline constexpr std::uint16_t kSaclPresent = 0x0010;
inline constexpr std::uint16_t kDaclProtected = 0x1000;
inline constexpr std::uint16_t kSelfRelative = 0x8000;
}  // namespace descriptor_control

/// A security descriptor, [MS-DTYP] 2.4.6. `InitializeSecurityDescriptor` sets revision 1 and nothing else,
/// like the default constructor here.
struct SecurityDescriptor {
  std::uint16_t control = 0;  ///< the bits that the fields below do not imply
  std::optional<Sid> owner;
  std::optional<Sid> group;
  bool dacl_present = false;
  std::optional<Acl> dacl;  ///< present without a list: everyone may do everything
  bool sacl_present = false;
  std::optional<Acl> sacl;

  /// `SetSecurityDescriptorDacl` with "present".
  void set_dacl(Acl list) {
    dacl_present = true;
    dacl = std::move(list);
  }

  /// `MakeSelfRelativeSD`: header (20 bytes), audit list, access list, owner, group.
  [[nodiscard]] base::Bytes encode() const;
  /// Reads a self-relative descriptor, its parts in any order. Raises kInvalidDescriptor, or kInvalidAcl and
  /// kInvalidSid for a part, and reads nothing past the end.
  static SecurityDescriptor decode(std::span<const std::uint8_t> bytes);

  friend bool operator==(const SecurityDescriptor&, const SecurityDescriptor&) = default;
};

}  // namespace twk::platform
