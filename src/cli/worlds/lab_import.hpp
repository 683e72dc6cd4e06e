#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>

namespace twk::cli {

/// What an import of LDIF did.
struct LabImport {
  bool made = false;  ///< a new lab was made
  std::size_t added = 0;
  std::size_t changed = 0;
  std::size_t skipped = 0;  ///< entries that already existed
};

/// Imports the records of an LDIF text into the lab in the folder. Without a lab there, one is made from
/// the text, which must contain the domain's own entry, and parents before children, as `ldapsearch -LLL`
/// writes them. Entries are taken as they are; change records are carried out. Raises `BadInput` with the
/// line of a record that cannot be imported; the records before it are kept if the lab existed before,
/// otherwise no lab is left behind.
LabImport import_ldif(const std::filesystem::path& folder, std::string_view text);

}  // namespace twk::cli
