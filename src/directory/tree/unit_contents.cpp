#include "directory/tree/unit_contents.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/account_marks.hpp"
#include "directory/load_options.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using controls::TreeNode;
using platform::Buttons;
using platform::Icon;
using session::Session;

std::string query_base(const Session& session, const LoadOptions& options, std::string_view unit) {
  return "<" + options.Search + session.DomainName + "/" + std::string(unit);
}

void add_user(Session& session, const std::string& found_path, const std::string& path,
              const std::string& shown, std::uint8_t marks) {
  const std::string parent = parent_of_user(found_path);
  base::Trap trap;
  if (trap([&] { session.domain.tree.add_under(parent, path, shown, "USER").marks = marks; }))
    return;
  session.platform.dialogs.MsgBox("error adding user to tree", Buttons::kOk, Icon::kNone, "");
  if (!session::logs_load(session))
    return;
  session.log.line("Error Number:" + base::to_text(trap.number()));
  session.log.line("Adding:  " + path);
  session.log.line("To OU:   " + parent);
}

/// The condition that an entry has the name of a distinguished name.
std::string name_condition(std::string_view distinguished_name) {
  const std::string name = platform::plain_name(relative_name(distinguished_name));
  return "(name=" + platform::escape_filter_value(name) + ")";
}

}  // namespace

bool add_units(Session& session, std::string_view unit, std::string_view condition) {
  const LoadOptions options = read_load_options(session);
  std::unique_ptr<platform::Recordset> rows;
  base::Trap trap;
  trap([&] {
    rows = run_query(session,
                     query_base(session, options, unit) +
                         ">;(&(objectCategory=OrganizationalUnit)(objectClass=OrganizationalUnit)" +
                         std::string(condition) + ");distinguishedName,name;onelevel",
                     query_options(options));
  });
  if (trap.number() != 0) {
    session.platform.dialogs.MsgBox("Error getting Domain Data: " + base::to_text(trap.number()),
                                    Buttons::kOk, Icon::kNone, "");
    return false;
  }
  controls::TreeView& tree = session.domain.tree;
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string key = rows->field(0).text();
    TreeNode& node = tree.add_under(parent_of_ou(key), key, rows->field(1).text(), "OU");
    tree.add(&node, {}, std::string(kDummyNode), {});
  }
  return true;
}

void add_users(Session& session, std::string_view unit, std::string_view condition,
               const std::function<bool()>& added) {
  const LoadOptions options = read_load_options(session);
  const bool by_name = shows_names(session);
  platform::QueryOptions properties = query_options(options);
  if (!by_name && options.Sort)
    properties.sort_on = "DisplayName";
  const auto rows =
      run_query(session,
                query_base(session, options, unit) + ">;(&(objectCategory=Person)(objectClass=User)" +
                    std::string(condition) + ");adsPath," + (by_name ? "name" : "DisplayName") + ",name," +
                    std::string(AccountMarks::kAttributes) + ";onelevel",
                properties);
  AccountMarks marks(session);
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string found_path = rows->field(0).text();
    const std::string path = rewrite_path(options.Search, found_path);
    const platform::Value shown = rows->field(1);
    if (condition.empty() || session.domain.tree.find(path) == nullptr)
      add_user(session, found_path, path, shown.is_empty() ? rows->field(2).text() : shown.text(),
               marks.of(*rows, 3));
    if (!added())
      return rows->MoveLast();
  }
}

void look_up_unit(Session& session, std::string_view unit, std::string_view name) {
  constexpr std::string_view kControllers = "OU=Domain Controllers";
  const bool left_out = base::equals_fold(relative_name(name), kControllers);
  if (session.domain.looked_up.units && !left_out && session.domain.tree.find(name) == nullptr)
    add_units(session, unit, name_condition(name));
}

void look_up_user(Session& session, std::string_view unit, std::string_view name) {
  if (session.domain.looked_up.units)
    add_users(session, unit, name_condition(name), [] { return true; });
}

}  // namespace twk::directory
