#pragma once

#include <cstdint>
#include <span>

#include "platform/security_descriptor.hpp"

/// What an access list permits, and what a new file inherits from its folder's list.
namespace twk::platform {

/// The mask with its generic bits replaced by the rights of files and folders that they mean.
std::uint32_t map_generic_file_bits(std::uint32_t mask);

/// All rights on a file or folder that the descriptor grants to someone with these identifiers (the account's
/// own and those of its groups), by the algorithm of [MS-DTYP] 2.5.3.2 for "maximum allowed": of two entries
/// about the same right, the first counts; the owner may always read and write the list.
std::uint32_t granted_access(const SecurityDescriptor& descriptor, std::span<const Sid> identifiers);

/// The list that something new in a folder inherits, [MS-DTYP] 2.5.3.4: the entries that are
/// inherited by files (`is_folder` False) or folders, marked as inherited, those of "creator owner" for the
/// new owner. No list when the folder has none.
std::optional<Acl> inherited_list(const SecurityDescriptor& folder, bool is_folder, const Sid& new_owner);

}  // namespace twk::platform
