#include "directory/loading/nt_load.hpp"

#include <limits>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/names.hpp"
#include "directory/nt_listing.hpp"
#include "directory/operations.hpp"
#include "platform/group_type.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using session::Session;

void take_user(Session& session, base::Trap& trap, controls::TreeNode& root,
               const platform::ListedUser& user) {
  const std::string& name = user.name;
  const NtUserRow row = nt_user_row(user);
  ++session.UserCount;
  trap([&] { session.domain.tree.add(&root, nt_user_key(name), name, "USER").marks = row.marks; });
  trap([&] { session.domain.users.add(name, name, "USER", row.texts).marks = row.marks; });
  trap([&] { session.domain.NotMembers.add(name, name, "USER"); });
}

void take_group(Session& session, base::Trap& trap, const ObjectPtr& group) {
  constexpr const char* kIcon = "W2KGRP";
  const std::string name = group->Name();
  std::int32_t type = 0;
  trap([&] {
    if (session.GroupCount == std::numeric_limits<std::int16_t>::max()) {
      throw base::RuntimeError(base::error::kOverflow, "Overflow: more groups than can be counted");
    }
    ++session.GroupCount;
  });
  trap([&] { type = group->Get("groupType").integer(); });
  const bool global = type == platform::group_type::kGlobal;
  trap([&] { session.domain.all_groups.add(name, name, kIcon, {global ? "Global" : "Local"}); });
  const std::string icon = global ? kIcon : "Local";
  trap([&] { session.domain.other_groups.add(name, name, icon); });
  trap([&] { session.domain.template_choice.add(name, name, icon); });
  trap([&] { session.domain.groups.add(name, name, global ? "Global" : "Local"); });
}

}  // namespace

void show_nt_users(Session& session) {
  controls::ListView& list = session.domain.users;
  list.clear();
  base::Trap trap;
  base::Trap adding;
  trap([&] {
    const controls::DrawingOff off(list);
    const ObjectPtr domain = session.platform.directory.GetObject(winnt_path(session));
    list_nt_users(domain, [&](const platform::ListedUser& user) {
      const NtUserRow row = nt_user_row(user);
      adding([&] { list.add(user.name, user.name, "USER", row.texts).marks = row.marks; });
      return true;
    });
  });
  if (trap.number() != 0)
    session.status.panel1 = "Error Getting Users. " + trap.description();
}

bool Load_NT_Domain(Session& session) {
  base::Trap trap(session::is_debug(session));
  session.domain.looked_up = {};
  session.domain.tree.clear();
  session.domain.users.clear();
  session.domain.Members.clear();
  session.domain.NotMembers.clear();
  session.domain.all_groups.clear();
  trap([&] { session.DomainContainer = session.platform.directory.GetObject(winnt_path(session)); });
  if (trap.number() != 0)
    return false;

  controls::TreeNode& root =
      session.domain.tree.add(nullptr, std::string(kNtRoot), session.DomainName, "DOMAIN");
  session.domain.tree.select(&root);
  session.domain.tree.set_expanded(root, true);
  session.status.panel1 = "Retrieving Users...";
  session.Error_Status_Text = "Error Getting Users. " + base::to_text(session.UserCount);
  base::Trap walk(session::is_debug(session));
  walk([&] {
    const controls::DrawingOff off(session.domain.tree);
    list_nt_users(session.DomainContainer, [&](const platform::ListedUser& user) {
      take_user(session, trap, root, user);
      return true;
    });
  });

  session.domain.template_choice.clear();
  session.domain.other_groups.clear();
  session.domain.selection.clear();
  session.domain.groups.clear();
  session.status.panel1 = "Retrieving Groups...";
  session.Error_Status_Text = "Error Getting Groups " + base::to_text(session.GroupCount);
  walk([&] {
    const std::vector<std::string> groups{"Group"};
    session.DomainContainer->enumerate(groups, [&](const ObjectPtr& group) {
      take_group(session, trap, group);
      return true;
    });
  });
  return session.UserCount != 0 || session.GroupCount != 0;
}

}  // namespace twk::directory
