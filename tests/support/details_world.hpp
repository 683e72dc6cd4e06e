#pragma once

#include <fstream>
#include <sstream>

#include "controls/tree_view.hpp"
#include "directory/tree/tree.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "support/lab_session.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {

/// Adds an organizational unit to a lab of Active Directory.
inline void add_unit(LabSession& world, const std::string& name,
                     const std::string& above = "DC=twk,DC=test") {
  world.services.directory.GetObject("LDAP://twk.test/" + above)
      ->Create("organizationalUnit", "OU=" + platform::escape_dn_value(name))
      ->SetInfo();
}

/// Adds a user to a unit of such a lab.
inline void add_user(LabSession& world, const std::string& name, const std::string& account,
                     std::string_view above = kNewStarters) {
  const platform::ObjectPtr user =
      store(world.services.directory.GetObject("LDAP://twk.test/" + std::string(above))
                ->Create("user", "CN=" + platform::escape_dn_value(name)),
            {{"samAccountName", account}});
}

/// Adds the account "jo" to a lab, a member of "Staff", before its session starts.
inline void add_jo(LabSession& world) {
  const platform::ObjectPtr user = world.make_user("jo", "Jo Smith");
  if (!world.is_nt()) {
    user->Put("userPrincipalName", "jo@twk.test");
    user->Put("FirstName", "Jo");
  }
  store(user, {{"FullName", "Jo Smith"}, {"Description", "Clerk"}});
  world.group("Staff")->Add(user->ADsPath());
}

inline controls::TreeNode& node_of_jo(LabSession& world) {
  controls::TreeView& tree = world.session.form1.TreeView1;
  if (!world.is_nt())
    directory::TreeView1_Expand(world.session, *tree.find(kNewStarters));
  return *tree.find(world.is_nt() ? "jo" : "LDAP://twk.test/CN=Jo Smith," + std::string(kNewStarters));
}

/// Gives the account a value that only the directory itself sets.
inline void journal_jo(LabSession& world, const std::string& attribute, const std::string& value) {
  const std::string path = (world.folder.path() / "domain.journal.ldif").string();
  std::stringstream journal;
  journal << std::ifstream(path).rdbuf();
  const std::string text = journal.str();
  const std::size_t start = text.find(world.is_nt() ? "dn: CN=jo," : "dn: CN=Jo Smith,");
  ASSERT_NE(start, std::string::npos);
  std::ofstream(path, std::ios::app) << text.substr(start, text.find('\n', start) - start)
                                     << "\nchangetype: modify\nreplace: " << attribute << "\n"
                                     << attribute << ": " << value << "\n-\n# end\n\n";
}

/// Locks the account out, as too many wrong passwords do.
inline void lock_jo(LabSession& world) {
  journal_jo(world, "lockoutTime", "133000000000000000");
}

}  // namespace twk::test
