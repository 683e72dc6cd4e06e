#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace twk::session {
struct Session;
}

namespace twk::batch {

struct MeantUser {
  std::string path;  ///< see `SelectedUser`
  std::string name;
  std::string through;  ///< the group or unit of the selection that includes it; empty for its own row
};

/// Whom a run over the selection would reach, and what it would pass over.
struct SelectedUsers {
  std::vector<MeantUser> users;  ///< each once, in the order of the walk
  std::size_t groups = 0;        ///< rows whose users are meant
  std::size_t units = 0;
  std::size_t repeated = 0;             ///< times that a user comes again through another row
  std::vector<std::string> hidden;      ///< rows that the filter hides
  std::vector<std::string> gone;        ///< users of an earlier run
  std::vector<std::string> unreadable;  ///< "Staff: reason"
  bool whole = true;                    ///< False when `goes_on` ended the reading
};

/// Reads the groups and units of the selection as a run does, and changes nothing. A row that cannot be read
/// is named in the result.
SelectedUsers read_selected_users(session::Session& session, const std::function<bool()>& goes_on = {});

}  // namespace twk::batch
