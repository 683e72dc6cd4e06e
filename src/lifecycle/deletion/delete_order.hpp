#pragma once

#include <string>
#include <string_view>

#include "mail/recipients.hpp"
#include "session/current_run.hpp"
#include "session/preferences.hpp"

namespace twk::lifecycle {

/// The server of a mailbox that is part of the account itself.
inline constexpr std::string_view kStoreOfTheAccount = "Exchange 2000";

/// The mailbox that goes with the account.
struct MailboxOrder {
  std::string server;  ///< `kStoreOfTheAccount`, or the Exchange 5.5 server of a site
  std::string path;    ///< the mailbox, when that is known in advance; otherwise empty
  session::MailAdministrator administrator;
  mail::MailboxChooser choose = {};
};

/// What is asked of the deletion of users. Folders and shares are looked up for `shares` alone.
struct DeleteOrder {
  bool shares = false;
  bool take_ownership = false;  ///< of the folders, before they are deleted
  bool account = false;
  bool data = false;
  bool mailbox = false;
  bool command = false;
  bool confirm = false;                ///< each user is asked about, unless the terms are silent
  bool through_drive_shares = false;   ///< "D$" leads to a folder whose share is gone
  bool profile_named_by_user = false;  ///< in a WinNT domain the folder named after the user is the profile
  MailboxOrder mail;
  session::CommandSetting script;
  session::RunTerms terms;
};

/// With what the preferences say, and nothing chosen yet.
DeleteOrder delete_order(const session::Preferences& preferences);

}  // namespace twk::lifecycle
