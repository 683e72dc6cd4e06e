#include "platform/object_access.hpp"

#include <algorithm>

#include "platform/little_endian.hpp"

namespace twk::platform {
namespace {

/// Types of an entry besides the plain ones, [MS-DTYP] 2.4.4.1.
constexpr std::uint8_t kAllowObject = 5;
constexpr std::uint8_t kDenyObject = 6;
constexpr std::uint8_t kAllowConditionally = 9;
constexpr std::uint8_t kAllowObjectConditionally = 11;

/// A mask with its generic bits replaced by the rights that they mean in a directory, [MS-ADTS] 5.1.3.2.
std::uint32_t map_generic_directory_bits(std::uint32_t mask) {
  constexpr std::pair<std::uint32_t, std::uint32_t> kMappings[] = {{access::kGenericAll, 0xF01FF},
                                                                   {access::kGenericRead, 0x20094},
                                                                   {access::kGenericWrite, 0x20028},
                                                                   {access::kGenericExecute, 0x20004}};
  for (const auto& [generic, rights] : kMappings) {
    if ((mask & generic) != 0)
      mask |= rights;
  }
  return mask;
}

bool allows(std::uint8_t type) {
  return type == ace_type::kAllow || type == kAllowObject || type == kAllowConditionally ||
         type == kAllowObjectConditionally;
}

bool denies(std::uint8_t type) {
  return type == ace_type::kDeny || type == kDenyObject;
}

class Holder {
 public:
  Holder(const SecurityDescriptor& descriptor, std::span<const Sid> identifiers, const ObjectRight& right)
      : identifiers_(identifiers),
        is_self_(right.self && has(*right.self)),
        is_owner_(descriptor.owner && has(*descriptor.owner)) {}

  [[nodiscard]] bool is(const Sid& sid) const {
    return has(sid) || (is_self_ && sid == well_known::principal_self()) ||
           (is_owner_ && sid == well_known::owner_rights());
  }

  [[nodiscard]] bool is_owner() const { return is_owner_; }

 private:
  [[nodiscard]] bool has(const Sid& sid) const {
    return std::find(identifiers_.begin(), identifiers_.end(), sid) != identifiers_.end();
  }

  std::span<const Sid> identifiers_;
  bool is_self_;
  bool is_owner_;
};

bool is_about(const Ace& ace, const ObjectRight& right) {
  if ((map_generic_directory_bits(ace.mask()) & right.mask) == 0)
    return false;
  const auto type = object_type(ace);
  return !type || type == right.about;
}

}  // namespace

std::optional<Guid> object_type(const Ace& ace) {
  constexpr std::size_t kFlagsAt = 8;
  constexpr std::size_t kTypeAt = 12;
  constexpr std::uint32_t kTypePresent = 1;
  const bool has_types =
      ace.type() == kAllowObject || ace.type() == kDenyObject || ace.type() == kAllowObjectConditionally;
  Guid type{};
  if (!has_types || ace.size() < kTypeAt + type.size() ||
      (read_u32(ace.bytes(), kFlagsAt) & kTypePresent) == 0)
    return std::nullopt;
  std::copy_n(ace.bytes().begin() + kTypeAt, type.size(), type.begin());
  return type;
}

bool grants(const SecurityDescriptor& descriptor, std::span<const Sid> identifiers,
            const ObjectRight& right) {
  if (!descriptor.dacl_present || !descriptor.dacl)
    return true;
  const Holder holder(descriptor, identifiers, right);
  const auto& entries = descriptor.dacl->entries();
  const bool owner_rights_told =
      std::ranges::any_of(entries, [](const Ace& ace) { return ace.sid() == well_known::owner_rights(); });
  if (holder.is_owner() && !owner_rights_told &&
      (right.mask & (access::kReadControl | access::kWriteDac)) != 0)
    return true;
  for (const Ace& ace : entries) {
    const auto sid = ace.sid();
    const bool counts = allows(ace.type()) || denies(ace.type());
    if (counts && sid && (ace.flags() & ace_flag::kInheritOnly) == 0 && is_about(ace, right) &&
        holder.is(*sid))
      return allows(ace.type());
  }
  return false;
}

}  // namespace twk::platform
