#include "windows/tree/tree_drag.hpp"

#include "controls/tree_view.hpp"
#include "directory/tree/change_ou.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {

using controls::TreeNode;

bool begin_drag(Desktop& session, const TreeNode& node) {
  if (!session::is_active_directory(session) || node.image != "USER")
    return false;
  session.form1.DragNode = node.key;
  session.form1.DropHighlight = std::string();
  return true;
}

void drag_over(Desktop& session, const TreeNode* node) {
  if (session.form1.DragNode.empty())
    return;
  const bool ou = node != nullptr && node->image == "OU";
  session.form1.DropHighlight = ou ? node->key : std::string();
}

void cancel_drag(Desktop& session) {
  session.form1.DragNode.clear();
  session.form1.DropHighlight = std::string();
}

bool drop(Desktop& session) {
  Form1& form = session.form1;
  TreeNode* const node = form.TreeView1.find(form.DragNode);
  TreeNode* const target = form.TreeView1.find(form.DropHighlight.get());
  cancel_drag(session);
  if (node == nullptr || target == nullptr)
    return false;
  const bool shown = form.USERID_W2K.text.get() == node->key;
  const Hourglass hourglass(form);
  const auto key = directory::change_ou(session, *node, *target);
  // The details tab keeps showing the user.
  if (key && shown)
    form.USERID_W2K.text = *key;
  return key.has_value();
}

}  // namespace twk::windows
