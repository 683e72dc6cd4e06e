#include "directory/loading/nt_load.hpp"

#include <limits>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/group_type.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using session::Session;

void take_user(Session& session, base::Trap& trap, controls::TreeNode& root, const std::string& name) {
  ++session.UserCount;
  trap([&] { session.form1.TreeView1.add(&root, nt_user_key(name), name, "USER"); });
  trap([&] { session.multi_user.ListView2.add(name, name, "USER"); });
  trap([&] { session.groups.NotMembers.add(name, name, "USER"); });
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
  trap([&] { session.groups.ListView1.add(name, name, kIcon, {global ? "Global" : "Local"}); });
  const std::string icon = global ? kIcon : "Local";
  trap([&] { session.form1.ListView3.add(name, name, icon); });
  trap([&] { session.form1.ListView5.add(name, name, icon); });
  trap([&] { session.multi_user.ListView3.add(name, name, global ? "Global" : "Local"); });
}

}  // namespace

void show_nt_users(Session& session) {
  controls::ListView& list = session.multi_user.ListView2;
  list.clear();
  base::Trap trap;
  base::Trap adding;
  trap([&] {
    const controls::DrawingOff off(list);
    const std::vector<std::string> users{"User"};
    session.platform.directory.GetObject(winnt_path(session))->enumerate(users, [&](const ObjectPtr& user) {
      const std::string name = user->Name();
      adding([&] { list.add(name, name, "USER"); });
      return true;
    });
  });
  if (trap.number() != 0)
    session.form1.StatusBar1.panel1 = "Error Getting Users. " + trap.description();
}

bool Load_NT_Domain(Session& session) {
  base::Trap trap(session::is_debug(session));
  session::Form1& form = session.form1;
  form.TreeView1.clear();
  session.multi_user.ListView2.clear();
  session.groups.Members.clear();
  session.groups.NotMembers.clear();
  session.groups.ListView1.clear();
  trap([&] { session.DomainContainer = session.platform.directory.GetObject(winnt_path(session)); });
  if (trap.number() != 0)
    return false;

  controls::TreeNode& root = form.TreeView1.add(nullptr, std::string(kNtRoot), session.DomainName, "DOMAIN");
  form.TreeView1.select(&root);
  session.form1.TreeView1.set_expanded(root, true);
  form.StatusBar1.panel1 = "Retrieving Users...";
  session.Error_Status_Text = "Error Getting Users. " + base::to_text(session.UserCount);
  base::Trap walk(session::is_debug(session));
  walk([&] {
    const controls::DrawingOff off(form.TreeView1);
    const std::vector<std::string> users{"User"};
    session.DomainContainer->enumerate(users, [&](const ObjectPtr& user) {
      take_user(session, trap, root, user->Name());
      return true;
    });
  });

  form.ListView5.clear();
  form.ListView3.clear();
  session.multi_user.ListView1.clear();
  session.multi_user.ListView3.clear();
  form.StatusBar1.panel1 = "Retrieving Groups...";
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
