#include "groups/group_object.hpp"

#include "base/errors.hpp"
#include "directory/operations.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::groups {

using controls::ListRow;
using controls::ListView;
using session::Session;

GroupRow group_of(const ListRow& row) {
  return {row.key, row.text};
}

platform::ObjectPtr bind_group(Session& session, const GroupRow& group) {
  return session.platform.directory.GetObject(
      session::is_active_directory(session) ? group.key : directory::winnt_path(session, group.name));
}

std::string member_path(const Session& session, const ListRow& row) {
  return session::is_active_directory(session) ? row.key : directory::winnt_path(session, row.text);
}

bool is_user(const platform::DirectoryObject& member) {
  const std::string object_class = member.Class();
  return object_class == "User" || object_class == "user";
}

void give_members_back(Session& session) {
  ListView& members = session.domain.Members;
  std::vector<const ListRow*> rows;
  rows.reserve(members.size());
  for (std::size_t i = 0; i < members.size(); ++i)
    rows.push_back(&members.at(i));
  controls::move_rows(members, rows, session.domain.NotMembers);
}

void add_group_rows(Session& session, const GroupRow& group, const std::string& type, bool global) {
  const auto add = [&](ListView& list, std::vector<std::string> columns = {}) {
    // A list that already has the group shows it correctly.
    base::Trap trap;
    trap([&] { list.add(group.key, group.name, "W2KGRP", std::move(columns)); });
  };
  add(session.domain.all_groups, {type});
  add(session.domain.other_groups);
  add(session.domain.template_choice);
  if (global)
    add(session.domain.groups);
}

void remove_group_rows(Session& session, const std::string& key) {
  for (ListView* const list :
       {&session.domain.all_groups, &session.domain.own_groups, &session.domain.other_groups,
        &session.domain.template_choice, &session.domain.groups}) {
    if (const ListRow* const row = list->find_key(key))
      list->remove(*row);
  }
}

}  // namespace twk::groups
