#pragma once

#include <string>

#include "format/passwords.hpp"
#include "session/preferences.hpp"

namespace twk::creation {

/// Which stages a creation has.
struct CreationStages {
  bool directories = true;
  bool shares = true;
  bool permissions = true;
  bool account = true;
  bool mailbox = true;
  bool command = true;
};

/// Texts that a name is formed with; see `format::UserName`.
struct NameFormats {
  std::string account;
  std::string taken;  ///< when the account name is in use; may be empty
  std::string full_name;
};

struct AccountFlags {
  bool must_change_password = false;
  bool cannot_change_password = false;
  bool password_never_expires = false;
  bool disabled = false;
};

/// How a person is recognised who has an account already: an attribute of accounts, and what it holds for
/// this person, with tags. A new account gets it. Nobody is recognised without an attribute.
struct PersonKey {
  std::string attribute;
  std::string text;
};

/// All that is asked of one creation, by the New User tab, a command or a line of an import.
struct NewUserRequest {
  std::string TemplateName;  ///< as the list holds it, padded
  std::string SiteName;
  std::string FirstName;
  std::string MiddleName;
  std::string LastName;
  bool keeps_names = false;    ///< as they are written; otherwise they begin with a capital letter
  bool plain_letters = false;  ///< the account's name is written without accents and foreign scripts
  PersonKey key;
  std::string UserId;            ///< may be blank: it is then formed
  std::string Description;       ///< with tags
  std::string Expiry;            ///< of accounts of an import, with tags; empty for none
  bool CopyUser = false;         ///< take the groups from the selected user
  std::string SelectedNodeKind;  ///< "OU", "USER", …
  std::string SelectedNodeKey;
  std::string SelectedNodeText;
  std::string ParentNodeKey;

  CreationStages stages;
  NameFormats formats;
  format::PasswordFields password;
  AccountFlags flags;
  session::CommandSetting command;
  session::MailAdministrator mail_administrator;
  bool named_by_logon = false;        ///< the entry is called by the logon name, not by the full name
  bool tree_shows_full_name = false;  ///< as the directory has it, not as the run formed it
  bool names_only = false;            ///< no stage after the name is run: what they would meet is looked up
  bool password_is_given = false;     ///< a rehearsal asks for it, too, because the answer is ready
  bool skip_prompts = false;          ///< rows that ask for a value are passed over in an import
};

}  // namespace twk::creation
