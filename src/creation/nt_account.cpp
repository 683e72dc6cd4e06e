#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "creation/account_texts.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using platform::User;

void log_details(CreationRun& run) {
  log(run, "Setting user details");
  log(run, run.DescriptionText);
  log(run, run.FullName);
  log(run, run.paths.HomeDirText);
  log(run, run.user_template.LogonScript);
  log(run, run.paths.ProfileText);
}

void put_fields(CreationRun& run, User& user) {
  const std::string& script = run.user_template.LogonScript;
  if (!base::trim(run.DescriptionText).empty())
    user.put_Description(run.DescriptionText);
  if (!base::trim(run.FullName).empty())
    user.put_FullName(run.FullName);
  if (!base::trim(run.paths.HomeDirText).empty())
    user.put_HomeDirectory(run.paths.HomeDirText);
  if (!script.empty())
    user.put_LoginScript(script);
  if (!base::trim(run.paths.ProfileText).empty())
    user.put_Profile(run.paths.ProfileText);
  user.put_LoginHours(run.session.TemplateLogonHours);
}

void set_user_flag(User& user, std::int32_t flag) {
  user.Put("UserFlags", user.Get("UserFlags").integer() | flag);
  user.SetInfo();
}

}  // namespace

void CreateNtAccount(CreationRun& run) {
  session::Session& session = run.session;
  const AccountFlags& wanted = run.request.flags;
  const bool debug = session::is_debug(session);
  if (!session.DomainContainer) {
    throw base::RuntimeError(platform::ads_error::kServerDown,
                             "The domain " + session.DomainName + " was not found");
  }
  run.CurrentUserObject = session.DomainContainer->Create("User", run.UserId);
  User user(run.CurrentUserObject);
  if (debug)
    log_details(run);
  // First, because an invalid date must not leave an account behind.
  base::Trap no_day;
  if (!no_day([&] { stage_expiry(run, user); }))
    base::raise(no_day.number(), "Error setting account expiry: " + no_day.description());
  put_fields(run, user);
  run.traps_off = debug;
  const std::string& drive = run.user_template.HomeDrive;
  if (!drive.empty()) {
    if (debug)
      log(run, "Drive letter:" + drive);
    user.Put("HomeDirDrive", drive);
  }
  run.view.makes_account(run.UserId, account_path(run));
  base::Trap refused;
  if (!refused([&] { user.SetInfo(); })) {
    run.is_unsure = static_cast<std::uint32_t>(refused.number()) == platform::ads_error::kServerDown;
    base::raise(refused.number(), refused.description());
  }
  show_made_account(run);
  run.SummaryRow = run.FullName + "," + run.UserId + ",,";
  if (!run.Password.empty()) {
    if (debug)
      log(run, "Password:" + run.Password);
    user.SetPassword(run.Password);
    run.view.password_set(run.UserId, run.Password);
  }
  if (wanted.must_change_password)
    user.Put("PasswordExpired", 1);
  if (wanted.disabled)
    user.put_AccountDisabled(true);
  if (wanted.cannot_change_password) {
    if (debug)
      log(run, "Can't change pwd");
    set_user_flag(user, platform::kFlagCannotChangePassword);
  }
  if (wanted.password_never_expires) {
    if (debug)
      log(run, "Never expire");
    set_user_flag(user, platform::kFlagPasswordNeverExpires);
  }
  user.SetInfo();
  account_created(run);
}

}  // namespace twk::creation
