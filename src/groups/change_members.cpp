#include <algorithm>
#include <functional>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/operations.hpp"
#include "groups/group_object.hpp"
#include "groups/groups_window.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/hourglass.hpp"
#include "session/session.hpp"

namespace twk::groups {
namespace {

using controls::ListRow;
using controls::ListView;
using session::Session;

/// After this many boxes in one run, the status bar reports the rest.
constexpr std::size_t kMostBoxes = 10;

/// Binds the chosen group and prepares the change. False when that failed, which a box reported.
bool bind_chosen(Session& session, const char* failure, const std::function<void()>& bind) {
  base::Trap trap;
  trap(bind);
  if (trap.number() == 0)
    return true;
  session.groups.StatusBar1.panel1 =
      std::string(failure) + ": " + base::in_words(trap.number(), trap.description());
  session.platform.dialogs.MsgBox(failure, platform::Buttons::kOk, platform::Icon::kExclamation, "");
  return false;
}

void tell_outcome(Session& session, const std::string& group) {
  session::Groupsfrm& window = session.groups;
  if (window.refused.empty()) {
    window.StatusBar1.panel1 =
        "Number of Members = " + base::to_text(static_cast<std::int64_t>(window.Members.size()));
    return;
  }
  std::string text = group + ": " + window.refused.front().reason;
  if (window.refused.size() > 1) {
    text += " (and " + base::to_text(static_cast<std::int64_t>(window.refused.size() - 1)) + " more)";
  }
  window.StatusBar1.panel1 = text;
}

/// Changes the selected rows from the last to the first and moves those for which `change` returns no reason
/// against it.
void change_selected(Session& session, const std::string& group, ListView& from, ListView& to,
                     const std::function<std::string(const ListRow& row)>& change) {
  session::Groupsfrm& window = session.groups;
  std::vector<const ListRow*> selected = from.selected_rows();
  std::reverse(selected.begin(), selected.end());
  std::vector<const ListRow*> moved;
  base::Trap trap;
  platform::WriteBatch batch(session.platform.directory);
  for (const ListRow* const row : selected) {
    std::string reason;
    if (!trap([&] { reason = change(*row); }))
      reason = row->text + ": " + base::in_words(trap.number(), trap.description());
    if (reason.empty())
      moved.push_back(row);
    else
      window.refused.push_back({row->key, trap.number(), std::move(reason)});
  }
  if (!trap([&] { batch.commit(); }))
    window.refused.push_back({{}, trap.number(), base::in_words(trap.number(), trap.description())});
  controls::move_rows(from, moved, to);
  session.CurrentGroup.reset();
  tell_outcome(session, group);
  enable_buttons(session);
}

/// Why not, when the group is the user's primary one.
std::string check_primary_group(Session& session, const ListRow& row, const std::string& group,
                                std::int32_t group_id) {
  const std::int32_t primary = session.platform.directory.GetObject(row.key)->Get("PrimaryGroupID").integer();
  if (primary != group_id)
    return {};
  const std::string text =
      "Can't remove user '" + row.text + "' from '" + group + "'\r\nas it is their primary Group.";
  if (session.groups.refused.size() < kMostBoxes)
    session.platform.dialogs.MsgBox(text, platform::Buttons::kOk, platform::Icon::kNone, "");
  return row.text + ": it is their primary Group";
}

}  // namespace

void Groupsfrm_Command2_Click(Session& session) {
  session::Groupsfrm& window = session.groups;
  window.refused.clear();
  const ListRow* const chosen = window.ListView1.selected();
  if (chosen == nullptr)
    return;
  const session::Hourglass hourglass(session.form1);
  if (!bind_chosen(session, "Error Connecting to Group",
                   [&] { session.CurrentGroup = bind_group(session, *chosen); }))
    return;
  change_selected(session, chosen->text, window.NotMembers, window.Members, [&](const ListRow& row) {
    session.CurrentGroup->Add(member_path(session, row));
    return std::string();
  });
}

void Groupsfrm_Command1_Click(Session& session) {
  session::Groupsfrm& window = session.groups;
  window.refused.clear();
  const ListRow* const chosen = window.ListView1.selected();
  if (chosen == nullptr)
    return;
  const bool active_directory = session::is_active_directory(session);
  std::int32_t group_id = 0;
  const session::Hourglass hourglass(session.form1);
  if (!bind_chosen(session, "Could not connect to Group", [&] {
        session.CurrentGroup = bind_group(session, *chosen);
        if (active_directory)
          group_id = directory::Group_RID(session, chosen->key);
      }))
    return;
  change_selected(session, chosen->text, window.Members, window.NotMembers, [&](const ListRow& row) {
    std::string reason;
    if (active_directory)
      reason = check_primary_group(session, row, chosen->text, group_id);
    if (reason.empty())
      session.CurrentGroup->Remove(member_path(session, row));
    return reason;
  });
}

}  // namespace twk::groups
