#include "creation/validate_request.hpp"

#include <array>

#include "base/text.hpp"
#include "creation/account_name.hpp"
#include "format/user_name.hpp"
#include "platform/ldap_text.hpp"
#include "session/form1.hpp"
#include "session/session.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::creation {
namespace {

using session::Form1;
using session::Session;

constexpr std::size_t kLongestUserId = 20;

void clear_lights(Form1& form) {
  for (controls::Label* light :
       {&form.Createdirs, &form.Sharedirs, &form.Security, &form.UserAccount, &form.MailAccount, &form.run}) {
    light->caption = std::string();
  }
}

/// What is wrong with the selection; empty when it is fine.
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
      "You must select a Template,Site & OU in the treeview to create this user\r\nor turn off the copy user "
      "function.";
  const bool ou = request.SelectedNodeKind == "OU";
  if (nameless)
    return kSelectOu;
  if (!ou && !request.CopyUser && run.session.form1.Create_User_Account.on())
    return kSelectOu;
  return ou && request.CopyUser ? kSelectUser : std::string_view{};
}

void capitalize(std::string& name, controls::TextBox& box) {
  name = capitalized(name);
  box.text = name;
}

void back_to_rest(Session& session) {
  session.form1.ProgressBar1.value = 0;
  session.form1.progress.caption = std::string();
}

Step refuse_length(CreationRun& run) {
  constexpr const char* kFault = "UserID Is too long or too Short, 1-20 chrs";
  run.session.LastCreation.message = kFault;
  if (run.session.import.Importing)
    return Step::kEnd;
  run.session.form1.StatusBar1.panel1 = kFault;
  run.session.platform.dialogs.beep();
  back_to_rest(run.session);
  return Step::kEnd;
}

void open_log(CreationRun& run) {
  run.session.log.begin_block();
  log(run, "Creating User:" + run.UserId);
  log(run, "Site: " + std::string(base::trim(run.request.SiteName)));
  log(run, "Template: " + std::string(base::trim(run.request.TemplateName)));
}

/// An account without its template or site would be incomplete.
void load_records(CreationRun& run) {
  try {
    stores::require_template(run.session, run.request.TemplateName);
    stores::require_site(run.session, run.request.SiteName);
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
    run.session.LastCreation.message = text;
    valid = false;
  }
  for (const std::string* name : {&run.request.FirstName, &run.request.MiddleName, &run.request.LastName}) {
    if (const auto control = base::find_control_character(*name)) {
      const std::string text = "Invalid Character in Name: " + *control;
      log(run, text);
      run.session.LastCreation.message = text;
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
  session.form1.StatusBar1.panel1 = "User Name Invalid...";
  back_to_rest(session);
  session.log.close();
  return Step::kEnd;
}

}  // namespace

Step ValidateRequest(CreationRun& run) {
  Session& session = run.session;
  Form1& form = session.form1;
  clear_lights(form);
  if (form.TreeView1.selected() == nullptr) {
    form.TreeView1.select(form.TreeView1.first());
    run.request = CreationRun(session).request;
  }
  if (const std::string_view fault = selection_fault(run); !fault.empty()) {
    session.LastCreation.message = fault;
    session.platform.dialogs.MsgBox(fault, platform::Buttons::kOk, platform::Icon::kCritical,
                                    "Can't Create User");
    return Step::kEnd;
  }
  run.hourglass.emplace(form);
  set_progress(run, 0);
  form.StatusBar1.panel1 = "Creating User....";
  set_progress(run, 5);
  show_step(run, "Initalizing...");
  load_records(run);
  capitalize(run.request.FirstName, form.strFirst);
  capitalize(run.request.MiddleName, form.StrMiddle);
  capitalize(run.request.LastName, form.strLast);

  run.UserId = run.request.UserId;
  if (base::trim(run.UserId).empty()) {
    run.UserId = format::UserName(session, form.setupid.text, base::trim(run.request.FirstName),
                                  base::trim(run.request.MiddleName), base::trim(run.request.LastName));
    form.UserID_Box.text = run.UserId;
  }
  const std::size_t length = base::length(run.UserId);
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
