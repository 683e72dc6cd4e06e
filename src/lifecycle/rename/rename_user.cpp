#include "lifecycle/rename/rename_user.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "lifecycle/rename/rename_shr_dir.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/preferences.hpp"
#include "session/run_scope.hpp"
#include "session/session.hpp"
#include "stores/typed_text.hpp"

namespace twk::lifecycle {
namespace {

using platform::ObjectPtr;
using platform::plain_name;
using platform::readable_text;
using session::Session;

struct RenameRun {
  Session& session;
  const RenameUserOrder& order;
  controls::TreeNode& node;
  ObjectPtr user{};
  PreparedRename prepared{};
  std::string text{};  ///< of the box that reports a refusal
  std::string title{};
};

/// Writes what differs, so that an unchanged name is not written.
void put_or_clear(const ObjectPtr& user, std::string_view attribute, const std::string& value) {
  const std::string stored = readable_text(user, attribute);
  if (value == stored)
    return;
  if (value.empty())
    user->PutEx(1, attribute, {});
  else
    user->Put(attribute, value);
}

/// True when the name that folders contain changes.
bool is_folder_name_changed(const RenameUserOrder& order) {
  return order.by_full_name ? order.full_name_changed : order.logon_changed;
}

/// The account's current names, when one of them changes.
std::vector<std::string> names_now(const RenameRun& run) {
  const RenameUserOrder& order = run.order;
  if (!order.full_name_changed && !order.logon_changed && order.names.principal == order.principal_before)
    return {};
  std::vector<std::string> names;
  for (std::string name : {readable_text(run.user, "samAccountName"), plain_name(run.user->Name()),
                           readable_text(run.user, "userPrincipalName"),
                           std::string(directory::name_in_path(run.user->ADsPath()))}) {
    if (!name.empty())
      names.push_back(std::move(name));
  }
  return names;
}

/// Every obstacle to renaming the folders is found before the first name is written.
void prepare(RenameRun& run) {
  Session& session = run.session;
  const UserNames& names = run.order.names;
  run.text =
      "Error renaming user account\r\n\r\nCheck user logon name and pre windows 2000 names are Unique.";
  run.title = "Error renaming users logon names";
  run.user = run.order.user != nullptr ? run.order.user : session.platform.directory.GetObject(run.node.key);
  run.text = "Nothing was renamed.";
  run.title = "Error renaming directories";
  const std::string account = readable_text(run.user, "samAccountName");
  const std::string logon(base::trim(names.logon));
  RenameOrder order;
  order.object = run.user;
  order.account = account;
  order.new_account = logon.empty() ? account : logon;
  order.names = names_now(run);
  order.folders = run.order.folders && is_folder_name_changed(run.order);
  order.old_name = run.order.by_full_name ? plain_name(run.user->Name()) : account;
  order.new_name = base::trim(run.order.by_full_name ? names.full_name : names.logon);
  order.run_record = run.order.run_record;
  run.prepared = prepare_rename(session, order);
}

void put_logon_names(const RenameRun& run) {
  const std::string logon(base::trim(run.order.names.logon));
  if (!logon.empty())
    put_or_clear(run.user, "samAccountName", logon);
  const std::string& principal = run.order.names.principal;
  if (principal != run.order.principal_before)
    put_or_clear(run.user, "userPrincipalName", principal);
}

void put_display_names(const RenameRun& run) {
  const UserNames& names = run.order.names;
  put_or_clear(run.user, "FullName", names.display);
  put_or_clear(run.user, "FirstName", names.first);
  put_or_clear(run.user, "LastName", names.last);
}

/// All in one request. False when it is refused.
bool save_together(const RenameRun& run) {
  base::Trap refused;
  return refused([&] {
    put_logon_names(run);
    put_display_names(run);
    run.user->SetInfo();
  });
}

/// One request after the other, so that a refusal is about the names that it belongs to.
void save_apart(RenameRun& run) {
  run.text =
      "Error renaming user account\r\n\r\nCheck user logon name and pre windows 2000 names are Unique.";
  run.title = "Error renaming users logon names";
  run.user = run.session.platform.directory.GetObject(run.node.key);
  put_logon_names(run);
  run.user->SetInfo();
  run.title = "Error renaming user names";
  put_display_names(run);
  run.user->SetInfo();
}

void set_row(controls::ListView& list, const std::string& old_key, const controls::TreeNode& node) {
  const controls::ListRow* const found = list.find_key(old_key);
  if (found == nullptr)
    return;
  controls::ListRow& row = list.at(list.place_of(*found));
  list.set_key(row, node.key);
  list.set_text(row, node.text);
}

void show_new_text(RenameRun& run) {
  const UserNames& names = run.order.names;
  const std::string& text = run.order.tree_shows_display ? names.display : names.full_name;
  if (!text.empty())
    run.session.domain.tree.set_text(run.node, text);
}

void rename_object(RenameRun& run) {
  Session& session = run.session;
  run.text = "Error renaming user in AD\r\nCheck the names does not exist in the current OU";
  run.title = "Error renaming user object in AD";
  const std::string full_name(base::trim(run.order.names.full_name));
  if (!run.order.full_name_changed || full_name == plain_name(run.user->Name()))
    return;
  // A comma of the name, and whatever else must be escaped in a path.
  const std::string name = platform::escape_dn_value(full_name);
  const std::string old_path = run.user->ADsPath();
  // The container by the server in the key; its own node may be hidden by a limit to one OU.
  run.user = session.platform.directory.GetObject(run.user->Parent())->MoveHere(old_path, "CN=" + name);
  const std::string old_key = run.node.key;
  session.domain.tree.set_key(run.node, "LDAP://" + session.DomainName + "/" +
                                            std::string(directory::name_in_path(run.user->ADsPath())));
  show_new_text(run);
  set_row(session.domain.users, old_key, run.node);
  set_row(session.domain.NotMembers, old_key, run.node);
}

/// False when a folder could not be renamed that should have been.
bool rename_directories(RenameRun& run) {
  Session& session = run.session;
  if (!run.order.folders)
    return true;
  if (!is_folder_name_changed(run.order)) {
    tell_folders_stay(session, run.order.by_full_name ? "full name" : "logon name",
                      readable_text(run.user, "samAccountName"));
    return true;
  }
  run.prepared.user.object = run.user;
  const RenamedUser& user = run.prepared.user;
  const bool renamed = rename_folders_of(session, run.prepared,
                                         {"Renamed profile Dir :", "Failed to Rename Profile Directory: "});
  session::LOG_TAB(session, session::kGreen,
                   user.old_names.front() + " to " + user.new_name + " has been renamed");
  return renamed;
}

void rename(RenameRun& run) {
  const KnownFolders known(run.session);
  prepare(run);
  platform::WriteBatch batch(run.session.platform.directory);
  if (!save_together(run))
    save_apart(run);
  rename_object(run);
  batch.commit();
  run.session.log.line("Changing Names for: " + run.prepared.record.account);
  if (rename_directories(run))
    end_rename(run.session, run.prepared);
  show_new_text(run);
}

}  // namespace

RenameUserOrder rename_order(Session& session, const controls::TreeNode& node,
                             const session::Preferences& preferences) {
  const ObjectPtr object = session.platform.directory.GetObject(node.key);
  const platform::User user(object);
  RenameUserOrder order;
  order.user = object;
  order.principal_before = readable_text(object, "userPrincipalName");
  order.names = {.full_name = plain_name(object->Name()),
                 .first = user.FirstName(),
                 .last = user.LastName(),
                 .display = user.FullName(),
                 .principal = order.principal_before,
                 .logon = readable_text(object, "samAccountName")};
  order.by_full_name = preferences.named_by_full_name;
  order.tree_shows_display = preferences.tree_shows_display_name;
  return order;
}

bool has_refused_text(Session& session, const UserNames& names) {
  return stores::refuses(session, stores::control_refusal,
                         {names.full_name, names.first, names.last, names.display}) ||
         stores::refuses(session, stores::name_refusal, {names.principal, names.logon});
}

session::RunOutcome rename_user(Session& session, controls::TreeNode& node, const RenameUserOrder& order,
                                session::RunView& view) {
  const session::RunScope scope(session, order.terms, view);
  session::begin_outcome(session.log);
  const bool of_run = session.log.is_open();
  session.log.open();
  session.log.gather(true);
  session.log.begin_block();
  session.log.line("Renaming user:" + node.text);
  session.log.gather(false);
  RenameRun run{session, order, node};
  base::Trap trap;
  const bool renamed = trap([&] { rename(run); });
  if (!renamed) {
    session.log.reason(run.title + ": " + base::in_words(trap.number(), trap.description()));
    session::LOG_TAB(session, session::kRed, "Error Renaming " + node.text);
  }
  if (!of_run)
    session.log.close();
  if (!renamed) {
    session.platform.dialogs.MsgBox(run.text + "\r\n\r\n" + trap.description(), platform::Buttons::kOk,
                                    platform::Icon::kCritical, run.title);
  }
  session::RunOutcome outcome = session::take_worst(session.log);
  outcome.done = renamed;
  return outcome;
}

}  // namespace twk::lifecycle
