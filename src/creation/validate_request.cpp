#include "creation/validate_request.hpp"

#include <array>

#include "base/text.hpp"
#include "creation/account_name.hpp"
#include "format/user_name.hpp"
#include "platform/ldap_text.hpp"
#include "platform/utf16.hpp"
#include "session/session.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::creation {
namespace {

using session::Session;

/// The reason against the selection; empty when it will do.
std::string_view selection_fault(const CreationRun& run) {
  constexpr std::string_view kSelectUser =
      "You must select a User in the treeview to create this user\r\nor turn off the copy user function.";
  const NewUserRequest& request = run.request;
  const bool nameless = base::trim(request.TemplateName).empty() || base::trim(request.SiteName).empty();
  if (!session::is_active_directory(run.session)) {
    if (nameless)
      return "Must Select a Template & Site.";
    return request.CopyUser && request.SelectedNodeKind != "USER" ? kSelectUser : std::string_view{};
  }
  constexpr std::string_view kSelectOu =
      "You must select a Template,Site & OU in the treeview to create this user";
  const bool ou = request.SelectedNodeKind == "OU";
  if (nameless)
    return kSelectOu;
  if (!ou && !request.CopyUser && request.stages.account)
    return kSelectOu;
  return ou && request.CopyUser ? kSelectUser : std::string_view{};
}

void back_to_rest(CreationRun& run) {
  run.view.progress(0);
  run.view.step({});
}

Step refuse_length(CreationRun& run) {
  constexpr const char* kFault = "UserID Is too long or too Short, 1-20 chrs";
  run.message = kFault;
  if (run.session.import.Importing)
    return Step::kEnd;
  run.view.status(kFault);
  run.session.platform.dialogs.beep();
  back_to_rest(run);
  return Step::kEnd;
}

void open_log(CreationRun& run) {
  run.session.log.begin_block();
  run.session.log.gather(true);
  log(run, "Creating User:" + run.UserId);
  log(run, "Site: " + std::string(base::trim(run.request.SiteName)));
  log(run, "Template: " + std::string(base::trim(run.request.TemplateName)));
}

/// An account without its template or site would be incomplete.
void load_records(CreationRun& run) {
  session::ImportState& import = run.session.import;
  try {
    if (!import.holds_records) {
      stores::require_template(run.session, run.request.TemplateName);
      stores::require_site(run.session, run.request.SiteName);
      import.holds_records = import.rehearsed;
    }
    run.user_template = values_of(run.session.ActiveTemplate);
    run.site = values_of(run.session.ActiveSite);
  } catch (const base::RuntimeError&) {
    run.UserId = run.request.UserId;
    open_log(run);
    throw;
  }
}

bool log_invalid_characters(CreationRun& run) {
  bool valid = true;
  for (const std::string& fault : invalid_characters(run.UserId, session::is_active_directory(run.session))) {
    const std::string text = "Invalid Character in User Name: " + fault;
    log(run, text);
    run.message = text;
    valid = false;
  }
  for (const std::string* name : {&run.request.FirstName, &run.request.MiddleName, &run.request.LastName}) {
    if (const auto control = base::find_control_character(*name)) {
      const std::string text = "Invalid Character in Name: " + *control;
      log(run, text);
      run.message = text;
      valid = false;
    }
  }
  return valid;
}

/// A format that lacks one of the names leaves its separator at an end: "Drei.".
void warn_of_lacking_name(CreationRun& run) {
  constexpr std::string_view kSeparators = ".-_ ";
  const bool first = base::trim(run.request.FirstName).empty();
  const bool last = base::trim(run.request.LastName).empty();
  const bool dangling =
      kSeparators.find(run.UserId.front()) != base::npos || kSeparators.find(run.UserId.back()) != base::npos;
  if (dangling && (first || last))
    warn(run, std::string("There is no ") + (last ? "last" : "first") + " name, so the account is called " +
                  run.UserId);
}

Step refuse_name(CreationRun& run) {
  Session& session = run.session;
  session.platform.dialogs.beep();
  run.view.status("User Name Invalid...");
  back_to_rest(run);
  session.log.close();
  return Step::kEnd;
}

std::string in_account_letters(Session& session, const NewUserRequest& request, std::string_view text) {
  return request.plain_letters ? session.platform.environment.plain_letters(text) : std::string(text);
}

}  // namespace

std::string form_user_id(Session& session, const NewUserRequest& request, std::string_view format) {
  const auto name = [&](const std::string& text) {
    return in_account_letters(session, request, base::trim(request.keeps_names ? text : capitalized(text)));
  };
  // A column of an import can be the account's name.
  return in_account_letters(session, request,
                            format::UserName(session, std::string(format), name(request.FirstName),
                                             name(request.MiddleName), name(request.LastName)));
}

Step ValidateRequest(CreationRun& run) {
  Session& session = run.session;
  run.view.begin();
  if (const std::string_view fault = selection_fault(run); !fault.empty()) {
    run.message = fault;
    session.platform.dialogs.MsgBox(fault, platform::Buttons::kOk, platform::Icon::kCritical,
                                    "Can't Create User");
    return Step::kEnd;
  }
  run.view.start_work();
  run.view.progress(0);
  run.view.status("Creating User....");
  run.view.progress(5);
  run.view.step("Initalizing...");
  load_records(run);
  if (!run.request.keeps_names) {
    for (std::string* const name : {&run.request.FirstName, &run.request.MiddleName, &run.request.LastName})
      *name = capitalized(*name);
  }

  if (base::trim(run.request.UserId).empty())
    run.request.UserId = form_user_id(session, run.request, run.request.formats.account);
  else
    run.request.UserId = in_account_letters(session, run.request, run.request.UserId);
  run.UserId = run.request.UserId;
  run.view.names(run.request);
  const std::size_t length = platform::utf16_length(run.UserId);
  if (length < 1 || length > kLongestUserId)
    return refuse_length(run);
  open_log(run);
  if (!log_invalid_characters(run))
    return refuse_name(run);
  warn_of_lacking_name(run);
  const bool active_directory = session::is_active_directory(session);
  run.CnName = active_directory ? platform::escape_dn_value(run.UserId) : run.UserId;
  run.CommaInName = active_directory && run.UserId.find(',') != base::npos;
  run.SamName = run.UserId;
  return Step::kGoOn;
}

}  // namespace twk::creation
