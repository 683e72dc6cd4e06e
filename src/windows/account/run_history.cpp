#include "windows/account/run_history.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "batch/undo_change.hpp"
#include "directory/account_marks.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "directory/tree/change_ou.hpp"
#include "platform/adsi.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/run_scope.hpp"
#include "windows/account/account_view.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/run_history.hpp"

namespace twk::windows {
namespace {

using batch::AccountChange;
using Kind = AccountChange::Kind;

std::string counted(std::size_t number) {
  return std::to_string(number) + (number == 1 ? " change" : " changes");
}

/// The name in a path of a WinNT domain, which is the key of its lists.
std::string last_part(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

/// The details tab shows the groups of a user.
void show_groups_again(Desktop& session, const AccountChange& change, const std::string& user) {
  const Form1& form = session.form1;
  if (form.USERID.text.get().empty() || !base::equals_fold(form.USERID_W2K.text.get(), user))
    return;
  const bool joined = change.kind == Kind::kJoined;
  controls::ListView& from = joined ? session.domain.own_groups : session.domain.other_groups;
  const std::string group = session::is_active_directory(session) ? change.what : last_part(change.what);
  if (const controls::ListRow* const row = from.find_key(group))
    controls::move_row(from, *row, joined ? session.domain.other_groups : session.domain.own_groups);
}

/// The tree and the lists show what is so again.
void show_again(Desktop& session, const AccountChange& change, const std::string& bound_by) {
  const std::string path_before =
      session::is_active_directory(session)
          ? "LDAP://" + session.DomainName + "/" + std::string(directory::name_in_path(bound_by))
          : last_part(bound_by);
  if (change.kind == Kind::kEnabled || change.kind == Kind::kDisabled)
    directory::set_mark(session, path_before, directory::mark::kDisabled, change.kind == Kind::kEnabled);
  else if (change.kind == Kind::kMoved)
    directory::follow_moved_user(session, path_before, change.what);
  else if (change.kind == Kind::kJoined || change.kind == Kind::kLeft)
    show_groups_again(session, change, path_before);
}

/// The key of the row of a run that made these changes; empty when none can be taken back.
std::string keep(Desktop& session, std::vector<AccountChange> changes) {
  std::erase_if(changes, [](const AccountChange& change) {
    return change.sid.empty() || (change.kind == Kind::kSet && change.before.empty() && change.after.empty());
  });
  if (changes.empty())
    return {};
  RunHistory& history = session.run_history;
  std::string key = "run " + std::to_string(history.changes.size() + 1);
  history.changes.emplace(key, std::move(changes));
  return key;
}

/// False when it stays as it is, for the reason that a row of the log tab tells.
bool take_back(Desktop& session, const AccountChange& change) {
  const batch::UserOutcome outcome = batch::take_back(session, change);
  session.log.line(outcome.message);
  if (outcome.done)
    show_again(session, change, outcome.path);
  else
    session::LOG_TAB(session, session::kRed, outcome.message);
  return outcome.done;
}

/// What could not be taken back, or was not reached before a stop.
std::vector<AccountChange> take_back_all(Desktop& session, const std::vector<AccountChange>& changes) {
  AccountView view(session);
  const session::RunScope scope(session, view);
  std::vector<AccountChange> left;
  session.log.begin_block();
  view.begin_files();
  for (std::size_t done = 0; done < changes.size(); ++done) {
    const AccountChange& change = changes[changes.size() - 1 - done];
    view.files("Taking back " + std::to_string(done + 1) + " of " + std::to_string(changes.size()),
               static_cast<int>(done * 100 / changes.size()));
    if (!session.run.goes_on() || !take_back(session, change))
      left.push_back(change);
  }
  view.end_files();
  session.log.close();
  std::ranges::reverse(left);
  return left;
}

}  // namespace

void log_run(Desktop& session, std::string_view light, const std::string& message,
             std::vector<AccountChange> changes) {
  session::LOG_TAB(session, light, message, keep(session, std::move(changes)));
}

void keep_run(Desktop& session, std::vector<AccountChange> changes) {
  controls::ListView& rows = session.log_rows;
  if (const std::string key = keep(session, std::move(changes)); !key.empty() && !rows.empty())
    rows.set_key(rows.at(rows.size() - 1), key);
}

AccountChange membership(Desktop& session, Kind kind, const std::string& user, const std::string& group) {
  const bool active_directory = session::is_active_directory(session);
  const std::string path = active_directory ? user : directory::winnt_path(session, user);
  return {kind, platform::readable_sid(session.platform.directory.GetObject(path)),
          active_directory ? group : directory::winnt_path(session, group)};
}

bool can_be_taken_back(const Desktop& session, const controls::ListRow* row) {
  if (row == nullptr)
    return false;
  const auto run = session.run_history.changes.find(row->key);
  return run != session.run_history.changes.end() && !run->second.empty();
}

void take_run_back(Desktop& session) {
  const controls::ListRow* const row = session.log_rows.selected();
  if (!can_be_taken_back(session, row))
    return;
  std::vector<AccountChange>& changes = session.run_history.changes.at(row->key);
  const std::size_t all = changes.size();
  if (session.platform.dialogs.MsgBox("Take back " + counted(all) + " of this run?\r\n\r\n" + row->text,
                                      platform::Buttons::kYesNo, platform::Icon::kQuestion,
                                      "Undo") != platform::Answer::kYes)
    return;
  changes = take_back_all(session, changes);
  const std::size_t done = all - changes.size();
  const std::string told = counted(done) + " of " + std::to_string(all) + " taken back";
  session::LOG_TAB(session, changes.empty() ? session::kGreen : session::kYellow, told);
  session.status.panel1 = told + (changes.empty() ? "." : ". The log has the reasons.");
}

}  // namespace twk::windows
