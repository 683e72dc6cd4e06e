#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "creation/account_stage.hpp"
#include "creation/command_text.hpp"
#include "creation/shell.hpp"
#include "directory/load_options.hpp"
#include "directory/names.hpp"
#include "directory/tree.hpp"
#include "platform/adsi.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using session::Session;

/// What the tree shows for the new account.
std::string shown_name(CreationRun& run) {
  std::string name = run.tree_name.empty() ? run.FullName : run.tree_name;
  if (run.session.form1.DNName.value && run.CurrentUserObject) {
    base::Trap trap;
    if (!trap([&] { name = platform::User(run.CurrentUserObject).FullName(); }))
      name.clear();
  }
  return name.empty() ? run.SamName : name;
}

void add_to_lists(CreationRun& run, const std::string& key, const std::string& shown) {
  if (directory::read_load_options(run.session).SkipUsers)
    return;
  base::Trap trap;
  trap([&] { run.session.multi_user.ListView2.add(key, shown, "USER"); });
  trap([&] { run.session.groups.NotMembers.add(key, run.UserId, "USER"); });
}

void add_to_tree(CreationRun& run, std::string_view parent, const std::string& key,
                 const std::string& shown) {
  controls::TreeView& tree = run.session.form1.TreeView1;
  base::Trap trap;
  trap([&] {
    run.CreatedUserNode = &tree.add_under(parent, key, shown, "USER");
    tree.ensure_visible(*run.CreatedUserNode);
  });
}

/// False for a container whose users have not been read yet: its first expansion reads them.
bool container_is_read(const CreationRun& run) {
  controls::TreeView& tree = run.session.form1.TreeView1;
  const controls::TreeNode* const selected = tree.selected();
  return selected == nullptr || directory::is_read(tree, *selected);
}

}  // namespace

void AddUserToViews(CreationRun& run) {
  Session& session = run.session;
  if (!session::is_active_directory(session)) {
    add_to_tree(run, directory::kNtRoot, directory::nt_user_key(run.UserId), run.UserId);
    add_to_lists(run, run.UserId, run.UserId);
    return;
  }
  const std::string key = "LDAP://" + session.DomainName + "/CN=" + run.CnName + "," + container_key(run);
  const std::string shown = shown_name(run);
  if (container_is_read(run))
    add_to_tree(run, container_key(run), key, shown);
  add_to_lists(run, key, shown);
}

void RunCreateCommand(CreationRun& run) {
  Session& session = run.session;
  const session::Form1& form = session.form1;
  const NewUserRequest& request = run.request;
  const std::vector<std::string> words =
      command_words(session, form.Create_Script.text.get(),
                    {run.SamName, request.FirstName, request.MiddleName, request.LastName});
  const std::string command = shown_command(words);
  session.Error_Status_Text = "Error Running Command...";
  session.Error_Log_Text = "Error Running Command: " + command;
  run.stage = CreationStage::kCommand;
  log(run, "Running Script: " + command);
  const std::int16_t window_style = form.Run_Hidden[0].on() ? 0 : 1;
  const platform::ProgramResult result =
      clsShell(session.platform.process).Spawn(words, form.Wait_NEW[0].on(), window_style);
  controls::Label& light = session.form1.run;
  if (result.failure.empty())
    return complete(light);
  const bool started = result.number != 0;
  paint(light, started ? controls::kYellow : controls::kRed, started ? "Completed" : "Error");
  warn(run, session.Error_Log_Text, result.failure);
}

}  // namespace twk::creation
