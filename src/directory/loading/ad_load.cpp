#include "directory/loading/ad_load.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/load_options.hpp"
#include "directory/loading/orphans.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"

namespace twk::directory {
namespace {

using controls::TreeNode;
using session::Session;

/// What one load determines and passes from step to step.
struct Load {
  explicit Load(Session& owner)
      : session(owner),
        options(read_load_options(owner)),
        domain_name(domain_distinguished_name(owner.DomainName)),
        sorted(session::read_switch(owner, session::kPreferences, "Sorted")),
        trap(base::upper(owner.command_line) == "/DEBUG1") {}

  Session& session;
  LoadOptions options;
  std::string domain_name;  ///< distinguished name of the domain
  bool sorted;              ///< units by their names, as the preferences say
  std::string base;
  std::string user_scope;
  bool one_level_ous = true;
  base::Trap trap;
};

void begin_log(Load& load) {
  Session& session = load.session;
  session::ActivityLog& log = session.log;
  log.open();
  log.line(session::kAsterisks);
  log.line(session::date_and_time(session));
  if (session::logs_load(session))
    log.line("App Version:" TWK_VERSION);
  log.line("User:" + session.platform.environment.variable("USERNAME"));
  if (session::logs_load(session))
    log.line("Start Loading Domain Data");
  log.line("Getting Domain names and OU's ");
  log.line("AD Name: " + session.DomainName);
  log.line("WinNT Domain Name: " + session.NTDomainName);
  log.line("DNS Server Name: " + session.DnsServerName);
  log.line("TWK using: " + load.options.Search);
  log.line("Load all users: " + std::string(session.LoadAllUsersFlag ? "True" : "False"));
}

void add_dummy(Session& session, TreeNode& node) {
  if (session.LoadAllUsersFlag)
    return;
  session.domain.tree.add(&node, {}, std::string(kDummyNode), {});
}

/// A limit may have been typed with other escapes and blanks than in its users' paths.
std::string spelled_by_directory(Session& session, const std::string& name) {
  std::string spelled;
  base::Trap missing;
  missing([&] {
    spelled = session.platform.directory.GetObject("LDAP://" + name)->Get("distinguishedName").text();
  });
  return spelled.empty() ? name : spelled;
}

void add_root(Load& load) {
  Session& session = load.session;
  controls::TreeView& tree = session.domain.tree;
  load.base = load.options.Search + session.DomainName;
  if (!session.ManagedOU.empty()) {
    session.ManagedOU = spelled_by_directory(session, session.ManagedOU);
    tree.add(nullptr, session.ManagedOU, ou_name(session.ManagedOU), "OU");
    load.base += "/" + session.ManagedOU;
    return;
  }
  TreeNode& root = tree.add(nullptr, load.domain_name, session.DomainName, "DOMAIN");
  add_dummy(session, tree.add(&root, "CN=Users," + load.domain_name, "Users", "OU"));
}

void choose_scopes(Load& load) {
  Session& session = load.session;
  load.user_scope = session.ManageSubOUs ? "subtree" : "onelevel";
  load.one_level_ous = !session.ManageSubOUs || !session.LoadAllUsersFlag;
  session.log.line("Managing OU: " + load.base + (session.ManageSubOUs ? " and sub OU's" : " only."));
  if (!session::logs_load(session))
    return;
  session.log.line("Async: " + std::string(load.options.Asynchronous ? "True" : "False"));
  session.log.line("Search Depth:" + std::string(load.one_level_ous ? "onelevel" : "subtree"));
}

TreeNode& add_ou(Session& session, std::string_view parent, const std::string& key, const std::string& name) {
  TreeNode& node = session.domain.tree.add_under(parent, key, name, "OU");
  add_dummy(session, node);
  return node;
}

void take_ou(Load& load, OrphanTable& orphans, const std::string& key, const std::string& name) {
  Session& session = load.session;
  if (name == "Domain Controllers" || load.user_scope == "onelevel")
    return;
  const std::string parent = parent_of_ou(key);
  if (load.one_level_ous) {
    load.trap([&] { session.domain.units.add(key, name, "OU"); });
    if (base::equals_fold(parent, load.domain_name))
      load.trap([&] { add_ou(session, parent, key, name); });
    return;
  }
  load.trap([&] { add_ou(session, parent, key, name).sorted = load.sorted; });
  if (load.trap.number() == 0)
    return;
  orphans.store(key, name);
  if (session::logs_load(session))
    session.log.line("Orphan  " + key);
}

/// False when the query failed, which a box reported.
bool load_ous(Load& load) {
  Session& session = load.session;
  if (session::logs_load(session))
    session.log.line("Retrieving OU's " + session::date_and_time(session));
  OrphanTable orphans;
  std::unique_ptr<platform::Recordset> rows;
  load.trap([&] {
    rows = run_query(session,
                     "<" + load.base +
                         ">;(&(objectCategory=OrganizationalUnit)(objectClass=OrganizationalUnit));"
                         "distinguishedName,name;" +
                         (load.one_level_ous ? "onelevel" : "subtree"),
                     query_options(load.options));
  });
  if (load.trap.number() != 0) {
    const std::string text = "Error getting Domain Data: " + base::to_text(load.trap.number());
    session.log.line(text + " " + load.trap.description());
    session.platform.dialogs.MsgBox(text, platform::Buttons::kOk, platform::Icon::kNone, "");
    return false;
  }
  if (session::logs_load(session)) {
    session.log.line("Command has run for Retrieving OU's " + session::date_and_time(session));
  }
  for (; !rows->at_eof(); rows->MoveNext())
    take_ou(load, orphans, rows->field(0).text(), rows->field(1).text());
  orphans.attach(session);
  return true;
}

void load_users(Load& load) {
  Session& session = load.session;
  if (load.options.SkipUsers) {
    session.log.line("Users not loaded");
    return;
  }
  session.domain.loading = std::string("Retrieving Users Please wait");
  load.trap([&] {
    Load_AD_Users(session, load.base, false, load.user_scope, load.options.Search, UserList::kMembers);
  });
}

void load_groups(Session& session) {
  session::LookedUp& looked_up = session.domain.looked_up;
  if (!looked_up.groups)
    return Load_AD_Groups(session);
  looked_up.asked_groups.clear();
  session.domain.template_choice.clear();
  session.domain.other_groups.clear();
}

void deselect_first(controls::ListView& list) {
  if (!list.empty())
    list.at(0).selected = false;
}

}  // namespace

bool Load_AD_Domain(Session& session) {
  session.LoadAllUsersFlag = read_load_options(session).LoadAllUsers;
  Load load(session);
  session.domain.tree.clear();
  session.domain.users.clear();
  session.domain.groups.clear();
  session.domain.units.clear();
  session.domain.all_groups.clear();
  session.domain.Members.clear();
  session.domain.NotMembers.clear();
  begin_log(load);
  const controls::DrawingOff tree_off(session.domain.tree);
  const controls::DrawingOff user_groups_off(session.domain.other_groups);
  const controls::DrawingOff template_groups_off(session.domain.template_choice);
  const controls::DrawingOff all_groups_off(session.domain.all_groups);
  const controls::DrawingOff selection_off(session.domain.groups);
  add_root(load);
  choose_scopes(load);
  const bool read = session.domain.looked_up.units || load_ous(load);
  if (read) {
    load_users(load);
    load_groups(session);
  }
  deselect_first(session.domain.users);
  deselect_first(session.domain.groups);
  deselect_first(session.domain.units);
  controls::TreeView& tree = session.domain.tree;
  tree.select(tree.first());
  if (tree.first() != nullptr)
    tree.set_expanded(*tree.first(), true);
  if (read && session::logs_load(session)) {
    session.log.line("Domain Data Loaded " + session::date_and_time(session));
  }
  session.log.close();
  return read && (session.GroupCount != 0 || session.UserCount != 0 || load.options.SkipUsers);
}

}  // namespace twk::directory
