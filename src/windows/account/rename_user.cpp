#include "windows/account/rename_user.hpp"

#include "base/errors.hpp"
#include "lifecycle/rename/rename_principal.hpp"
#include "lifecycle/rename/rename_user.hpp"
#include "session/preferences.hpp"
#include "windows/account/account_view.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {
namespace {

std::string principal_name(const RenameUser& window) {
  const std::string& prefix = window.User_logon_name.text;
  return prefix.empty() ? prefix : prefix + window.AD_Domain.text.get();
}

/// Shows the account's own suffix over those of the forest.
void show_principal_name(Desktop& session, const std::string& name) {
  RenameUser& window = session.rename_user;
  const lifecycle::PrincipalName principal = lifecycle::split_principal(name);
  std::vector<std::string> suffixes = lifecycle::principal_suffixes(session);
  if (!principal.suffix.empty() && lifecycle::find_suffix(suffixes, principal.suffix).empty())
    suffixes.push_back(principal.suffix);
  window.AD_Domain.clear_items();
  for (const std::string& suffix : suffixes)
    window.AD_Domain.add_item(suffix);
  window.User_logon_name.text = principal.prefix;
  window.AD_Domain.text = principal.suffix.empty() ? suffixes.front() : principal.suffix;
  window.PrincipalShown = principal_name(window);
}

lifecycle::RenameUserOrder order_of(const Desktop& session) {
  const RenameUser& window = session.rename_user;
  lifecycle::RenameUserOrder order;
  order.names = {window.Full_Name.text,    window.First_Name.text, window.Last_Name.text,
                 window.Display_Name.text, principal_name(window), window.Logon_Name_pre2000.text};
  order.principal_before = window.PrincipalShown;
  order.full_name_changed = window.Full_Name_Changed;
  order.logon_changed = window.Logon_Name_Changed;
  order.folders = window.ReNameSD.on();
  order.by_full_name = session.form1.CNName.value;
  order.tree_shows_display = session.form1.DisplayName.value;
  return order;
}

}  // namespace

void show_rename_user(Desktop& session) {
  base::Trap trap;
  if (trap([&] { RenameUser_Load(session); }))
    return session.platform.dialogs.show_modal("RenameUser");
  session.status.panel1 = "Unable to read the user: " + trap.description();
}

void RenameUser_Load(Desktop& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr)
    base::raise(base::error::kOutOfBounds, "no user is selected");
  const lifecycle::RenameUserOrder shown =
      lifecycle::rename_order(session, *node, session::read_preferences(session));
  RenameUser& window = session.rename_user;
  window.Full_Name.text = shown.names.full_name;
  window.First_Name.text = shown.names.first;
  window.Last_Name.text = shown.names.last;
  window.Display_Name.text = shown.names.display;
  window.WINNT_Domain.caption = session.NTDomainName + "\\";
  window.Logon_Name_pre2000.text = shown.names.logon;
  show_principal_name(session, shown.names.principal);
  window.ReNameSD.value = 0;
  window.Full_Name_Changed = false;
  window.Logon_Name_Changed = false;
}

void RenameUser_Full_Name_Change(Desktop& session) {
  session.rename_user.Full_Name_Changed = true;
}

void RenameUser_Logon_Name_pre2000_Change(Desktop& session) {
  session.rename_user.Logon_Name_Changed = true;
}

bool RenameUser_Command2_Click(Desktop& session) {
  controls::TreeNode* const node = session.form1.TreeView1.selected();
  const lifecycle::RenameUserOrder order = order_of(session);
  if (node == nullptr || lifecycle::has_refused_text(session, order.names))
    return false;
  const Hourglass hourglass(session.form1);
  AccountView view(session);
  return lifecycle::rename_user(session, *node, order, view).done;
}

}  // namespace twk::windows
