#include "windows/groups/group_add.hpp"

#include "groups/new_group.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {
namespace {

using groups::GroupKind;
using groups::GroupScope;

template <std::size_t size>
std::size_t chosen(const std::array<controls::OptionButton, size>& options) {
  std::size_t place = 0;
  while (place + 1 < size && !options[place].value.get())
    ++place;
  return place;
}

bool create(Desktop& session, const groups::NewGroup& order) {
  const Hourglass hourglass(session.form1);
  const groups::GroupOutcome outcome = groups::create_group(session, order);
  if (!outcome.light.empty())
    session.groups.StatusBar1.panel1 = outcome.text;
  return outcome.light == session::kGreen;
}

}  // namespace

void GroupAdd_Form_Load(Desktop& session) {
  GroupAdd& window = session.group_add;
  window.GRP_Name.text = std::string();
  window.GRP_DESCRIPTION.text = std::string();
  for (std::size_t i = 0; i < window.Option1.size(); ++i) {
    window.Option1.at(i).enabled = groups::has_scope(session, static_cast<GroupScope>(i));
    window.Option1.at(i).value = i == static_cast<std::size_t>(GroupScope::kGlobal);
  }
  for (std::size_t i = 0; i < window.Option2.size(); ++i) {
    // Without a choice there is nothing to choose.
    window.Option2.at(i).enabled = groups::has_kind(session, GroupKind::kDistribution);
    window.Option2.at(i).value = i == static_cast<std::size_t>(GroupKind::kSecurity);
  }
}

bool GroupAdd_OKButton_Click(Desktop& session) {
  const GroupAdd& window = session.group_add;
  return create(session, {window.GRP_Name.text, window.GRP_DESCRIPTION.text,
                          static_cast<GroupKind>(chosen(window.Option2)),
                          static_cast<GroupScope>(chosen(window.Option1))});
}

void ask_for_nt_group(Desktop& session) {
  create(session,
         {.name = session.platform.dialogs.InputBox("Enter Name for New Global Group", "Add Group")});
}

}  // namespace twk::windows
