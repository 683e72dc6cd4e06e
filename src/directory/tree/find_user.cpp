#include "directory/tree/find_user.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using controls::TreeNode;
using session::Session;

/// Between the "*" at both ends of the filter's value.
std::string filter_text(std::string_view typed) {
  std::string value;
  for (const std::string& part : base::split(typed, '*')) {
    if (!value.empty() && !part.empty())
      value += '*';
    value += platform::escape_filter_value(part);
  }
  return value;
}

}  // namespace

std::vector<FoundUser> find_users(Session& session, std::string_view text, std::string_view unit) {
  const TreeNode* const root = session.domain.tree.first();
  if (root == nullptr)
    base::raise(base::error::kOutOfBounds, "no domain is loaded");
  const auto rows = run_query(
      session, "<LDAP://" + session.DomainName + "/" + (unit.empty() ? root->key : std::string(unit)) +
                   ">;(&(objectCategory=Person)(objectClass=User)(cn=*" + filter_text(text) +
                   "*));adsPath,name," + UserColumns::attributes() + ";subtree");
  constexpr std::size_t kColumns = 2;
  UserColumns columns(session);
  std::vector<FoundUser> found;
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string key = rows->field(0).text();
    const std::string place(name_in_path(key));
    found.push_back({key, rows->field(1).text(), place, columns.of(*rows, kColumns, name_above(place))});
  }
  std::ranges::stable_sort(found, {}, [](const FoundUser& user) { return base::upper(user.name); });
  return found;
}

TreeNode* next_user_with(Session& session, const TreeNode* node, std::string_view text) {
  controls::TreeView& tree = session.domain.tree;
  const std::string wanted = base::upper(text);
  for (TreeNode* next = node == nullptr ? tree.first() : tree.next(*node); next != nullptr;
       next = tree.next(*next)) {
    if (next->image == "USER" && base::upper(next->text).find(wanted) != base::npos)
      return next;
  }
  return nullptr;
}

}  // namespace twk::directory
