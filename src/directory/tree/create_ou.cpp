#include "directory/tree/create_ou.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/names.hpp"
#include "directory/refusal.hpp"
#include "directory/tree/tree.hpp"
#include "directory/units.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"

namespace twk::directory {
namespace {

using controls::TreeNode;
using session::Session;

constexpr std::string_view kTitle = "Create OU";

/// Why the place is unsuitable; empty when it is fine.
std::string objection(const Session& session, const TreeNode& above) {
  if (!session::is_active_directory(session))
    return "A WinNT domain has no organizational units.";
  if (!session.ManageSubOUs)
    return "An OU cannot be created while only a single OU is managed.";
  if (above.image == "USER" || above.key.empty() || base::starts_with_fold(above.key, "CN="))
    return "An OU can be created only under an OU or the domain.";
  return {};
}

/// Why the place or the name is unsuitable; empty when both are fine.
std::string objection(const Session& session, const TreeNode& above, std::string_view name) {
  if (std::string of_place = objection(session, above); !of_place.empty())
    return of_place;
  return unit_name_fault(name);
}

/// Makes the unit; returns its distinguished name.
std::string make_unit(Session& session, const TreeNode& above, std::string_view name) {
  const bool is_domain = above.image == "DOMAIN";
  const std::string relative_name = "OU=" + platform::escape_dn_value(name);
  const platform::ObjectPtr unit =
      session.platform.directory.GetObject("LDAP://" + (is_domain ? session.DomainName : above.key))
          ->Create("organizationalUnit", relative_name);
  unit->SetInfo();
  base::Trap trap;
  std::string key;
  trap([&] { key = unit->Get("distinguishedName").text(); });
  return key.empty() ? relative_name + "," + above.key : key;
}

void show_unit(Session& session, TreeNode& above, const std::string& key, const std::string& name) {
  controls::TreeView& tree = session.domain.tree;
  base::Trap trap;
  if (is_read(tree, above))
    trap([&] {
      TreeNode& node = tree.add(&above, key, name, "OU");
      node.sorted = session::read_switch(session, session::kPreferences, "Sorted");
      if (!session.LoadAllUsersFlag)
        tree.add(&node, {}, std::string(kDummyNode), {});
    });
  TreeNode* const node = tree.find(key);
  if (node != nullptr) {
    tree.select(node);
    tree.ensure_visible(*node);
  }
  if (!session.LoadAllUsersFlag)
    trap([&] { session.domain.units.add(key, name, "OU"); });
}

}  // namespace

void Create_OU(Session& session) {
  TreeNode* const above = session.domain.tree.selected();
  if (above == nullptr)
    return;
  const std::string typed = session.platform.dialogs.InputBox("Enter New OU Name", kTitle);
  if (!typed.empty())
    create_ou(session, *above, typed);
}

bool may_create_ou(const Session& session, const TreeNode& above) {
  return objection(session, above).empty();
}

bool create_ou(Session& session, TreeNode& above, std::string_view typed) {
  const std::string name(base::trim(typed));
  const std::string refused = objection(session, above, name);
  if (!refused.empty()) {
    tell_refusal(session, kTitle, refused);
    return false;
  }
  // Read first: otherwise a unit that already exists in the directory would be added to the tree twice.
  TreeView1_Expand(session, above);
  std::string key;
  base::Trap trap;
  trap([&] { key = make_unit(session, above, name); });
  if (trap.number() != 0) {
    tell_refusal(session, kTitle, "Cannot create the OU " + name, trap);
    return false;
  }
  show_unit(session, above, key, name);
  session::LOG_TAB(session, session::kGreen, name + " Created OU");
  return true;
}

}  // namespace twk::directory
