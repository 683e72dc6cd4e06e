#include "lifecycle/deletion/delete_user.hpp"

#include "base/errors.hpp"
#include "creation/command_text.hpp"
#include "directory/operations.hpp"
#include "format/filling.hpp"
#include "lifecycle/account/account_log.hpp"
#include "lifecycle/deletion/delete_run.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"
#include "session/log_tab.hpp"
#include "session/multi_user.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

bool is_wanted(Session& session, std::string_view key) {
  if (!session.form1.Confirm_Deletes.on() || session.multi_user.No_Prompting.on())
    return true;
  session.multi_user.Label3.caption = std::string("Delete User ?");
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
  if (!session.multi_user.Delete_NT_Account.on())
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
  if (!session.runs.rehearse)
    remove_from_views(session, run.key);
}

void run_script(DeleteRun& run) {
  Session& session = run.session;
  const std::string& script = session.form1.Delete_Script.text;
  if (!session.runs.Run_Command_Flag || script.empty())
    return;
  prepare_failure(session, "Error Running Command...", "Error Running Command ");
  session.multi_user.Label3.caption = std::string("Running Script...");
  const std::vector<std::string> words = creation::fill_words(session, script, [&](std::string word) {
    return format::Filling(session, std::move(word))
        .tag("%Domain%", session.DomainName)
        .tag("%UserName%", run.DeletedName)
        .take();
  });
  const std::string failure = "Error Running: " + creation::shown_command(words);
  run.Success &= run_account_command(session, "Running Script: ", words, 2, failure);
}

void tell_end(DeleteRun& run) {
  Session& session = run.session;
  const bool account = session.multi_user.Delete_NT_Account.on();
  session.log.line(account ? "User Deleted." : "Delete Function Completed.");
  session.log.close();
  const std::string_view light = run.Success ? session::kGreen : session::kYellow;
  const bool active_directory = session::is_active_directory(session);
  if (account && !active_directory)
    session.multi_user.Label3.caption = "User " + run.display_name + " Deleted.";
  session::LOG_TAB(session, light,
                   " User " + run.display_name +
                       (active_directory && !account ? " delete function completed." : " deleted."));
}

}  // namespace

bool Delete_One_User(Session& session, std::string_view UserKey) {
  if (!session.runs.Delete_Running || !is_wanted(session, UserKey))
    return false;
  const KnownFolders known(session);
  DeleteRun run{.session = session, .key = std::string(UserKey)};
  session.multi_user.Label3.caption = std::string("Deleting User(s)");
  session.log.begin_block();
  session.log.line("Delete User: " + run.key);
  prepare_failure(session, "Unable to get Domain Data...",
                  "Unable to get user info from Domain, User:" + run.key);
  try {
    bind_user(run);
    const bool shares = session.multi_user.Del_Shares.on();
    if (shares)
      find_folders(run);
    decide_mailbox(run);
    if (shares)
      delete_shares(run);
    if (session.runs.Delete_Mail_Flag)
      delete_mail(run);
    delete_account(run);
    if (session.runs.Delete_Data_Flag)
      delete_folders(run);
    run_script(run);
    run.user.reset();
    tell_end(run);
  } catch (const base::RuntimeError& failure) {
    report_stopped(session, failure);
  }
  return run.deleted;
}

}  // namespace twk::lifecycle
