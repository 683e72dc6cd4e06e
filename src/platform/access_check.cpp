#include "platform/access_check.hpp"

#include <algorithm>

namespace twk::platform {
namespace {

bool holds(std::span<const Sid> identifiers, const Sid& sid) {
  return std::find(identifiers.begin(), identifiers.end(), sid) != identifiers.end();
}

/// An entry as the new file or folder gets it; more than one when an entry for "creator owner" goes on to be
/// inherited. In a folder the part that applies to it and the part that is passed on may differ.
void append_inherited(std::vector<Ace>& list, const Ace& ace, bool is_folder, const Sid& new_owner) {
  using namespace ace_flag;
  const auto sid = ace.sid();
  if (!sid || ace.type() > ace_type::kDeny)
    return;
  const bool for_files = (ace.flags() & kObjectInherit) != 0;
  const bool for_folders = (ace.flags() & kContainerInherit) != 0;
  const bool stops = (ace.flags() & kNoPropagate) != 0;
  const bool creator = *sid == well_known::creator_owner();
  const Sid& who = creator ? new_owner : *sid;
  const std::uint32_t mask = map_generic_file_bits(ace.mask());

  const bool acts = is_folder ? for_folders : for_files;
  const bool handed_on = is_folder && !stops && (for_files || for_folders);
  const auto flags_on = static_cast<std::uint8_t>(ace.flags() & (kObjectInherit | kContainerInherit));
  if (acts && (creator || !handed_on))
    list.emplace_back(ace.type(), kInherited, mask, who);
  else if (acts)
    list.emplace_back(ace.type(), static_cast<std::uint8_t>(flags_on | kInherited), mask, who);
  if (handed_on && (creator || !acts)) {
    list.emplace_back(ace.type(), static_cast<std::uint8_t>(flags_on | kInheritOnly | kInherited), ace.mask(),
                      *sid);
  }
}

}  // namespace

std::uint32_t map_generic_file_bits(std::uint32_t mask) {
  using namespace access;
  struct Mapping {
    std::uint32_t generic;
    std::uint32_t rights;
  };
  static constexpr Mapping kMappings[] = {{kGenericAll, kFileAll},
                                          {kGenericRead, kFileGenericRead},
                                          {kGenericWrite, kFileGenericWrite},
                                          {kGenericExecute, kFileGenericExecute}};
  for (const auto& [generic, rights] : kMappings) {
    if ((mask & generic) != 0)
      mask = (mask & ~generic) | rights;
  }
  return mask;
}

std::uint32_t granted_access(const SecurityDescriptor& descriptor, std::span<const Sid> identifiers) {
  if (!descriptor.dacl_present || !descriptor.dacl)
    return access::kFileAll;
  std::uint32_t allowed = 0;
  std::uint32_t denied = 0;
  const bool is_owner = descriptor.owner && holds(identifiers, *descriptor.owner);
  const Sid owner_rights = well_known::owner_rights();
  bool owner_rights_told = false;
  for (const Ace& ace : descriptor.dacl->entries()) {
    const auto sid = ace.sid();
    if (!sid || (ace.flags() & ace_flag::kInheritOnly) != 0)
      continue;
    const bool speaks_of_owner = *sid == owner_rights;
    owner_rights_told = owner_rights_told || speaks_of_owner;
    if (!(speaks_of_owner ? is_owner : holds(identifiers, *sid)))
      continue;
    const std::uint32_t mask = map_generic_file_bits(ace.mask());
    if (ace.type() == ace_type::kAllow)
      allowed |= mask & ~denied;
    if (ace.type() == ace_type::kDeny)
      denied |= mask & ~allowed;
  }
  if (is_owner && !owner_rights_told)
    allowed |= access::kReadControl | access::kWriteDac;
  return allowed;
}

std::optional<Acl> inherited_list(const SecurityDescriptor& folder, bool is_folder, const Sid& new_owner) {
  if (!folder.dacl_present || !folder.dacl)
    return std::nullopt;
  std::vector<Ace> entries;
  for (const Ace& ace : folder.dacl->entries())
    append_inherited(entries, ace, is_folder, new_owner);
  std::size_t size = Acl::kHeaderSize;
  for (const Ace& ace : entries)
    size += ace.size();
  Acl list(size, folder.dacl->revision());
  for (const Ace& ace : entries)
    list.add(Acl::kAtEnd, ace);
  return list;
}

}  // namespace twk::platform
