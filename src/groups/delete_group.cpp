#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "directory/user_details.hpp"
#include "groups/group_object.hpp"
#include "groups/groups_window.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/hourglass.hpp"
#include "session/session.hpp"

namespace twk::groups {

using session::Session;

bool Groupsfrm_Delete_Group_Click(Session& session) {
  session::Groupsfrm& window = session.groups;
  const controls::ListRow* const chosen = window.ListView1.selected();
  if (chosen == nullptr)
    return false;
  platform::Dialogs& dialogs = session.platform.dialogs;
  if (dialogs.MsgBox("Sure to Delete Global Group " + chosen->text, platform::Buttons::kOkCancel,
                     platform::Icon::kQuestion, "Delete Group") != platform::Answer::kOk)
    return false;
  const session::Hourglass hourglass(session.form1);
  const std::string key = chosen->key;
  const std::string text = chosen->text;
  base::Trap trap;
  trap([&] {
    session.CurrentGroup = bind_group(session, *chosen);
    session.platform.directory.GetObject(session.CurrentGroup->Parent())
        ->Delete("group", session.CurrentGroup->Name());
  });
  session.CurrentGroup.reset();
  if (trap.number() != 0) {
    window.StatusBar1.panel1 =
        "Error Deleting Group " + text + ": " + base::in_words(trap.number(), trap.description());
    dialogs.MsgBox("Error Deleting Group", platform::Buttons::kOk, platform::Icon::kExclamation,
                   "Delete Group");
    return false;
  }
  give_members_back(session);
  // The details tab first returns its groups, so that this one is then in no list.
  directory::Clear_UM(session);
  remove_group_rows(session, key);
  window.StatusBar1.panel1 = "Deleted group " + text;
  window.StatusBar1.panel2 = std::string();
  enable_buttons(session);
  return true;
}

}  // namespace twk::groups
