#pragma once

#include <vector>

#include "cli/terminal/output.hpp"
#include "platform/platform.hpp"

/// Access lists in the form the commands print.
namespace twk::cli {

/// What the mask of a list applies to.
enum class AccessOf { kFolder, kShare };

/// Headings of `list_entries`: account, type, access, appliesTo, inherited; for a share they end with access.
std::vector<Column> entry_columns(AccessOf what);
/// A row for each entry: account, sid, type ("allow", "deny"), access (a word of the permission tables, or
/// the mask), mask, and for a folder also appliesTo and inherited. Nothing for a descriptor without a list.
std::vector<Json> list_entries(platform::Security& security, const platform::SecurityDescriptor& descriptor,
                               AccessOf what);
/// Everyone has all rights when a descriptor has no list.
bool is_open_to_all(const platform::SecurityDescriptor& descriptor);

/// The rights to a file or folder: full, change, read, write, mask, and each single right in
/// "rights".
Json describe_rights(std::uint32_t rights);

}  // namespace twk::cli
