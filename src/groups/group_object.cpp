#include "groups/group_object.hpp"

#include "base/errors.hpp"
#include "directory/operations.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/loaded_domain.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

namespace twk::groups {

using controls::ListRow;
using controls::ListView;
using session::Session;

platform::ObjectPtr bind_group(Session& session, const ListRow& row) {
  return session.platform.directory.GetObject(
      session::is_active_directory(session) ? row.key : directory::winnt_path(session, row.text));
}

std::string member_path(const Session& session, const ListRow& row) {
  return session::is_active_directory(session) ? row.key : directory::winnt_path(session, row.text);
}

bool is_user(const platform::DirectoryObject& member) {
  const std::string object_class = member.Class();
  return object_class == "User" || object_class == "user";
}

void give_members_back(Session& session) {
  session::Groupsfrm& window = session.groups;
  std::vector<const ListRow*> rows;
  rows.reserve(window.Members.size());
  for (std::size_t i = 0; i < window.Members.size(); ++i)
    rows.push_back(&window.Members.at(i));
  controls::move_rows(window.Members, rows, window.NotMembers);
  window.Decsription_Text.text = std::string();
  window.ShownGroup = std::string();
  window.OtherMembers = 0;
}

void enable_buttons(Session& session) {
  session::Groupsfrm& window = session.groups;
  const bool chosen = window.ListView1.selected() != nullptr;
  const bool shown = !window.ShownGroup.get().empty();
  window.Group_Details.enabled = chosen;
  window.Delete_Group.enabled = chosen;
  window.COPY_GRP.enabled = !window.ListView1.empty();
  window.Command1.enabled = shown && window.Members.selected() != nullptr;
  window.Command2.enabled = shown && window.NotMembers.selected() != nullptr;
}

void add_group_rows(Session& session, const std::string& key, const std::string& name,
                    const std::string& type, bool global) {
  const auto add = [&](ListView& list, std::vector<std::string> columns = {}) {
    // A list that already has the group shows it correctly.
    base::Trap trap;
    trap([&] { list.add(key, name, "W2KGRP", std::move(columns)); });
  };
  add(session.domain.all_groups, {type});
  add(session.domain.other_groups);
  add(session.domain.template_choice);
  if (global)
    add(session.domain.groups);
}

void remove_group_rows(Session& session, const std::string& key) {
  for (ListView* const list : {&session.domain.all_groups, &session.domain.other_groups,
                               &session.domain.template_choice, &session.domain.groups}) {
    if (const ListRow* const row = list->find_key(key))
      list->remove(*row);
  }
}

}  // namespace twk::groups
