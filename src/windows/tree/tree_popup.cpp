#include "windows/tree/tree_popup.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "directory/tree/create_ou.hpp"
#include "session/loaded_domain.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/tree_commands.hpp"

namespace twk::windows {
namespace {

void show_commands(Desktop& session, const controls::TreeNode& node) {
  TreeCommands& commands = session.tree_commands;
  const bool active_directory = session::is_active_directory(session);
  const bool user = node.image == "USER";
  const bool unit = active_directory && node.image == "OU";
  const bool own_unit = unit && base::starts_with_fold(node.key, "OU=");
  const std::size_t users = commands.chosen.size();
  const std::string count = users > 1 ? " " + std::to_string(users) + " Users" : "";
  commands.Enable.caption = "&Enable" + count;
  commands.Disable.caption = "D&isable" + count;
  commands.Unlock.caption = "&Unlock" + count;
  commands.Reset.caption = "Reset Pass&words of" + count;
  commands.Move_To.caption = "M&ove" + count + " to…";
  for (controls::MenuItem* const entry : {&commands.Enable, &commands.Disable, &commands.Unlock})
    entry->visible = user;
  commands.Reset.visible = user && users > 1;
  commands.Move_To.visible = user && active_directory;
  for (controls::MenuItem* const entry : {&commands.New_Here, &commands.Import_Here, &commands.Find_Here})
    entry->visible = unit;
  for (controls::MenuItem* const entry : {&commands.Rename_OU, &commands.Move_OU, &commands.Delete_OU})
    entry->visible = own_unit;
}

}  // namespace

void choose_users(Desktop& session, const controls::TreeNode& node) {
  std::vector<std::string>& chosen = session.tree_commands.chosen;
  if (std::ranges::find(chosen, node.key) == chosen.end())
    chosen = {node.key};
  std::erase_if(chosen, [&](const std::string& key) {
    const controls::TreeNode* const one = session.domain.tree.find(key);
    return one == nullptr || one->image != "USER";
  });
}

void POPUP(Desktop& session, controls::TreeNode& node) {
  Form1& form = session.form1;
  session.domain.tree.select(&node);
  const bool user = node.image == "USER";
  for (const int index : {0, 2, 4, 5, 6, 8, 9, 13, 14})
    form.mnupopup.at(static_cast<std::size_t>(index)).enabled = user;
  for (const int index : {0, 2, 4, 5, 6, 8, 9})
    form.mnupopup.at(static_cast<std::size_t>(index)).visible = user;
  form.mnupopup[10].enabled = directory::may_create_ou(session, node);
  choose_users(session, node);
  show_commands(session, node);
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
