#include "creation/account_texts.hpp"

#include "base/text.hpp"
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

std::optional<base::Date> expiry_date(const CreationRun& run) {
  if (!run.session.import.Importing)
    return std::nullopt;
  const std::string_view text = base::trim(run.ExpiryText);
  if (text.empty() || text.starts_with('%'))
    return std::nullopt;
  const auto date = base::parse_date(text);
  if (!date) {
    throw base::RuntimeError(base::error::kTypeMismatch,
                             "Type mismatch: \"" + std::string(text) + "\" is not a date");
  }
  return date;
}

void account_created(CreationRun& run) {
  log(run, "NT User Account Created");
  ++run.session.import.ImportAddedCount;
  show_step(run, "Add User to Groups");
}

}  // namespace twk::creation
