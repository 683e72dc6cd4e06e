#include "creation/account_texts.hpp"

#include "base/text.hpp"
#include "directory/account_expiry.hpp"
#include "directory/operations.hpp"
#include "format/filling.hpp"
#include "format/passwords.hpp"
#include "format/user_name.hpp"
#include "session/activity_log.hpp"
#include "session/session.hpp"

namespace twk::creation {

namespace {

/// A preview needs none, and a rehearsal does not ask for one.
bool is_left_open(const CreationRun& run, const std::string& text) {
  const bool asked = base::equals_fold(text, "PROMPT") && !run.request.password_is_given;
  return run.request.names_only || (run.session.import.rehearsed && asked);
}

void prepare_password(CreationRun& run) {
  session::Session& session = run.session;
  const NewUserRequest& request = run.request;
  format::NewPasswordText password = format::new_password_text(
      session, request.password, run.SamName, request.FirstName, request.MiddleName, request.LastName);
  if (!password.fault.empty())
    warn(run, password.fault);
  run.Password = is_left_open(run, password.text)
                     ? std::move(password.text)
                     : format::password_of_text(session, std::move(password.text), run.UserId);
  // That of a line of an import belongs to a person; the log is read by many.
  const bool of_line = base::find_fold(request.password.text, "%IMPORT") != base::npos ||
                       base::find_fold(request.password.format, "%IMPORT") != base::npos;
  const bool hidden = of_line && session.import.Importing && !session::is_debug(session);
  session.log.conceal(hidden ? run.Password : std::string());
}

}  // namespace

void PrepareAccountTexts(CreationRun& run) {
  session::Session& session = run.session;
  const NewUserRequest& request = run.request;
  format::Filling description(session, request.Description);
  description.variables().import_fields();
  // A field that the line does not have leaves its tag.
  const bool lacks_field = session.import.Importing && description.holds("%IMPORT");
  run.DescriptionText = description.take();
  run.ExpiryText = format::Filling(session, request.Expiry).import_fields().take();
  if (lacks_field || base::find_fold(run.DescriptionText, "%Description%") != base::npos)
    run.DescriptionText.clear();
  prepare_password(run);
  const std::string& full_name = request.formats.full_name;
  if (!base::trim(full_name).empty()) {
    run.FullName = format::UserName(session, full_name, base::trim(request.FirstName),
                                    base::trim(request.MiddleName), base::trim(request.LastName));
  }
}

void stage_expiry(const CreationRun& run, platform::User& user) {
  if (run.session.import.Importing && !directory::is_open_expiry(run.ExpiryText))
    directory::put_expiry(user, directory::expiry_of_text(run.session.platform.clock, run.ExpiryText));
}

std::string account_path(const CreationRun& run) {
  if (!session::is_active_directory(run.session))
    return directory::winnt_path(run.session, run.UserId);
  return "LDAP://CN=" + run.CnName + "," + container_key(run);
}

void show_made_account(CreationRun& run) {
  run.has_account = true;
  run.view.made({MadeThing::Kind::kAccount, account_path(run), {}, {}, run.CurrentUserObject});
}

void account_created(CreationRun& run) {
  log(run, "NT User Account Created");
  ++run.session.import.ImportAddedCount;
  run.view.step("Add User to Groups");
}

}  // namespace twk::creation
