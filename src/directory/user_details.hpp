#pragma once

#include <optional>
#include <string>
#include <vector>

#include "directory/account_fields.hpp"

namespace twk::session {
struct Session;
}

/// One account with its groups, as the user details tab and `twk user show` show it, in both kinds of domain.
namespace twk::directory {

AccountDomain account_domain(const session::Session& session);

/// Reads the account with its custom attributes, and its groups into `LoadedDomain::own_groups`, which leave
/// `other_groups`. Nothing, with the reason in panel 1, when it cannot be bound or its groups cannot be read.
std::optional<UserDetails> read_user_details(session::Session& session, const std::string& key);

struct SaveOutcome {
  bool saved = false;                ///< something was written, or nothing needed to be
  std::vector<std::string> refused;  ///< what the directory did not take, as "HomeDirectory: reason"
  std::string message;               ///< what panel 1 shows
};

/// Writes the changed parts. Not saved, with the reason as the message, for a wrong drive letter, when
/// nothing is written, and for a refusal by the directory, when what was written before stays. In Active
/// Directory what is refused by itself is named, and the rest is saved; a refused expiry or custom attribute
/// also shows a box.
SaveOutcome save_user_details(session::Session& session, const UserChange& change);

/// Add the account to the selected groups of `LoadedDomain::other_groups`, and remove it from those of
/// `own_groups`. A refused group stays where it is, still selected, and panel 1 says why. They return the
/// keys of the groups that were really joined or left.
std::vector<std::string> add_to_selected_groups(session::Session& session, const UserDetails& user);
std::vector<std::string> remove_from_selected_groups(session::Session& session, const UserDetails& user);

/// The groups of the account that was read go back to the others, while these are loaded.
void return_own_groups(session::Session& session);

}  // namespace twk::directory
