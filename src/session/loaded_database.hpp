#pragma once

#include <string>
#include <vector>

#include "controls/list_view.hpp"

namespace twk::session {

/// The files of the database directory as they were loaded, and as this session has changed them since.
/// Values of the tables are sub-item 1.
struct LoadedDatabase {
  std::vector<std::string> sites;      ///< names of the live sites, in the order of the file
  std::vector<std::string> templates;  ///< the same, padded to 25 characters
  controls::ListView directory_rows;   ///< icon "USER" for the account's, "MAIL" for its mailbox's
  controls::ListView mail_rows;
  controls::ListView terminal_rows;  ///< the thirteen of terminal servers
  controls::ListView variables;      ///< of the loaded template; names without percent signs
  controls::Signal
      taken;  ///< a run is about to load its template and its site: the tabs show none from here on
};

}  // namespace twk::session
