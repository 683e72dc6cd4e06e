#pragma once

#include <vector>

#include "cli/terminal/output.hpp"
#include "platform/platform.hpp"

/// Access lists as the commands print them.
namespace twk::cli {

/// What the mask of a list stands for.
enum class AccessOf { kFolder, kShare };

/// Headings of `list_entries`: account, type, access, appliesTo, inherited; those of a share end with access.
std::vector<Column> entry_columns(AccessOf what);
/// A row an entry: account, sid, type ("allow", "deny"), access (a word of the permission tables, or the
/// mask), mask, and of a folder also appliesTo and inherited. Nothing for a descriptor without a list.
std::vector<Json> list_entries(platform::Security& security, const platform::SecurityDescriptor& descriptor,
                               AccessOf what);
/// Everybody has all rights where a descriptor has no list.
bool is_open_to_all(const platform::SecurityDescriptor& descriptor);

/// What rights on a file or folder come to: full, change, read, write, mask, and each right by itself in
/// "rights".
Json describe_rights(std::uint32_t rights);

}  // namespace twk::cli
