#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/trees/own_tree.hpp"
#include "mail/delete_mailbox.hpp"
#include "platform/directory.hpp"
#include "session/session.hpp"

/// The deletion of one user, a file a stretch of its steps.
namespace twk::lifecycle {

/// A home or profile of the user, as the account has it and as it is reached.
struct UserFolder {
  std::string path;  ///< as the account has it
  std::string server;
  std::string share;
  std::string unc;                ///< folder of the share, by a path that stays when the share has gone
  std::size_t tail_position = 0;  ///< 0 for a path that is a bare share
  bool data_goes = false;
  std::string data;                ///< the folder that goes, by the way that is taken to it
  bool missing = false;            ///< there is nothing at `data`
  bool through_own_share = false;  ///< no other way leads to `data` than the share that goes
};

/// A share of the user's that goes.
struct GoingShare {
  std::string server;
  std::string share;
  std::string_view label;  ///< of the log line
  bool is_bare = true;     ///< home or profile is the share itself, no folder in it
};

struct DeleteRun {
  session::Session& session;
  std::string key;
  platform::ObjectPtr user = {};
  std::string logon_name = {};
  std::string display_name = {};  ///< what messages call the user
  UserFolder home = {};
  UserFolder profile = {};
  std::vector<GoingShare> shares = {};
  bool DeleteProfile = true;
  bool Success = true;
  bool deleted = false;
  std::string DeletedName = {};  ///< the key, once the account has gone
  mail::MailboxDeletion mail_request = {};
  mail::Recipient mailbox = {};  ///< that goes, unless it hangs on the account itself
};

inline Owner owner_of(const DeleteRun& run, const UserFolder& folder) {
  return {.account = run.logon_name, .own_share = folder.share};
}

/// Works out where home and profile are and what of it goes, without a change to anything. Raises, with the
/// reason, when something of it is not the user's alone, or data that is to go cannot be reached.
void find_folders(DeleteRun& run);
/// Decides which mailbox goes, before anything is changed. Raises with the reason when that cannot be told.
void decide_mailbox(DeleteRun& run);
/// Deletes it, and tells what came of that.
void delete_mail(DeleteRun& run);
/// Removes the shares of home and profile. The failure to remove one is passed over with a warning.
void delete_shares(DeleteRun& run);
/// Removes the folders that `find_folders` found, but for those that `delete_shares` had to remove first.
void delete_folders(DeleteRun& run);
/// One of these folders.
void delete_folder(DeleteRun& run, const UserFolder& folder, std::string_view question);

inline constexpr std::string_view kOwnHomeQuestion = "Taking Ownership and changing permissions on: ";
inline constexpr std::string_view kOwnProfileQuestion = "Taking Ownership and changing Permissions on: ";

}  // namespace twk::lifecycle
