#include "windows/groups/groups_window.hpp"

#include "base/text.hpp"
#include "directory/loading/ad_load.hpp"
#include "groups/delete_group.hpp"
#include "groups/show_group.hpp"
#include "session/loaded_domain.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/account/run_history.hpp"
#include "windows/groups/copy_group.hpp"
#include "windows/groups/group_add.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {

using controls::ListRow;
using groups::MembersOutcome;
using Kind = batch::AccountChange::Kind;

namespace {

void tell(Desktop& session, const std::string& panel1, const std::string& panel2 = {}) {
  session.groups.StatusBar1.panel1 = panel1;
  session.groups.StatusBar1.panel2 = panel2;
}

/// No group is shown.
void clear_group(Desktop& session) {
  session.groups.Decsription_Text.text = std::string();
  session.groups.ShownGroup = std::string();
}

/// Enables the buttons that have something to work on.
void enable_buttons(Desktop& session) {
  Groupsfrm& window = session.groups;
  const bool chosen = window.ListView1.selected() != nullptr;
  const bool shown = !window.ShownGroup.get().empty();
  window.Group_Details.enabled = chosen;
  window.Delete_Group.enabled = chosen;
  window.COPY_GRP.enabled = !window.ListView1.empty();
  window.Command1.enabled = shown && window.Members.selected() != nullptr;
  window.Command2.enabled = shown && window.NotMembers.selected() != nullptr;
}

std::vector<std::string> selected_keys(const controls::ListView& list) {
  std::vector<std::string> keys;
  for (const ListRow* const row : list.selected_rows())
    keys.push_back(row->key);
  return keys;
}

/// A row of the log tab by which the change can be taken back.
void log_members(Desktop& session, const groups::GroupRow& group, Kind kind, const MembersOutcome& outcome) {
  if (outcome.changed.empty())
    return;
  std::vector<batch::AccountChange> changes;
  for (const std::string& user : outcome.changed)
    changes.push_back(membership(session, kind, user, group.key));
  const std::size_t users = changes.size();
  log_run(session, outcome.refused.empty() && outcome.not_kept.empty() ? session::kGreen : session::kYellow,
          (kind == Kind::kJoined ? "Added to " : "Removed from ") + group.name + ": " +
              std::to_string(users) + (users == 1 ? " user" : " users"),
          std::move(changes));
}

/// Changes the members of the chosen group by the selected users of a list.
MembersOutcome change_members(Desktop& session, const controls::ListView& list, Kind kind,
                              decltype(groups::add_members)& change) {
  const ListRow* const chosen = session.groups.ListView1.selected();
  if (chosen == nullptr)
    return {};
  const Hourglass hourglass(session.form1);
  const groups::GroupRow group = groups::group_of(*chosen);
  MembersOutcome outcome = change(session, group, selected_keys(list));
  log_members(session, group, kind, outcome);
  session.groups.StatusBar1.panel1 = outcome.text;
  enable_buttons(session);
  return outcome;
}

}  // namespace

void Groupsfrm_Show(Desktop& session) {
  Groupsfrm& window = session.groups;
  Groupsfrm_Form_Load(session);
  session.form1.enabled = false;
  window.visible = true;
}

void Groupsfrm_Form_Load(Desktop& session) {
  Groupsfrm& window = session.groups;
  window.Decsription_Text.locked = true;
  // All users of a WinNT domain are read when it is loaded.
  window.btn_showGrpusers.visible = session::is_active_directory(session);
  tell(session, {});
  enable_buttons(session);
}

void Groupsfrm_ExitButton_Click(Desktop& session) {
  groups::give_members_back(session);
  clear_group(session);
  session.form1.enabled = true;
  session.groups.visible = false;
}

void Groupsfrm_Group_Details_Click(Desktop& session) {
  const ListRow* const row = session.groups.ListView1.selected();
  if (row == nullptr)
    return;
  tell(session, "Please wait...");
  clear_group(session);
  const Hourglass hourglass(session.form1);
  const groups::GroupDetails details = groups::show_group(session, groups::group_of(*row));
  if (details.failure.empty()) {
    session.groups.Decsription_Text.text = details.comment;
    session.groups.ShownGroup = row->key;
    tell(session, "Number of Members = " + base::to_text(static_cast<std::int64_t>(details.users)),
         details.others == 0
             ? std::string()
             : "Not in the lists: " + base::to_text(static_cast<std::int64_t>(details.others)));
  } else {
    tell(session, details.failure);
  }
  enable_buttons(session);
}

void Groupsfrm_ListView1_DblClick(Desktop& session) {
  Groupsfrm_Group_Details_Click(session);
}

void Groupsfrm_ListView1_Click(Desktop& session) {
  Groupsfrm& window = session.groups;
  const controls::ListRow* const row = window.ListView1.selected();
  const std::string& shown = window.ShownGroup;
  if (!shown.empty() && (row == nullptr || row->key != shown)) {
    groups::give_members_back(session);
    clear_group(session);
    tell(session, {});
  }
  enable_buttons(session);
}

void Groupsfrm_ListView1_ColumnClick(Desktop& session, int column) {
  Groupsfrm& window = session.groups;
  if (window.SortKey == column) {
    window.SortDescending = !window.SortDescending.get();
    return;
  }
  window.SortDescending = false;
  window.SortKey = column;
}

MembersOutcome Groupsfrm_Command2_Click(Desktop& session) {
  return change_members(session, session.domain.NotMembers, Kind::kJoined, groups::add_members);
}

MembersOutcome Groupsfrm_Command1_Click(Desktop& session) {
  return change_members(session, session.domain.Members, Kind::kLeft, groups::remove_members);
}

void Groupsfrm_Members_Click(Desktop& session) {
  if (session.domain.NotMembers.selected() != nullptr)
    session.domain.NotMembers.select(nullptr);
  enable_buttons(session);
}

void Groupsfrm_NotMembers_Click(Desktop& session) {
  if (session.domain.Members.selected() != nullptr)
    session.domain.Members.select(nullptr);
  enable_buttons(session);
}

void Groupsfrm_Members_DblClick(Desktop& session) {
  Groupsfrm_Command1_Click(session);
}

bool Groupsfrm_Delete_Group_Click(Desktop& session) {
  const ListRow* const chosen = session.groups.ListView1.selected();
  if (chosen == nullptr || !groups::confirm_deletion(session, chosen->text))
    return false;
  const Hourglass hourglass(session.form1);
  const groups::GroupOutcome outcome = groups::delete_group(session, groups::group_of(*chosen));
  if (outcome.light != session::kGreen) {
    session.groups.StatusBar1.panel1 = outcome.text;
    return false;
  }
  clear_group(session);
  Clear_UM(session);
  tell(session, outcome.text);
  enable_buttons(session);
  return true;
}

void Groupsfrm_Add_Group_Click(Desktop& session) {
  if (session::is_active_directory(session)) {
    GroupAdd_Form_Load(session);
    session.platform.dialogs.show_modal("GroupAdd");
  } else {
    ask_for_nt_group(session);
  }
  enable_buttons(session);
}

void Groupsfrm_COPY_GRP_Click(Desktop& session) {
  frmCopy_Group_Form_Load(session);
  session.platform.dialogs.show_modal("frmCopy_Group");
  // There may now be more members to show.
  if (!session.groups.ShownGroup.get().empty())
    Groupsfrm_Group_Details_Click(session);
}

void Groupsfrm_btn_showGrpusers_Click(Desktop& session) {
  const bool shown = !session.groups.ShownGroup.get().empty();
  directory::show_all_users(session, directory::UserList::kMembers, session.groups.StatusBar1);
  // All users that were read are in one list again.
  if (shown && session.domain.Members.empty())
    Groupsfrm_Group_Details_Click(session);
  else
    enable_buttons(session);
}

}  // namespace twk::windows
