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

}  // namespace twk::windows
