#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/load_options.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/loaded_domain.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"
#include "session/windows.hpp"

namespace twk::directory {
namespace {

using session::Session;

constexpr std::int32_t kUsersPerDot = 1000;
constexpr std::int32_t kUsersPerCount = 150;

std::string users_query(const Session& session, std::string_view base, std::string_view scope) {
  const std::string_view shown = session.form1.DNName.value ? "name" : "DisplayName";
  return "<" + std::string(base) + ">;(&(objectCategory=Person)(objectClass=User));adsPath," +
         std::string(shown) + ",name;" + std::string(scope);
}

void show_progress(Session& session) {
  if (session.splash.visible && session.UserCount % kUsersPerDot == 0) {
    session.splash.Splash_TxT.caption =
        std::string(static_cast<std::size_t>(session.UserCount / kUsersPerDot), '.') +
        "Retrieving Users Please wait";
  }
  if (session.UserCount % kUsersPerCount == 0) {
    session.status.panel1 = base::to_text(session.UserCount) + " Users.";
    session.platform.dialogs.DoEvents();
  }
}

void show_all_users(Session& session, controls::ListView& list, bool to_multi_user) {
  const platform::Answer answer = session.platform.dialogs.MsgBox(
      "This could take some time if there are 000's of users\r\n\r\n                      Continue ?",
      platform::Buttons::kYesNo, platform::Icon::kQuestion, "Show all users");
  if (answer != platform::Answer::kYes)
    return;
  controls::StatusBar& status = to_multi_user ? session.status : session.groups.StatusBar1;
  status.panel1 = "Retrieving users please wait...";
  session.log.open();
  list.clear();
  if (!to_multi_user)
    session.domain.Members.clear();
  base::Trap trap;
  trap([&] { Load_AD_Users(session, "LDAP://" + session.DomainName, true, "subtree", "", to_multi_user); });
  if (trap.number() == 0) {
    status.panel1 = "Ready.";
  } else {
    status.panel1 = "Error Getting Users. " + base::to_text(session.UserCount);
    session.log.line("Error Number: " + base::to_text(trap.number()) + " " + trap.description());
  }
  session.log.close();
}

}  // namespace

bool Load_AD_Users(Session& session, std::string_view base, bool skip_tree, std::string_view scope,
                   std::string_view search_prefix, bool to_multi_user) {
  session::Form1& form = session.form1;
  platform::QueryOptions properties;
  properties.cache_results = false;
  properties.page_size = 1000;
  session.UserCount = 0;
  session.status.panel1 = "Retrieving Users...";
  if (session::logs_load(session)) {
    session.log.line("DNName: " + std::string(form.DNName.value ? "True" : "False"));
    session.log.line("Running command to get users for " + session.DomainName);
  }
  base::Trap trap;
  controls::ListView& list = to_multi_user ? session.domain.users : session.domain.NotMembers;
  const auto rows = run_query(session, users_query(session, base, scope), properties);
  const controls::DrawingOff off(list);
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string found_path = rows->field(0).text();
    const std::string parent = parent_of_user(found_path);
    const std::string path = rewrite_path(search_prefix, found_path);
    const std::string name = rows->field(2).text();
    const std::string shown = rows->field(1).is_empty() ? name : rows->field(1).text();
    const bool in_tree = session.LoadAllUsersFlag || (parent == session.ManagedOU && session.ManageSubOUs);
    if (!skip_tree && in_tree) {
      trap([&] { session.domain.tree.add_under(parent, path, shown, "USER"); });
      if (trap.number() != 0 && session::logs_load(session)) {
        session.log.line("Error Number:" + base::to_text(trap.number()));
        session.log.line("Adding:  " + path);
        session.log.line("To OU:   " + parent);
      }
    }
    trap([&] { list.add(path, to_multi_user ? shown : name, "USER"); });
    ++session.UserCount;
    show_progress(session);
  }
  session.status.panel1 = "Ready.";
  return true;
}

void btn_showGrpusers_Click(Session& session) {
  show_all_users(session, session.domain.NotMembers, false);
}

void btn_Showusers_Click(Session& session) {
  show_all_users(session, session.domain.users, true);
}

}  // namespace twk::directory
