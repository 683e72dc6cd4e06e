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
  std::size_t skipped = 0;  ///< entries that were there already
};

/// Takes the records of an LDIF text into the lab of the folder. Without a lab there, one is made whose
/// directory is what the text holds: it must hold the domain's own entry and parents before children, as
/// `ldapsearch -LLL` gives them. Entries are taken as they are; change records are carried out. Raises
/// `BadInput` that names the line of a record that cannot be taken; the records before it are kept when the
/// lab was there before, and no lab is left behind when it was not.
LabImport import_ldif(const std::filesystem::path& folder, std::string_view text);

}  // namespace twk::cli
