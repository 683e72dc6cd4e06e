#include "windows/import.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/import.hpp"
#include "batch/import_options.hpp"
#include "controls/tree_view.hpp"
#include "session/form1.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "session/windows.hpp"
#include "windows/create_user.hpp"
#include "windows/csv_layout.hpp"

namespace twk::windows {
namespace {

using session::Session;

/// The reason against the selection; empty when it will do.
std::string selection_fault(Session& session) {
  const session::Form1& form = session.form1;
  const controls::TreeNode* const node = form.TreeView1.selected();
  const std::string_view kind = node == nullptr ? std::string_view{} : std::string_view(node->image);
  const bool active_directory = session::is_active_directory(session);
  const bool copy = form.Copy_User.on();
  const bool good = !active_directory || copy || kind == "OU";
  const bool named =
      !base::trim(form.nutemplate.text.get()).empty() && !base::trim(form.NUsitename.text.get()).empty();
  if (named && good && !(copy && kind != "USER"))
    return {};
  if (!active_directory)
    return "To Import Users you must select a Template and a Site.";
  const std::string text = "To Import Users you must select a Template and a Site\r\n";
  if (copy && kind != "USER") {
    return text +
           "and select an User from the treeview.\r\nor turn off 'copy user' function, and select an OU";
  }
  return text + "and select an OU from the treeview.";
}

void clear_new_user_tab(session::Form1& form) {
  for (controls::TextBox* field : {&form.strFirst, &form.StrMiddle, &form.strLast})
    field->text = std::string();
  for (controls::Label* label : {&form.Createdirs, &form.Sharedirs, &form.Security, &form.UserAccount,
                                 &form.MailAccount, &form.run, &form.progress}) {
    label->caption = std::string();
  }
  form.ProgressBar1.value = 0;
  form.StatusBar1.panel1 = "Ready.";
}

void log_block(Session& session, std::string_view text, bool with_user) {
  session.log.open();
  session.log.line(session::kAsterisks);
  session.log.line(session::date_and_time(session));
  if (with_user)
    session.log.line("User:" + session.platform.environment.variable("USERNAME"));
  session.log.line(text);
  session.log.close();
}

}  // namespace

void Import_Command(Session& session) {
  clear_new_user_tab(session.form1);
  if (const std::string fault = selection_fault(session); !fault.empty()) {
    session.platform.dialogs.MsgBox(fault, platform::Buttons::kOk, platform::Icon::kCritical,
                                    "Can't Import Users");
    return;
  }
  if (const std::string fault = batch::refused_expiry(session, session.import_grps.Expiredate.text.get());
      !fault.empty()) {
    session.platform.dialogs.MsgBox("The expiry of the accounts: " + fault + ".", platform::Buttons::kOk,
                                    platform::Icon::kCritical, "Can't Import Users");
    return;
  }
  const auto path = session.platform.dialogs.open_file("Open file to import", "CSV Files (*.csv)|*.csv|");
  if (!path || path->empty())
    return;
  session.import.ImportAccepted = false;
  base::Trap trap;
  if (!trap([&] { load_csv_layout(session, *path); })) {
    session.platform.dialogs.MsgBox(trap.description(), platform::Buttons::kOk, platform::Icon::kCritical,
                                    "Import error");
    return;
  }
  session.platform.dialogs.show_modal("CSV_Import");
  if (!session.import.ImportAccepted)
    return;
  log_block(session, "Starting Import from: " + *path, true);
  session.form1.StatusBar1.panel1 = "Importing Users....";
  const bool whole = Import_File(session, *path);
  log_block(session, "Import Finished", false);
  if (!whole) {
    session.platform.dialogs.MsgBox("Errors during Import. Check log files for details.",
                                    platform::Buttons::kOk, platform::Icon::kExclamation, "Import error");
  } else {
    session.form1.Import_Text.caption = std::string();
    session.form1.StatusBar1.panel1 = "Import Complete. " + base::to_text(session.import.ImportAddedCount) +
                                      " users Added. Check Import.err for errors.";
  }
  session.form1.SSTab1 = 0;
}

bool Import_File(Session& session, std::string_view path) {
  session::Form1& form = session.form1;
  const batch::ImportOrder order = {new_user_request(session), form.STOP_ON_RED[0].on(),
                                    form.STOP_ON_RED[1].on()};
  form.enabled = false;
  form.USERID.text = std::string();
  session.cancel_import.visible = true;
  NewUserView view(form, true);
  const bool whole = batch::Import_Users(session, path, order, view);
  form.enabled = true;
  session.cancel_import.visible = false;
  return whole;
}

void CancelButton_Click(Session& session) {
  session.import.ImportStopped = true;
  session.cancel_import.visible = false;
}

}  // namespace twk::windows
