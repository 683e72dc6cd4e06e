#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "creation/command_text.hpp"
#include "creation/shell.hpp"
#include "directory/account_marks.hpp"
#include "directory/names.hpp"
#include "directory/tree/listed_objects.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using session::Session;

/// What the tree shows for the new account.
std::string shown_name(CreationRun& run) {
  std::string name = run.tree_name.empty() ? run.FullName : run.tree_name;
  if (run.request.tree_shows_full_name && !run.stored_name.empty())
    return run.stored_name;
  if (run.request.tree_shows_full_name && run.CurrentUserObject) {
    base::Trap trap;
    if (!trap([&] { name = platform::User(run.CurrentUserObject).FullName(); }))
      name.clear();
  }
  return name.empty() ? run.SamName : name;
}

}  // namespace

void AddUserToViews(CreationRun& run) {
  Session& session = run.session;
  const auto show = session.import.rehearsed ? directory::foresee_new_user : directory::show_new_user;
  if (!session::is_active_directory(session)) {
    show(session, {std::string(directory::kNtRoot), directory::nt_user_key(run.UserId), run.UserId,
                   run.UserId, run.UserId});
    return;
  }
  const std::string key = "LDAP://" + session.DomainName + "/CN=" + run.CnName + "," + container_key(run);
  show(session, {container_key(run), key, key, shown_name(run), run.UserId});
  if (run.request.flags.disabled)
    directory::set_mark(session, key, directory::mark::kDisabled, true);
}

void RunCreateCommand(CreationRun& run) {
  Session& session = run.session;
  const NewUserRequest& request = run.request;
  const SiteValues& site = run.site;
  const std::vector<std::string> words = command_words(
      session, request.command.text, {run.SamName, request.FirstName, request.MiddleName, request.LastName},
      {site.server, site.mail_server, site.mail_site, site.mail_organization});
  const std::string command = shown_command(words);
  session.Error_Status_Text = "Error Running Command...";
  session.Error_Log_Text = "Error Running Command: " + command;
  run.stage = CreationStage::kCommand;
  log(run, "Running Script: " + command);
  const std::int16_t window_style = request.command.hidden ? 0 : 1;
  const platform::ProgramResult result =
      clsShell(session.platform.process).Spawn(words, request.command.wait, window_style);
  if (result.failure.empty())
    return run.view.stage(Stage::kCommand, StageState::kCompleted);
  const bool started = result.number != 0;
  run.view.stage(Stage::kCommand, started ? StageState::kWarned : StageState::kFailed);
  warn(run, session.Error_Log_Text, result.failure);
}

}  // namespace twk::creation
