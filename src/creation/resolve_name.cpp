#include <limits>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/account_name.hpp"
#include "creation/validate_request.hpp"
#include "directory/tree.hpp"
#include "format/user_name.hpp"
#include "session/form1.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"

namespace twk::creation {
namespace {

using session::Session;

/// There is no alternative to a taken name.
Step refuse_taken_name(CreationRun& run) {
  Session& session = run.session;
  session::ImportState& state = session.import;
  session.LastCreation.message = "User " + run.UserId + " Already Exist";
  if (state.Importing) {
    session::write_run_file(session, state.error_file, state.ImportLine);
  } else {
    session.platform.dialogs.MsgBox(
        "User " + run.UserId + " Already Exist \r\nChange the UserID and Continue.", platform::Buttons::kOk,
        platform::Icon::kExclamation, "User Exist");
  }
  session.form1.StatusBar1.panel1 = "Ready.";
  set_progress(run, 0);
  show_step(run, "");
  log(run, "User : " + run.UserId + "  Already Exist ");
  session.log.close();
  return Step::kEnd;
}

/// Starts again with a newly formed name; a format that yields the same name again does not help.
Step try_again(CreationRun& run, const std::string& format) {
  Session& session = run.session;
  const NewUserRequest& request = run.request;
  const std::string name =
      format::UserName(session, format, request.FirstName, request.MiddleName, request.LastName);
  if (base::equals_fold(name, run.UserId))
    return refuse_taken_name(run);
  log(run, "User ID " + run.UserId + " already exists");
  session.form1.UserID_Box.text = name;
  log(run, "Changing User ID to " + name);
  session.log.close();
  return Step::kAgain;
}

std::string import_bound(Session& session, std::string_view name) {
  const std::string value = session::read_setting(session, session::kSetup, name);
  return value.empty() ? "0" : value;
}

void begin_work(CreationRun& run) {
  Session& session = run.session;
  run.ImportGroupsStart = import_bound(session, "ImportGroupsStart");
  run.ImportGroupsFinish = import_bound(session, "ImportGroupsFinish");
  session.AltIdTried = false;
  session.SerialTokenUsed = false;
  session.form1.enabled = false;
}

/// The first directory row of that name.
const controls::ListRow* find_row(const controls::ListView& rows, std::string_view name) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (base::equals_fold(rows.at(i).text, name))
      return &rows.at(i);
  }
  return nullptr;
}

/// The account name from a directory row, once all its tags have values.
void take_name_of_row(CreationRun& run) {
  const controls::ListRow* const row = find_row(run.session.form1.ListView7, "SAMACCOUNTNAME");
  if (row == nullptr)
    return;
  const std::string name = expand_row_value(run, row->sub_items.empty() ? "" : row->sub_items.front());
  if (name.find('%') == base::npos)
    run.SamName = name;
}

Step refuse_sam_name(CreationRun& run, const char* status) {
  Session& session = run.session;
  session.form1.StatusBar1.panel1 = status;
  set_progress(run, 0);
  session.log.close();
  session.form1.enabled = !session.import.Importing;
  return Step::kEnd;
}

}  // namespace

Step ResolveCollision(CreationRun& run) {
  Session& session = run.session;
  session::Form1& form = session.form1;
  if (!form.Create_User_Account.on())
    return Step::kGoOn;
  if (!directory::User_Exist(session, run.UserId)) {
    begin_work(run);
    return Step::kGoOn;
  }
  if (!session.SerialTokenUsed) {
    if (form.ALTID.text.get().empty() || session.AltIdTried)
      return refuse_taken_name(run);
    session.AltIdTried = true;
    return try_again(run, form.ALTID.text);
  }
  if (session.SerialCounter == std::numeric_limits<std::int16_t>::max())
    return refuse_taken_name(run);
  ++session.SerialCounter;
  return try_again(run, session.AltIdTried ? form.ALTID.text : form.setupid.text);
}

Step ResolveSamName(CreationRun& run) {
  Session& session = run.session;
  const bool by_row = session::is_active_directory(session) && !session.form1.SamAccountName.value;
  if (by_row)
    take_name_of_row(run);
  if (by_row && run.CommaInName && run.SamName.find(',') != base::npos) {
    session.LastCreation.message = "SAMName cannot have a comma in it.";
    session.platform.dialogs.MsgBox(
        "SAMName cannot have a comma in it.\r\nYou will need to enter a 'SAMAccountName' property into "
        "the\r\nW2K TAB.",
        platform::Buttons::kOk, platform::Icon::kCritical, "Invaild Chr in SAMAccountName");
    return refuse_sam_name(run, "Ready.");
  }
  std::vector<std::string> faults;
  if (by_row)
    faults = invalid_characters(run.SamName, true);
  if (run.SamName.ends_with('.'))
    faults.emplace_back("the dot at the end of " + run.SamName);
  if (faults.empty())
    return Step::kGoOn;
  for (const std::string& fault : faults)
    log(run, "Invalid Character in SAMAccountName: " + fault);
  session.LastCreation.message = "Invalid Character in SAMAccountName: " + faults.front();
  session.platform.dialogs.beep();
  return refuse_sam_name(run, "User Name Invalid...");
}

}  // namespace twk::creation
