#pragma once

#include <string>
#include <vector>

#include "batch/import.hpp"

namespace twk::batch {

/// Something that holds for all lines of an import and is not as it should be.
struct ImportFault {
  std::string subject;  ///< "folder", "group", "mailbox", "name", "permissions", "record" or "share"
  bool stops = false;   ///< every line would fail of it
  std::string message;
  std::string remedy;
};

/// Looks at what the lines have in common, once before the first: the template with its groups, the tables of
/// permissions, the folders above homes and profiles, the server of the shares, the place of mailboxes, the
/// name format. Only the stages that the order asks for are looked at. Raises nothing.
std::vector<ImportFault> check_import(session::Session& session, const ImportOrder& order);

/// Makes the folders above homes and profiles that do not exist. Raises what the server raises.
void make_parent_folders(session::Session& session, const ImportOrder& order);

}  // namespace twk::batch
