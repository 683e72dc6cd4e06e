#include "creation/account_texts.hpp"

#include "base/text.hpp"
#include "directory/account_expiry.hpp"
#include "format/passwords.hpp"
#include "format/user_name.hpp"
#include "format/variables.hpp"
#include "session/session.hpp"

namespace twk::creation {

void PrepareAccountTexts(CreationRun& run) {
  session::Session& session = run.session;
  const NewUserRequest& request = run.request;
  run.DescriptionText = format::Replace_Variables(session, session.form1.Description.text);
  run.ExpiryText = session.import_grps.Expiredate.text;
  if (session.import.Importing) {
    run.DescriptionText = format::replace_import_fields(session, run.DescriptionText);
    run.ExpiryText = format::replace_import_fields(session, run.ExpiryText);
  }
  if (base::find_fold(run.DescriptionText, "%Description%") != base::npos)
    run.DescriptionText.clear();
  run.Password = format::new_user_password(session, run.SamName, run.UserId, request.FirstName,
                                           request.MiddleName, request.LastName);
  const std::string& full_name = session.form1.FN_Format.text;
  if (!base::trim(full_name).empty()) {
    run.FullName = format::UserName(session, full_name, base::trim(request.FirstName),
                                    base::trim(request.MiddleName), base::trim(request.LastName));
  }
}

void stage_expiry(const CreationRun& run, platform::User& user) {
  if (run.session.import.Importing && !directory::is_open_expiry(run.ExpiryText))
    directory::put_expiry(user, directory::expiry_of_text(run.session.platform.clock, run.ExpiryText));
}

void account_created(CreationRun& run) {
  log(run, "NT User Account Created");
  ++run.session.import.ImportAddedCount;
  show_step(run, "Add User to Groups");
}

}  // namespace twk::creation
