#include "windows/account/rename_nt.hpp"

#include "base/errors.hpp"
#include "lifecycle/rename/rename_nt.hpp"
#include "windows/account/account_view.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {

void show_rename_nt(Desktop& session) {
  base::Trap trap;
  if (trap([&] { Rename_NT_Load(session); }))
    return session.platform.dialogs.show_modal("Rename_NT");
  session.status.panel1 = "Unable to read the user: " + trap.description();
}

void Rename_NT_Load(Desktop& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr)
    base::raise(base::error::kOutOfBounds, "no user is selected");
  const lifecycle::RenameNtOrder shown = lifecycle::rename_order_nt(session, *node);
  Rename_NT& window = session.rename_nt;
  window.OldName = shown.old_name;
  window.User_Logon.text = shown.logon;
  window.Full_Name.text = shown.full_name;
  window.RenameDir.value = 0;
  window.Logon_Changed = false;
  window.Name_Changed = false;
}

void Rename_NT_User_Logon_Change(Desktop& session) {
  session.rename_nt.Logon_Changed = true;
}

void Rename_NT_Full_Name_Change(Desktop& session) {
  session.rename_nt.Name_Changed = true;
}

bool Rename_NT_OKButton_Click(Desktop& session) {
  const Rename_NT& window = session.rename_nt;
  controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (!window.Logon_Changed && !window.Name_Changed)
    return true;
  const lifecycle::RenameNtOrder order = {.old_name = window.OldName,
                                          .logon = window.User_Logon.text,
                                          .full_name = window.Full_Name.text,
                                          .logon_changed = window.Logon_Changed,
                                          .full_name_changed = window.Name_Changed,
                                          .folders = window.RenameDir.on(),
                                          .terms = {}};
  if (node == nullptr || lifecycle::has_refused_text(session, order))
    return false;
  const Hourglass hourglass(session.form1);
  AccountView view(session);
  lifecycle::rename_nt(session, *node, order, view);
  return true;
}

}  // namespace twk::windows
