#include "windows/manage_ou.hpp"

#include "base/text.hpp"
#include "session/directory_windows.hpp"
#include "session/form1.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"
#include "windows/refresh.hpp"

namespace twk::windows {
namespace {

using session::Session;

void store_limit(Session& session, std::uint32_t hive, std::string_view ou, std::string_view sub_ous) {
  session::write_setting(session, session::kSetup, "OU", ou, hive);
  session::write_setting(session, session::kSetup, "SUBOU", sub_ous, hive);
}

/// The limit may have been stored for the person, for the machine or for both.
void lift_stored_limit(Session& session) {
  if (!session::read_setting(session, session::kSetup, "OU").empty())
    store_limit(session, platform::kHiveLocalMachine, {}, "Yes");
  store_limit(session, platform::kHiveCurrentUser, {}, "Yes");
}

}  // namespace

void limit_to_ou(Session& session, const std::string& distinguished_name, bool sub_ous, std::uint32_t hive) {
  session.ManagedOU = distinguished_name;
  session.ManageSubOUs = sub_ous;
  store_limit(session, hive, distinguished_name, sub_ous ? "Yes" : "No");
}

void lift_limit(Session& session) {
  lift_stored_limit(session);
  session.ManagedOU.clear();
  session.ManageSubOUs = true;
}

void Manage_OU(Session& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr || node->image != "OU") {
    session.platform.dialogs.MsgBox(
        "To manage a single OU, by only allowing TWK to display users in the selected OU and sub OU's\r\n"
        "select the OU to manage in the treeview and reselect this option.",
        platform::Buttons::kOk, platform::Icon::kInformation, "Manage OU");
    return;
  }
  if (!session.ManagedOU.empty()) {
    session::Form1& form = session.form1;
    form.DomName.enabled = false;
    form.mnuOption[5].enabled = false;
    lift_limit(session);
    windows::Refresh(session);
    form.DomName.enabled = true;
    return;
  }
  session.select_ou.OU.caption = "Manage this OU: " + node->text;
  session.select_ou.SUBOU.value = session.ManageSubOUs ? 1 : 0;
  session.platform.dialogs.show_modal("Select_OU");
}

void Select_OU_OK_Click(Session& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr)
    return;
  session.form1.DomName.enabled = false;
  session.form1.mnuOption[5].enabled = false;
  const std::uint32_t hive =
      session.select_ou.REG_KEY.index == 1 ? platform::kHiveLocalMachine : platform::kHiveCurrentUser;
  limit_to_ou(session, node->key, session.select_ou.SUBOU.on(), hive);
  session.form1.StatusBar1.panel1 = "The limit to " + node->text + " takes effect with the next Refresh.";
}

}  // namespace twk::windows
