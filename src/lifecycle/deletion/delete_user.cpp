#include "lifecycle/deletion/delete_user.hpp"

#include "base/errors.hpp"
#include "creation/command_text.hpp"
#include "directory/operations.hpp"
#include "format/filling.hpp"
#include "lifecycle/account/account_log.hpp"
#include "lifecycle/deletion/delete_run.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
#include "session/log_tab.hpp"
#include "session/run_scope.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

bool is_wanted(Session& session, const DeleteOrder& order, std::string_view key) {
  if (!order.confirm || order.terms.silent)
    return true;
  session.run.view().step("Delete User ?");
  return session.platform.dialogs.MsgBox("Delete User " + std::string(key), platform::Buttons::kYesNo,
                                         platform::Icon::kQuestion, "Delete User") == platform::Answer::kYes;
}

void bind_user(DeleteRun& run) {
  Session& session = run.session;
  if (session::is_active_directory(session)) {
    run.user = session.platform.directory.GetObject(run.key);
    run.logon_name = run.user->Get("samAccountName").text();
    run.display_name = platform::User(run.user).FullName();
    if (run.display_name.empty())
      run.display_name = run.user->Name();
  } else {
    run.user =
        session.platform.directory.GetObject(directory::winnt_path(session))->GetObject("user", run.key);
    run.logon_name = run.display_name = run.key;
  }
  const platform::User user(run.user);
  run.home.path = user.HomeDirectory();
  run.profile.path = user.Profile();
}

void delete_account(DeleteRun& run) {
  Session& session = run.session;
  if (!run.order.account)
    return session.log.line("Not Deleting User NT account");
  const std::string failure = "Unable to Delete User " + run.display_name;
  prepare_failure(session, failure, failure);
  platform::DirectoryService& directory = session.platform.directory;
  if (session::is_active_directory(session))
    directory.GetObject(run.user->Parent())->Delete("User", run.user->Name());
  else
    directory.GetObject(directory::winnt_path(session))->Delete("User", run.key);
  session.log.line("Deleted User Account: " + run.display_name);
  run.deleted = true;
  run.DeletedName = run.key;
  folder_use(session)->forget_account(run.logon_name);
  if (!session.run.terms.rehearse)
    remove_from_views(session, run.key);
}

void run_script(DeleteRun& run) {
  Session& session = run.session;
  const std::string& script = run.order.script.text;
  if (!run.order.command || script.empty())
    return;
  prepare_failure(session, "Error Running Command...", "Error Running Command ");
  session.run.view().step("Running Script...");
  const std::vector<std::string> words = creation::fill_words(session, script, [&](std::string word) {
    return format::Filling(session, std::move(word))
        .tag("%Domain%", session.DomainName)
        .tag("%UserName%", run.DeletedName)
        .take();
  });
  const std::string failure = "Error Running: " + creation::shown_command(words);
  run.Success &= run_account_command(session, "Running Script: ", words, run.order.script, failure);
}

void tell_end(DeleteRun& run) {
  Session& session = run.session;
  const bool account = run.order.account;
  session.log.line(account ? "User Deleted." : "Delete Function Completed.");
  session.log.close();
  const std::string_view light = run.Success ? session::kGreen : session::kYellow;
  const bool active_directory = session::is_active_directory(session);
  if (account && !active_directory)
    session.run.view().step("User " + run.display_name + " Deleted.");
  session::LOG_TAB(session, light,
                   " User " + run.display_name +
                       (active_directory && !account ? " delete function completed." : " deleted."));
}

void delete_steps(DeleteRun& run) {
  bind_user(run);
  if (run.order.shares)
    find_folders(run);
  decide_mailbox(run);
  if (run.order.shares)
    delete_shares(run);
  if (run.order.mailbox)
    delete_mail(run);
  delete_account(run);
  if (run.order.data)
    delete_folders(run);
  run_script(run);
  run.user.reset();
  tell_end(run);
}

}  // namespace

DeleteOrder delete_order(const session::Preferences& preferences) {
  DeleteOrder order;
  order.confirm = preferences.confirm_deletes;
  order.through_drive_shares = preferences.through_drive_shares;
  order.profile_named_by_user = preferences.profile_named_by_user;
  order.mail.administrator = preferences.mail_administrator;
  order.script = preferences.delete_command;
  return order;
}

session::RunOutcome Delete_One_User(Session& session, std::string_view UserKey, const DeleteOrder& order,
                                    session::RunView& view) {
  const session::RunScope scope(session, order.terms, view);
  session::begin_outcome(session.log);
  if (!is_wanted(session, order, UserKey))
    return {};
  const KnownFolders known(session);
  DeleteRun run{.session = session, .order = order, .key = std::string(UserKey)};
  view.step("Deleting User(s)");
  session.log.begin_block();
  session.log.line("Delete User: " + run.key);
  prepare_failure(session, "Unable to get Domain Data...",
                  "Unable to get user info from Domain, User:" + run.key);
  try {
    delete_steps(run);
  } catch (const base::RuntimeError& failure) {
    report_stopped(session, failure);
  }
  session::RunOutcome outcome = session::take_outcome(session.log);
  outcome.done = run.deleted ||
                 (!order.account && (outcome.light == session::kGreen || outcome.light == session::kYellow));
  return outcome;
}

}  // namespace twk::lifecycle
