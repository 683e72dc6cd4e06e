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
#include "session/log_tab.hpp"
#include "session/run_scope.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

void load_records(MoveRun& run) {
  Session& session = run.session;
  prepare_failure(session, "Error Moving User...", "Error reading the template and the site");
  stores::require_template(session, run.order.template_name);
  stores::require_site(session, run.order.site);
  run.target = creation::values_of(session.ActiveTemplate);
  run.site = creation::values_of(session.ActiveSite);
  run.server = run.site.server;
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
  session.run.view().step("Changing User Settings");
  prepare_failure(session, "Error Setting User Details, Can't find Domain PDC..",
                  "Error Setting User Details, Can't find Domain PDC..");
  platform::User user(run.user);
  if (!run.home.new_unc.empty())
    user.put_HomeDirectory(run.home.new_unc);
  const std::string& drive = run.target.HomeDrive;
  if (!drive.empty())
    user.Put(session::is_active_directory(session) ? "HomeDrive" : "HomeDirDrive", drive);
  if (run.order.change_logon) {
    if (!run.target.LogonScript.empty())
      user.put_LoginScript(run.target.LogonScript);
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
  session.run.view().step("Adding User to Groups");
  if (run.order.add_to_groups) {
    const bool active_directory = session::is_active_directory(session);
    for (const stores::TemplateGroup& group : stores::template_groups(session))
      join_group(run, active_directory ? group.key : directory::winnt_path(session, base::trim(group.name)),
                 group.name);
    session.log.line("Added user to Groups");
  }
  session.log.line("Change User Manager Settings");
}

std::vector<std::string> move_command(MoveRun& run) {
  Session& session = run.session;
  const creation::SiteValues& site = run.site;
  const std::pair<std::string_view, std::string_view> tags[] = {
      {"%Domain%", session.DomainName},   {"%NTServer%", site.server},      {"%UserName%", run.key},
      {"%Server%", site.server},          {"%EXServer%", site.mail_server}, {"%EXSite%", site.mail_site},
      {"%EXorg%", site.mail_organization}};
  return creation::fill_words(session, run.order.script.text, [&](std::string word) {
    format::Filling text(session, std::move(word));
    for (const auto& [tag, value] : tags)
      text.tag(tag, base::trim(value));
    const creation::CommandUser& names = run.order.names;
    return text.names(names.first, names.middle, names.last).variables().take();
  });
}

void run_script(MoveRun& run) {
  Session& session = run.session;
  const std::string& script = run.order.script.text;
  if (!run.order.command || base::trim(script).empty())
    return;
  prepare_failure(session, "Error Running File: " + script, "Error Running File: " + script);
  session.run.view().step("Running Command");
  run.warned |= !run_account_command(session, "Running Script (Hidden Mode): ", move_command(run),
                                     run.order.script, session.Error_Status_Text);
}

void tell_moved(MoveRun& run) {
  Session& session = run.session;
  session.log.line("User Moved Completed");
  session.log.close();
  session::LOG_TAB(session, run.warned ? session::kYellow : session::kGreen, " " + run.key + " Moved");
  session.run.view().step("User " + run.key + " has been moved.");
}

/// A person who said No knows that the user was not moved.
void tell_not_moved(MoveRun& run, MoveStep why) {
  Session& session = run.session;
  if (why == MoveStep::kFailed) {
    const std::string text = "User " + run.key + " was not moved";
    session.log.line(text);
    session::LOG_TAB(session, session::kRed, " " + text);
    session.run.view().step(text);
  }
  session.log.close();
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

/// True when the account has its new paths.
bool move_steps(MoveRun& run) {
  const MoveStep step = place_user(run);
  if (step != MoveStep::kGoOn) {
    tell_not_moved(run, step);
    return false;
  }
  join_groups(run);
  run_script(run);
  tell_moved(run);
  return true;
}

}  // namespace

void warn(MoveRun& run, std::string_view text) {
  run.session.log.reason(text);
  run.warned = true;
}

MoveStep refuse(MoveRun& run, const std::string& why) {
  run.session.log.reason(why);
  if (run.session.run.terms.rehearse)
    run.session.run.terms.rehearse("Refused: " + why);
  return MoveStep::kFailed;
}

bool wants_new_paths(MoveRun& run, const std::string& why) {
  Session& session = run.session;
  if (!run.new_paths_anyway) {
    run.new_paths_anyway = has_consent(
        session, session.run.terms.new_paths_anyway,
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

MoveOrder move_order(const session::Preferences& preferences) {
  MoveOrder order;
  order.through_drive_shares = preferences.through_drive_shares;
  order.profile_named_by_user = preferences.profile_named_by_user;
  order.script = preferences.move_command;
  return order;
}

session::RunOutcome Move_One_User(Session& session, std::string_view UserKey, const MoveOrder& order,
                                  session::RunView& view) {
  const session::RunScope scope(session, order.terms, view);
  session::begin_outcome(session.log);
  view.step("Moving User...");
  const KnownFolders known(session);
  MoveRun run{.session = session,
              .order = order,
              .key = std::string(UserKey),
              .user = {},
              .path = {},
              .server = {},
              .DataMode = static_cast<int>(order.data),
              .home = {.what = kHomePath},
              .profile = {.what = kProfilePath}};
  if (session::is_active_directory(session) && !base::starts_with_fold(run.key, "LDAP://"))
    run.key = "LDAP://" + run.key;
  session.log.begin_block();
  session.log.line("Moving User: " + run.key);
  bool moved = false;
  try {
    load_records(run);
    moved = move_steps(run);
  } catch (const base::RuntimeError& failure) {
    report_stopped(session, failure);
  }
  claim_new_places(run, false);
  if (moved)
    stores::release_template(session);
  session::RunOutcome outcome = session::take_outcome(session.log);
  outcome.done = moved;
  return outcome;
}

}  // namespace twk::lifecycle
