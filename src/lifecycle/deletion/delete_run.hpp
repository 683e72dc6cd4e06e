#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/deletion/delete_order.hpp"
#include "lifecycle/trees/own_tree.hpp"
#include "mail/delete_mailbox.hpp"
#include "platform/directory.hpp"
#include "session/session.hpp"

/// The deletion of one user, with a file for each part.
namespace twk::lifecycle {

/// A home or profile of the user, as the account has it and as it is reached.
struct UserFolder {
  std::string path;  ///< as the account has it
  std::string server;
  std::string share;
  std::string unc;                ///< folder of the share, by a path that survives the share's removal
  std::size_t tail_position = 0;  ///< 0 for a path that is a bare share
  bool data_goes = false;
  std::string data;                ///< the folder to delete, by the path used for that
  bool missing = false;            ///< nothing exists at `data`
  bool through_own_share = false;  ///< `data` can only be reached through the share that is removed
};

/// A share of the user's that is removed.
struct GoingShare {
  std::string server;
  std::string share;
  std::string_view label;  ///< of the log line
  bool is_bare = true;     ///< home or profile is the share itself, not a folder in it
};

struct DeleteRun {
  session::Session& session;
  const DeleteOrder& order;
  std::string key;
  platform::ObjectPtr user = {};
  std::string logon_name = {};
  std::string display_name = {};  ///< the user's name in messages
  UserFolder home = {};
  UserFolder profile = {};
  std::vector<GoingShare> shares = {};
  bool DeleteProfile = true;
  bool Success = true;
  bool deleted = false;
  std::string DeletedName = {};  ///< the key, once the account is gone
  mail::MailboxDeletion mail_request = {};
  mail::Recipient mailbox = {};  ///< to delete, unless it is part of the account itself
};

inline Owner owner_of(const DeleteRun& run, const UserFolder& folder) {
  return {.account = run.logon_name, .own_share = folder.share};
}

/// Determines where home and profile are and what to delete, without changing anything. Raises, with the
/// reason, when something is not the user's alone, or data to delete cannot be reached.
void find_folders(DeleteRun& run);
/// Decides which mailbox to delete, before anything is changed. Raises with the reason when that cannot be
/// decided.
void decide_mailbox(DeleteRun& run);
/// Deletes it and reports the outcome.
void delete_mail(DeleteRun& run);
/// Removes the shares of home and profile. A failure to remove one only warns.
void delete_shares(DeleteRun& run);
/// Removes the folders that `find_folders` found, except those that `delete_shares` had to remove first.
void delete_folders(DeleteRun& run);
/// One of these folders.
void delete_folder(DeleteRun& run, const UserFolder& folder, std::string_view question);

inline constexpr std::string_view kOwnHomeQuestion = "Taking Ownership and changing permissions on: ";
inline constexpr std::string_view kOwnProfileQuestion = "Taking Ownership and changing Permissions on: ";

}  // namespace twk::lifecycle
