#include "base/error_words.hpp"
#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "creation/account_texts.hpp"
#include "directory/operations.hpp"
#include "format/filling.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using platform::User;
using session::Session;

std::string description(CreationRun& run) {
  return format::Filling(run.session, run.request.Description).variables().import_fields().take();
}

void stage_fields(CreationRun& run, User& user) {
  const std::string text = description(run);
  if (!text.empty() && text.find('%') == base::npos)
    user.put_Description(text);
  const std::string_view first = base::trim(run.request.FirstName);
  const std::string_view last = base::trim(run.request.LastName);
  const std::string& script = run.user_template.LogonScript;
  const std::string_view profile = base::trim(run.paths.ProfileText);
  if (!run.FullName.empty())
    user.put_FullName(run.FullName);
  if (!run.paths.HomeDirText.empty())
    user.put_HomeDirectory(run.paths.HomeDirText);
  if (!first.empty())
    user.put_FirstName(first);
  if (!last.empty())
    user.put_LastName(last);
  if (!script.empty())
    user.put_LoginScript(script);
  if (!profile.empty())
    user.put_Profile(profile);
  user.put_LoginHours(run.session.TemplateLogonHours);
}

void stage_home_drive(CreationRun& run, User& user) {
  const std::string& drive = run.user_template.HomeDrive;
  if (!drive.empty())
    user.Put("HomeDrive", drive);
}

/// The object with its two names, not yet written.
platform::ObjectPtr new_object(CreationRun& run) {
  platform::ObjectPtr object = run.AdContainer->Create("user", "cn=" + run.CnName);
  object->Put("samAccountName", run.SamName);
  return object;
}

/// The whole account in one request, with or without the rows of the directory table that can be included.
/// False when that was refused, and nothing is written.
bool add_whole(CreationRun& run, bool with_properties) {
  run.CurrentUserObject = new_object(run);
  User user(run.CurrentUserObject);
  base::Trap wrong_date;
  if (!wrong_date([&] { stage_expiry(run, user); }))
    return false;
  stage_fields(run, user);
  stage_home_drive(run, user);
  if (run.request.flags.must_change_password)
    user.Put("pwdLastSet", 0);
  if (run.request.flags.disabled)
    user.put_AccountDisabled(true);
  if (with_properties)
    StageFirstProperties(run);
  return user.SetInfoWithPassword(run.Password);
}

/// False when it was refused: the separate writes then show which part it is.
bool create_at_once(CreationRun& run) {
  if (run.Password.empty())
    return false;
  if (add_whole(run, true))
    return true;
  const bool may_be_a_row = !run.first_properties.empty();
  run.first_properties.clear();
  return may_be_a_row && add_whole(run, false);
}

/// Makes the object; true when it is complete. A box says why it was refused, and the failure is raised
/// again.
bool create_object(CreationRun& run) {
  Session& session = run.session;
  if (session::is_debug(session)) {
    log(run, "Container: " + container_key(run));
    log(run, "SamName: " + run.SamName);
    log(run, "CnName: " + run.CnName);
  }
  bool is_whole = false;
  base::Trap trap;
  trap([&] {
    run.AdContainer = bind_once(run, "LDAP://" + container_key(run));
    run.view.makes_account(run.SamName, account_path(run));
    is_whole = create_at_once(run);
    if (is_whole)
      return;
    run.CurrentUserObject = new_object(run);
    run.CurrentUserObject->SetInfo();
  });
  if (trap.number() == 0) {
    show_made_account(run);
    return is_whole;
  }
  const bool exists = trap.number() == platform::ads_error::kObjectExists;
  run.is_unsure = static_cast<std::uint32_t>(trap.number()) == platform::ads_error::kServerDown;
  if (exists)
    log(run, "User name (SAMAccount) Already Exists :" + run.SamName);
  session.platform.dialogs.MsgBox(exists ? "User name already exists.\r\nChange the userID and try again"
                                         : "error: " + base::to_text(trap.number()) + "\r\n" +
                                               account_path(run) + ": " +
                                               base::in_words(trap.number(), trap.description()),
                                  platform::Buttons::kOk, platform::Icon::kNone, "");
  throw base::RuntimeError(trap.number(), trap.description());
}

/// False when the password was refused, which warns.
bool set_password(CreationRun& run, User& user, bool is_set) {
  if (run.Password.empty())
    return true;
  const bool debug = session::is_debug(run.session);
  if (debug)
    log(run, "Setting user password: " + run.Password);
  base::Trap trap;
  if (!is_set && !trap([&] { user.SetPassword(run.Password); })) {
    warn(run, "Error:- Unable to set User password", base::in_words(trap.number(), trap.description()));
    return false;
  }
  run.view.password_set(run.SamName, run.Password);
  if (debug)
    log(run, "Password set");
  return true;
}

/// A domain may keep an account without a password disabled, although nobody asked for that.
void warn_if_disabled(CreationRun& run, const User& user) {
  bool disabled = false;
  base::Trap unknown;
  if (unknown([&] { disabled = user.AccountDisabled(); }) && disabled)
    warn(run, "The account is disabled: it has no password", "set one and enable it");
}

/// The last write of an account that is made in several.
void write_settings(CreationRun& run, User& user, bool password_refused) {
  const AccountFlags& wanted = run.request.flags;
  base::Trap trap;
  if (!password_refused) {
    trap([&] { user.Put("pwdLastSet", wanted.must_change_password ? 0 : -1); });
    if (wanted.disabled)
      trap([&] { user.put_AccountDisabled(true); });
  }
  if (!trap([&] { stage_expiry(run, user); }))
    warn(run, "Error setting account expiry", base::in_words(trap.number(), trap.description()));
  stage_home_drive(run, user);
  user.SetInfo();
  if ((password_refused || run.Password.empty()) && !wanted.disabled)
    warn_if_disabled(run, user);
}

/// Flags that only the WinNT object has.
void set_user_flags(CreationRun& run) {
  const AccountFlags& wanted = run.request.flags;
  const std::int32_t flags = (wanted.cannot_change_password ? platform::kFlagCannotChangePassword : 0) |
                             (wanted.password_never_expires ? platform::kFlagPasswordNeverExpires : 0);
  if (flags == 0)
    return;
  base::Trap trap;
  if (!trap([&] {
        User user(run.session.platform.directory.GetObject(directory::winnt_path(run.session, run.SamName)));
        user.Put("UserFlags", user.Get("UserFlags").integer() | flags);
        user.SetInfo();
      })) {
    warn(run, "Error setting account flags", base::in_words(trap.number(), trap.description()));
  }
}

}  // namespace

void CreateAdAccount(CreationRun& run) {
  const bool is_whole = create_object(run);
  User user(run.CurrentUserObject);
  if (session::is_debug(run.session))
    log(run, "Setting common user fields");
  if (!is_whole) {
    stage_fields(run, user);
    user.SetInfo();
  }
  run.stored_name = run.FullName;
  run.SummaryRow = run.FullName + "," + run.SamName + ",";
  const bool refused = !set_password(run, user, is_whole);
  if (!is_whole)
    write_settings(run, user, refused);
  set_user_flags(run);
  account_created(run);
}

}  // namespace twk::creation
