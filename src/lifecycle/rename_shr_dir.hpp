#pragma once

#include <string>
#include <string_view>

#include "platform/directory.hpp"

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Renames a user's folder, and the share when the user has one of his own, from the old name to the new, and
/// writes the new path to the bound user. `Path` is the network path that the account has. True when all of
/// it was done; what was not is logged. A home that was renamed in part keeps its account pointing to the old
/// path.
///
/// The share is the user's own when it holds the name and stands by itself for one user: as a word
/// ("jo$" of "jo"), or because its folder is named so. What is renamed is the folder named after the user,
/// and below it what else the name occurs in.
bool Rename_ShrDir(session::Session& session, const platform::ObjectPtr& user, std::string_view Path,
                   std::string_view OldName, std::string_view NewName, bool IsHome);

/// How the two windows word the log of the profile.
struct ProfileTexts {
  std::string_view renamed;
  std::string_view failed;
};

/// Home and profile of a renamed user. A profile below the home's share has moved with it, and only its path
/// is written. The outcome of each is on the log tab.
void rename_folders_of(session::Session& session, const platform::ObjectPtr& user, std::string_view OldName,
                       std::string_view NewName, const ProfileTexts& texts);

}  // namespace twk::lifecycle
