#include "groups/groups_window.hpp"

#include "directory/loading/ad_load.hpp"
#include "groups/copy_group.hpp"
#include "groups/group_add.hpp"
#include "groups/group_object.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::groups {

using session::Session;

void Groupsfrm_Show(Session& session) {
  session::Groupsfrm& window = session.groups;
  Groupsfrm_Form_Load(session);
  session.form1.enabled = false;
  window.visible = true;
}

void Groupsfrm_Form_Load(Session& session) {
  session::Groupsfrm& window = session.groups;
  window.Decsription_Text.locked = true;
  // All users of a WinNT domain are read when it is loaded.
  window.btn_showGrpusers.visible = session::is_active_directory(session);
  window.StatusBar1.panel1 = std::string();
  window.StatusBar1.panel2 = std::string();
  enable_buttons(session);
}

void Groupsfrm_ExitButton_Click(Session& session) {
  give_members_back(session);
  session.form1.enabled = true;
  session.groups.visible = false;
}

void Groupsfrm_ListView1_Click(Session& session) {
  session::Groupsfrm& window = session.groups;
  const controls::ListRow* const row = window.ListView1.selected();
  const std::string& shown = window.ShownGroup;
  if (!shown.empty() && (row == nullptr || row->key != shown)) {
    give_members_back(session);
    window.StatusBar1.panel1 = std::string();
    window.StatusBar1.panel2 = std::string();
  }
  enable_buttons(session);
}

void Groupsfrm_ListView1_ColumnClick(Session& session, int column) {
  session::Groupsfrm& window = session.groups;
  if (window.SortKey == column) {
    window.SortDescending = !window.SortDescending.get();
    return;
  }
  window.SortDescending = false;
  window.SortKey = column;
}

void Groupsfrm_Members_Click(Session& session) {
  if (session.domain.NotMembers.selected() != nullptr)
    session.domain.NotMembers.select(nullptr);
  enable_buttons(session);
}

void Groupsfrm_NotMembers_Click(Session& session) {
  if (session.domain.Members.selected() != nullptr)
    session.domain.Members.select(nullptr);
  enable_buttons(session);
}

void Groupsfrm_Members_DblClick(Session& session) {
  Groupsfrm_Command1_Click(session);
}

void Groupsfrm_Add_Group_Click(Session& session) {
  if (session::is_active_directory(session)) {
    GroupAdd_Form_Load(session);
    session.platform.dialogs.show_modal("GroupAdd");
  } else {
    ask_for_nt_group(session);
  }
  enable_buttons(session);
}

void Groupsfrm_COPY_GRP_Click(Session& session) {
  frmCopy_Group_Form_Load(session);
  session.platform.dialogs.show_modal("frmCopy_Group");
  // There may now be more members to show.
  if (!session.groups.ShownGroup.get().empty())
    Groupsfrm_Group_Details_Click(session);
}

void Groupsfrm_btn_showGrpusers_Click(Session& session) {
  const bool shown = !session.groups.ShownGroup.get().empty();
  directory::btn_showGrpusers_Click(session);
  // All users that were read are in one list again.
  if (shown && session.domain.Members.empty())
    Groupsfrm_Group_Details_Click(session);
  else
    enable_buttons(session);
}

}  // namespace twk::groups
