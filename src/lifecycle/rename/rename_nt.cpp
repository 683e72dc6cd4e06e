#include "lifecycle/rename/rename_nt.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/operations.hpp"
#include "lifecycle/rename/rename_shr_dir.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/run_scope.hpp"
#include "session/session.hpp"
#include "stores/typed_text.hpp"

namespace twk::lifecycle {
namespace {

using platform::ObjectPtr;
using session::Session;

constexpr std::string_view kRefused = ",<>?/\\*[]{};:'\"";

/// Logs each character that no account name may have; returns the first of them, or nothing.
std::string find_refused(Session& session, std::string_view name) {
  std::string first;
  for (const char sign : name) {
    if (kRefused.find(sign) == base::npos)
      continue;
    session.log.line("Invalid Character in User Name: " + std::string(1, sign));
    if (first.empty())
      first = sign;
  }
  return first;
}

/// The tree and the lists follow.
void show_new_name(Session& session, controls::TreeNode& node, const std::string& old_name,
                   const std::string& new_name) {
  session.domain.tree.set_text(node, new_name);
  base::Trap taken;
  taken([&] { session.domain.tree.set_key(node, new_name); });
  for (controls::ListView* const list : {&session.domain.users, &session.domain.NotMembers}) {
    if (const controls::ListRow* const row = list->find_key(old_name)) {
      controls::ListRow& found = list->at(list->place_of(*row));
      taken([&] { list->set_key(found, new_name); });
      list->set_text(found, new_name);
    }
  }
}

struct NtRenameRun {
  Session& session;
  const RenameNtOrder& order;
  controls::TreeNode& node;
  std::string name;  ///< the account's now
};

/// An account that already has the new name is one whose renaming was interrupted.
void rename_account(NtRenameRun& run, PreparedRename& prepared) {
  Session& session = run.session;
  const std::string old_name = run.name;
  const std::string& new_name = prepared.user.new_name;
  if (old_name != new_name) {
    prepared.user.object = session.platform.directory.GetObject(directory::winnt_path(session))
                               ->MoveHere(directory::winnt_path(session) + "/" + old_name, new_name);
  }
  session.status.panel1 = old_name + " Renamed to " + new_name;
  show_new_name(session, run.node, old_name, new_name);
  run.name = new_name;
  session::LOG_TAB(session, session::kGreen, " " + old_name + " renamed to " + new_name);
}

/// Tests what could prevent the renaming before anything is changed.
PreparedRename prepare(const NtRenameRun& run, const ObjectPtr& user, const std::string& new_name) {
  RenameOrder order;
  order.object = user;
  order.account = run.name;
  order.new_account = new_name;
  if (run.name != new_name)
    order.names = {run.name};
  order.folders = run.order.folders;
  order.old_name = run.name;
  order.new_name = new_name;
  order.run_record = run.order.run_record;
  return prepare_rename(run.session, order);
}

/// False when what was typed is not a valid name, which is reported.
bool accepts_logon_name(const NtRenameRun& run) {
  Session& session = run.session;
  const std::string refused = find_refused(session, run.order.logon);
  if (refused.empty())
    return true;
  session.log.reason("no account name has the character " + refused);
  session::LOG_TAB(session, session::kRed, " Error Renaming " + run.name);
  session.status.panel1 = "Invalid Character in User Name: " + refused;
  return false;
}

/// False when a folder could not be renamed that should have been.
bool rename_directories(const NtRenameRun& run, const PreparedRename& prepared) {
  Session& session = run.session;
  if (!run.order.folders)
    return true;
  session.status.panel1 = "Renaming User Share(s)/Directory(s)";
  return rename_folders_of(session, prepared,
                           {"Renamed Profile Dir: ", "Failed to Rename Profile Directory: "});
}

void put_full_name(const NtRenameRun& run, const ObjectPtr& object) {
  platform::User user(object);
  user.put_FullName(run.order.full_name);
  user.SetInfo();
}

ObjectPtr account_of(const NtRenameRun& run) {
  return run.session.platform.directory.GetObject(directory::winnt_path(run.session) + "/" + run.name);
}

void change_names(NtRenameRun& run) {
  Session& session = run.session;
  const KnownFolders known(session);
  const std::string new_name(base::trim(run.order.logon));
  session.log.begin_block();
  session.log.line("Rename User " + run.name + " to " + new_name);
  if (!accepts_logon_name(run)) {
    if (run.order.full_name_changed)
      put_full_name(run, account_of(run));
    return;
  }
  PreparedRename prepared = prepare(run, account_of(run), new_name);
  rename_account(run, prepared);
  const bool folders_done = rename_directories(run, prepared);
  if (run.order.full_name_changed)
    put_full_name(run, prepared.user.object);
  if (folders_done)
    end_rename(session, prepared);
}

void change_full_name(const NtRenameRun& run) {
  put_full_name(run, account_of(run));
  if (run.order.folders)
    tell_folders_stay(run.session, "account name", run.name);
}

}  // namespace

RenameNtOrder rename_order_nt(Session& session, const controls::TreeNode& node) {
  const platform::User user(
      session.platform.directory.GetObject(directory::winnt_path(session))->GetObject("user", node.text));
  RenameNtOrder order;
  order.old_name = order.logon = node.text;
  order.full_name = user.FullName();
  return order;
}

bool has_refused_text(Session& session, const RenameNtOrder& order) {
  return base::trim(order.logon).empty() || stores::refuses(session, stores::name_refusal, {order.logon}) ||
         stores::refuses(session, stores::control_refusal, {order.full_name});
}

session::RunOutcome rename_nt(Session& session, controls::TreeNode& node, const RenameNtOrder& order,
                              session::RunView& view) {
  const session::RunScope scope(session, order.terms, view);
  session::begin_outcome(session.log);
  NtRenameRun run{session, order, node, order.old_name};
  base::Trap trap;
  trap([&] { order.logon_changed ? change_names(run) : change_full_name(run); });
  if (trap.number() != 0) {
    session.log.line("Error Number: " + base::to_text(trap.number()));
    session.log.reason(base::in_words(trap.number(), trap.description()));
    session::LOG_TAB(session, session::kRed, " Error Renaming " + run.name);
    session.status.panel1 = trap.description();
  }
  session.log.close();
  session::RunOutcome outcome = session::take_worst(session.log);
  outcome.done = outcome.light != session::kRed;
  return outcome;
}

}  // namespace twk::lifecycle
