#include "windows/import.hpp"

#include <functional>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/import.hpp"
#include "controls/tree_view.hpp"
#include "directory/tree/tree.hpp"
#include "windows/create_user.hpp"
#include "windows/csv_layout.hpp"
#include "windows/rehearse_import.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

void clear_new_user_tab(Form1& form) {
  for (controls::TextBox* field : {&form.strFirst, &form.StrMiddle, &form.strLast})
    field->text = std::string();
  for (controls::Label* label : {&form.Createdirs, &form.Sharedirs, &form.Security, &form.UserAccount,
                                 &form.MailAccount, &form.run, &form.progress}) {
    label->caption = std::string();
  }
  form.ProgressBar1.value = 0;
  form.StatusBar1.panel1 = "Ready.";
}

batch::ImportOrder order_of(Desktop& session) {
  const Form1& form = session.form1;
  batch::ImportOrder order;
  order.user = imported_request(session);
  order.halt_on_errors = form.STOP_ON_RED[0].on();
  order.halt_on_warnings = form.STOP_ON_RED[1].on();
  order.csv = session.csv_import.chkCsv.on();
  return order;
}

/// A name is in use when the tree shows it. In a container that nobody has opened yet, each clash would be
/// refused by the directory instead of getting another name.
void open_place(Desktop& session) {
  controls::TreeView& tree = session.form1.TreeView1;
  controls::TreeNode* const place = tree.selected();
  if (place == nullptr || directory::is_read(tree, *place))
    return;
  const Hourglass hourglass(session.form1);
  directory::TreeView1_Expand(session, *place);
}

/// Runs over a file as the New User tab and the preferences ask for; nothing else can be done meanwhile.
bool run_file(
    Desktop& session, std::string_view path,
    const std::function<bool(std::string_view, const batch::ImportOrder&, batch::ImportView&)>& run) {
  Form1& form = session.form1;
  const batch::ImportOrder order = order_of(session);
  form.enabled = false;
  form.USERID.text = std::string();
  session.cancel_import.heading.caption =
      std::string(session.csv_import.rehearses ? "Cancel Rehearsal" : "Cancel Import");
  session.cancel_import.visible = true;
  form.import_pace.caption = std::string();
  NewUserView view(form, true);
  const bool whole = run(path, order, view);
  form.enabled = true;
  session.cancel_import.visible = false;
  return whole;
}

/// What the window was closed with. False when every line would fail.
bool run_or_rehearse(Desktop& session, std::string_view path) {
  if (show_import_faults(session, order_of(session)))
    return false;
  open_place(session);
  if (session.csv_import.rehearses) {
    RehearsalEnd end;
    run_file(session, path, [&](auto file, const auto& order, auto& view) {
      end = rehearse_import(session, file, order, view);
      return true;
    });
    clear_new_user_tab(session.form1);
    session.platform.dialogs.MsgBox(end.text, platform::Buttons::kOk, end.icon, "Rehearsal");
    return true;
  }
  const auto run = [&](auto file, const auto& order, auto& view) {
    return batch::run_import(session, file, order, view);
  };
  if (run_file(session, path, run))
    session.form1.Import_Text.caption = std::string();
  return true;
}

}  // namespace

void Import_Command(Desktop& session) {
  clear_new_user_tab(session.form1);
  if (const std::string fault = batch::refused_place(session, new_user_request(session)); !fault.empty()) {
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
  session.csv_import.rehearses = true;
  while (session.csv_import.rehearses) {
    session.import.ImportAccepted = false;
    session.platform.dialogs.show_modal("CSV_Import");
    if (!session.import.ImportAccepted || !run_or_rehearse(session, *path))
      return;
  }
  // A change of tab says "Ready."; what became of the import is to stay.
  const std::string outcome = session.form1.StatusBar1.panel1.get();
  session.form1.SSTab1 = tab::kNewUser;
  session.form1.StatusBar1.panel1 = outcome;
}

bool Import_File(Desktop& session, std::string_view path) {
  return run_file(session, path, [&](auto file, const auto& order, auto& view) {
    return batch::Import_Users(session, file, order, view);
  });
}

void CancelButton_Click(Desktop& session) {
  session.import.ImportStopped = true;
  session.cancel_import.visible = false;
}

}  // namespace twk::windows
