#include "lifecycle/move/move_user.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/command_text.hpp"
#include "directory/operations.hpp"
#include "format/filling.hpp"
#include "lifecycle/account/account_log.hpp"
#include "lifecycle/account/account_paths.hpp"
#include "lifecycle/account/consent.hpp"
#include "lifecycle/move/move_run.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"
#include "session/log_tab.hpp"
#include "session/multi_user.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"
#include "stores/template_tab.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

int chosen_data_mode(const Session& session) {
  switch (session.multi_user.UserData.index) {
    case 0:
      return static_cast<int>(FileWork::kMove);
    case 1:
      return static_cast<int>(FileWork::kCopy);
    default:
      return 0;
  }
}

void load_records(MoveRun& run) {
  Session& session = run.session;
  prepare_failure(session, "Error Moving User...", "Error reading the template and the site");
  stores::require_template(session, session.multi_user.Multi_Template.text.get());
  stores::require_site(session, session.multi_user.Multi_Site.text.get());
  run.server = base::trim(session.form1.NTSERVER.text.get());
}

void bind_user(MoveRun& run) {
  Session& session = run.session;
  prepare_failure(session, "Error Getting " + run.key + " details.",
                  "Error Getting Users Details, Check PDC/Network Connection");
  run.path = session::is_active_directory(session) ? run.key : directory::winnt_path(session, run.key);
  run.user = session.platform.directory.GetObject(run.path);
}

MoveStep look_at_old_folders(MoveRun& run) {
  if (run.DataMode == 0)
    return MoveStep::kGoOn;
  const platform::User user(run.user);
  run.home.old_path = base::trim(user.HomeDirectory());
  run.profile.old_path = base::trim(user.Profile());
  return check_old_folders(run);
}

void take_account_name(MoveRun& run) {
  if (!session::is_active_directory(run.session))
    return;
  run.session.log.line("Getting SamAccountName");
  run.key = run.user->Get("SamAccountName").text();
}

void change_account(MoveRun& run) {
  Session& session = run.session;
  const session::Form1& form = session.form1;
  session.multi_user.Label3.caption = std::string("Changing User Settings");
  prepare_failure(session, "Error Setting User Details, Can't find Domain PDC..",
                  "Error Setting User Details, Can't find Domain PDC..");
  platform::User user(run.user);
  if (!run.home.new_unc.empty())
    user.put_HomeDirectory(run.home.new_unc);
  const std::string drive(base::trim(form.Home_Drive_letter.text.get()));
  if (!drive.empty())
    user.Put(session::is_active_directory(session) ? "HomeDrive" : "HomeDirDrive", drive);
  if (session.multi_user.Change_Logon.on()) {
    const std::string script(base::trim(form.logon.text.get()));
    if (!script.empty())
      user.put_LoginScript(script);
    session.log.line("Changed Logon Script");
  }
  if (!run.profile.new_unc.empty())
    user.put_Profile(run.profile.full_path.empty() ? run.profile.new_unc : run.profile.full_path);
  user.SetInfo();
  const auto use = folder_use(session);
  if (!run.home.new_unc.empty())
    use->account_has(run.key, kHomePath, run.home.new_unc);
  if (!run.profile.new_unc.empty())
    use->account_has(run.key, kProfilePath, run.profile.new_unc);
}

/// An existing member, perhaps added by an interrupted move, is not a failure.
void join_group(MoveRun& run, const std::string& group, std::string_view name) {
  base::Trap trap;
  trap([&] { run.session.platform.directory.GetObject(group)->Add(run.path); });
  if (trap.number() != 0 && trap.number() != platform::ads_error::kObjectExists &&
      trap.number() != platform::ads_error::kMemberInGroup)
    warn(run, "Not added to the group " + std::string(base::trim(name)) + ": " +
                  base::in_words(trap.number(), trap.description()));
}

void join_groups(MoveRun& run) {
  Session& session = run.session;
  session.multi_user.Label3.caption = std::string("Adding User to Groups");
  if (session.multi_user.Add_to_Groups.on()) {
    const bool active_directory = session::is_active_directory(session);
    const controls::ListView& groups = session.form1.ListView6;
    for (std::size_t i = 0; i < groups.size(); ++i) {
      const controls::ListRow& row = groups.at(i);
      const std::string group =
          active_directory ? row.key : directory::winnt_path(session, base::trim(row.text));
      join_group(run, group, row.text);
    }
    session.log.line("Added user to Groups");
  }
  session.log.line("Change User Manager Settings");
}

std::vector<std::string> move_command(MoveRun& run) {
  Session& session = run.session;
  const session::Form1& form = session.form1;
  const std::pair<std::string_view, std::string> tags[] = {
      {"%Domain%", session.DomainName}, {"%NTServer%", form.NTSERVER.text}, {"%UserName%", run.key},
      {"%Server%", form.NTSERVER.text}, {"%EXServer%", form.EXSERVER.text}, {"%EXSite%", form.EXSite.text},
      {"%EXorg%", form.EXorg.text}};
  return creation::fill_words(session, form.Move_Script.text.get(), [&](std::string word) {
    format::Filling text(session, std::move(word));
    for (const auto& [tag, value] : tags)
      text.tag(tag, base::trim(value));
    return text.names(form.strFirst.text.get(), form.StrMiddle.text.get(), form.strLast.text.get())
        .variables()
        .take();
  });
}

void run_script(MoveRun& run) {
  Session& session = run.session;
  const std::string& script = session.form1.Move_Script.text;
  if (!session.multi_user.Run_CMD.on() || base::trim(script).empty())
    return;
  prepare_failure(session, "Error Running File: " + script, "Error Running File: " + script);
  session.multi_user.Label3.caption = std::string("Running Command");
  run.warned |= !run_account_command(session, "Running Script (Hidden Mode): ", move_command(run), 1,
                                     session.Error_Status_Text);
}

MoveOutcome tell_moved(MoveRun& run) {
  Session& session = run.session;
  session.log.line("User Moved Completed");
  session.log.close();
  session::LOG_TAB(session, run.warned ? session::kYellow : session::kGreen, " " + run.key + " Moved");
  session.multi_user.Label3.caption = "User " + run.key + " has been moved.";
  return run.warned ? MoveOutcome::kMovedWithWarnings : MoveOutcome::kMoved;
}

/// A person who said No knows that the user was not moved.
MoveOutcome tell_not_moved(MoveRun& run, MoveStep why) {
  Session& session = run.session;
  if (why == MoveStep::kFailed) {
    const std::string text = "User " + run.key + " was not moved";
    session.log.line(text);
    session::LOG_TAB(session, session::kRed, " " + text);
    session.multi_user.Label3.caption = text;
  }
  session.log.close();
  return MoveOutcome::kNotMoved;
}

/// The steps until the account has its new paths.
MoveStep place_user(MoveRun& run) {
  bind_user(run);
  MoveStep step = look_at_old_folders(run);
  if (step != MoveStep::kGoOn)
    return step;
  take_account_name(run);
  resolve_new_folders(run);
  for (MoveStep (*const next)(MoveRun&) : {check_move, make_new_folders, make_new_shares}) {
    step = next(run);
    if (step != MoveStep::kGoOn)
      return step;
  }
  set_new_permissions(run);
  if (run.DataMode != 0)
    step = move_data(run);
  if (step == MoveStep::kGoOn)
    change_account(run);
  return step;
}

MoveOutcome move_steps(MoveRun& run) {
  const MoveStep step = place_user(run);
  if (step != MoveStep::kGoOn)
    return tell_not_moved(run, step);
  join_groups(run);
  run_script(run);
  return tell_moved(run);
}

}  // namespace

void warn(MoveRun& run, std::string_view text) {
  run.session.log.reason(text);
  run.warned = true;
}

MoveStep refuse(MoveRun& run, const std::string& why) {
  run.session.log.reason(why);
  if (run.session.runs.rehearse)
    run.session.runs.rehearse("Refused: " + why);
  return MoveStep::kFailed;
}

bool wants_new_paths(MoveRun& run, const std::string& why) {
  Session& session = run.session;
  if (!run.new_paths_anyway) {
    run.new_paths_anyway = has_consent(
        session, session.runs.new_paths_anyway,
        why + "\r\n\r\nGive " + run.key + " the new paths anyway? The data stays where it is.", "Move Users");
  }
  run.warned |= *run.new_paths_anyway;
  return *run.new_paths_anyway;
}

MoveStep refuse_unless_wanted(MoveRun& run, const std::string& why) {
  if (!wants_new_paths(run, why))
    return refuse(run, why);
  run.session.log.reason(why);
  return MoveStep::kGoOn;
}

MoveOutcome Move_One_User(Session& session, std::string_view UserKey) {
  session.multi_user.Label3.caption = std::string("Moving User...");
  const KnownFolders known(session);
  MoveRun run{.session = session,
              .key = std::string(UserKey),
              .user = {},
              .path = {},
              .server = {},
              .DataMode = chosen_data_mode(session),
              .home = {.what = kHomePath},
              .profile = {.what = kProfilePath}};
  if (session::is_active_directory(session) && !base::starts_with_fold(run.key, "LDAP://"))
    run.key = "LDAP://" + run.key;
  session.log.begin_block();
  session.log.line("Moving User: " + run.key);
  MoveOutcome outcome = MoveOutcome::kNotMoved;
  try {
    load_records(run);
    outcome = move_steps(run);
  } catch (const base::RuntimeError& failure) {
    report_stopped(session, failure);
  }
  claim_new_places(run, false);
  if (outcome != MoveOutcome::kNotMoved) {
    stores::Clear_TT(session);
    stores::Clear_Site(session);
  }
  return outcome;
}

}  // namespace twk::lifecycle
