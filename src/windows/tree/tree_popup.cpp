#include "windows/tree/tree_popup.hpp"

#include "controls/tree_view.hpp"
#include "directory/tree/create_ou.hpp"
#include "session/loaded_domain.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

void POPUP(Desktop& session, controls::TreeNode& node) {
  Form1& form = session.form1;
  session.domain.tree.select(&node);
  const bool user = node.image == "USER";
  for (const int index : {0, 2, 4, 5, 6, 8, 9, 13, 14})
    form.mnupopup.at(static_cast<std::size_t>(index)).enabled = user;
  form.mnupopup[10].enabled = directory::may_create_ou(session, node);
}

std::string shown_path(const std::string& path) {
  constexpr std::string_view kProvider = "LDAP://";
  if (!path.starts_with(kProvider))
    return path;
  const std::string rest = path.substr(kProvider.size());
  const std::size_t slash = rest.find('/');
  return slash < rest.find('=') ? rest.substr(slash + 1) : rest;
}

}  // namespace twk::windows
