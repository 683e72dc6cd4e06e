#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/load_options.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "directory/user_columns.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using session::Session;

constexpr std::int32_t kUsersPerDot = 1000;
constexpr std::int32_t kUsersPerCount = 150;

/// Whose rows show more than a name are read with it.
std::string users_query(bool by_name, bool with_state, std::string_view base, std::string_view scope) {
  const std::string shown = by_name ? "name" : "DisplayName";
  const std::string state = with_state ? "," + UserColumns::attributes() : "";
  return "<" + std::string(base) + ">;(&(objectCategory=Person)(objectClass=User));adsPath," + shown +
         ",name" + state + ";" + std::string(scope);
}

/// The first field of the columns in such a query.
constexpr std::size_t kColumns = 3;

void show_progress(Session& session) {
  if (session.UserCount % kUsersPerDot == 0) {
    session.domain.loading = std::string(static_cast<std::size_t>(session.UserCount / kUsersPerDot), '.') +
                             "Retrieving Users Please wait";
  }
  if (session.UserCount % kUsersPerCount == 0) {
    session.status.panel1 = base::to_text(session.UserCount) + " Users.";
    session.platform.dialogs.DoEvents();
  }
}

}  // namespace

void show_all_users(Session& session, UserList which, controls::StatusBar& status) {
  const platform::Answer answer = session.platform.dialogs.MsgBox(
      "This could take some time if there are 000's of users\r\n\r\n                      Continue ?",
      platform::Buttons::kYesNo, platform::Icon::kQuestion, "Show all users");
  if (answer != platform::Answer::kYes)
    return;
  const bool to_multi_user = which == UserList::kSelection;
  status.panel1 = "Retrieving users please wait...";
  session.log.open();
  if (to_multi_user) {
    session.domain.users.clear();
  } else {
    session.domain.NotMembers.clear();
    session.domain.Members.clear();
  }
  base::Trap trap;
  trap([&] { Load_AD_Users(session, "LDAP://" + session.DomainName, true, "subtree", "", which); });
  if (trap.number() == 0) {
    status.panel1 = "Ready.";
  } else {
    status.panel1 = "Error Getting Users. " + base::to_text(session.UserCount);
    session.log.line("Error Number: " + base::to_text(trap.number()) + " " + trap.description());
  }
  session.log.close();
}

bool Load_AD_Users(Session& session, std::string_view base, bool skip_tree, std::string_view scope,
                   std::string_view search_prefix, UserList which) {
  const bool by_name = shows_names(session);
  platform::QueryOptions properties;
  properties.cache_results = false;
  properties.page_size = 1000;
  session.UserCount = 0;
  session.status.panel1 = "Retrieving Users...";
  if (session::logs_load(session)) {
    session.log.line("DNName: " + std::string(by_name ? "True" : "False"));
    session.log.line("Running command to get users for " + session.DomainName);
  }
  base::Trap trap;
  const bool to_multi_user = which == UserList::kSelection;
  controls::ListView& list = to_multi_user ? session.domain.users : session.domain.NotMembers;
  const bool all_in_tree = session.LoadAllUsersFlag || (!session.ManagedOU.empty() && session.ManageSubOUs);
  const bool with_state = to_multi_user || (!skip_tree && all_in_tree);
  const auto rows = run_query(session, users_query(by_name, with_state, base, scope), properties);
  UserColumns reader(session);
  const controls::DrawingOff off(list);
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string found_path = rows->field(0).text();
    const std::string parent = parent_of_user(found_path);
    const std::string path = rewrite_path(search_prefix, found_path);
    const std::string name = rows->field(2).text();
    const std::string shown = rows->field(1).is_empty() ? name : rows->field(1).text();
    const UserColumns::Row state = with_state ? reader.of(*rows, kColumns, parent) : UserColumns::Row();
    const bool in_tree = session.LoadAllUsersFlag || (parent == session.ManagedOU && session.ManageSubOUs);
    if (!skip_tree && in_tree) {
      // Many users may be below units that are not in the tree: looked up, since an error takes its time.
      controls::TreeNode* const above = session.domain.tree.find(parent);
      trap([&] {
        if (above != nullptr)
          session.domain.tree.add(above, path, shown, "USER").marks = state.marks;
      });
      const std::uint32_t number = above == nullptr ? base::error::kParentNotFound : trap.number();
      if (number != 0 && session::logs_load(session)) {
        session.log.line("Error Number:" + base::to_text(number));
        session.log.line("Adding:  " + path);
        session.log.line("To OU:   " + parent);
      }
    }
    trap([&] {
      if (to_multi_user)
        list.add(path, shown, "USER", state.texts).marks = state.marks;
      else
        list.add(path, name, "USER");
    });
    ++session.UserCount;
    show_progress(session);
  }
  session.status.panel1 = "Ready.";
  return true;
}

}  // namespace twk::directory
