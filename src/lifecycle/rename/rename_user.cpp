#include "lifecycle/rename/rename_user.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "lifecycle/rename/rename_principal.hpp"
#include "lifecycle/rename/rename_shr_dir.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/hourglass.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/multi_user.hpp"
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

std::string principal_name(const session::RenameUser& window) {
  const std::string& prefix = window.User_logon_name.text;
  return prefix.empty() ? prefix : prefix + window.AD_Domain.text.get();
}

std::string typed(const controls::TextBox& field) {
  return std::string(base::trim(field.text.get()));
}

/// True when the name that folders contain changes.
bool is_folder_name_changed(const Session& session) {
  const session::RenameUser& window = session.rename_user;
  return session.form1.CNName.value ? window.Full_Name_Changed : window.Logon_Name_Changed;
}

/// The account's current names, when one of them changes.
std::vector<std::string> names_now(const RenameRun& run) {
  const session::RenameUser& window = run.session.rename_user;
  if (!window.Full_Name_Changed && !window.Logon_Name_Changed &&
      principal_name(window) == window.PrincipalShown)
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
  const session::RenameUser& window = session.rename_user;
  run.text =
      "Error renaming user account\r\n\r\nCheck user logon name and pre windows 2000 names are Unique.";
  run.title = "Error renaming users logon names";
  run.user = session.platform.directory.GetObject(run.node.key);
  run.text = "Nothing was renamed.";
  run.title = "Error renaming directories";
  const bool by_common_name = session.form1.CNName.value;
  const std::string account = readable_text(run.user, "samAccountName");
  const std::string logon = typed(window.Logon_Name_pre2000);
  RenameOrder order;
  order.object = run.user;
  order.account = account;
  order.new_account = logon.empty() ? account : logon;
  order.names = names_now(run);
  order.folders = window.ReNameSD.on() && is_folder_name_changed(session);
  order.old_name = by_common_name ? plain_name(run.user->Name()) : account;
  order.new_name = typed(by_common_name ? window.Full_Name : window.Logon_Name_pre2000);
  run.prepared = prepare_rename(session, order);
}

void save_logon_names(RenameRun& run) {
  const session::RenameUser& window = run.session.rename_user;
  run.text =
      "Error renaming user account\r\n\r\nCheck user logon name and pre windows 2000 names are Unique.";
  run.title = "Error renaming users logon names";
  const std::string logon = typed(window.Logon_Name_pre2000);
  if (!logon.empty())
    put_or_clear(run.user, "samAccountName", logon);
  const std::string principal = principal_name(window);
  if (principal != window.PrincipalShown)
    put_or_clear(run.user, "userPrincipalName", principal);
  run.user->SetInfo();
}

void save_display_names(RenameRun& run) {
  const session::RenameUser& window = run.session.rename_user;
  run.title = "Error renaming user names";
  put_or_clear(run.user, "FullName", window.Display_Name.text);
  put_or_clear(run.user, "FirstName", window.First_Name.text);
  put_or_clear(run.user, "LastName", window.Last_Name.text);
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
  Session& session = run.session;
  const session::RenameUser& window = session.rename_user;
  const std::string& text =
      session.form1.DisplayName.value ? window.Display_Name.text : window.Full_Name.text;
  if (!text.empty())
    session.domain.tree.set_text(run.node, text);
}

void rename_object(RenameRun& run) {
  Session& session = run.session;
  run.text = "Error renaming user in AD\r\nCheck the names does not exist in the current OU";
  run.title = "Error renaming user object in AD";
  const std::string full_name = typed(session.rename_user.Full_Name);
  if (!session.rename_user.Full_Name_Changed || full_name == plain_name(run.user->Name()))
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
  if (!session.rename_user.ReNameSD.on())
    return true;
  if (!is_folder_name_changed(session)) {
    tell_folders_stay(session, session.form1.CNName.value ? "full name" : "logon name",
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
  save_logon_names(run);
  save_display_names(run);
  rename_object(run);
  run.session.log.line("Changing Names for: " + readable_text(run.user, "samAccountName"));
  if (rename_directories(run))
    end_rename(run.session, run.prepared);
  show_new_text(run);
}

/// Shows the account's own suffix over those of the forest.
void show_principal_name(Session& session, const std::string& name) {
  session::RenameUser& window = session.rename_user;
  const PrincipalName principal = split_principal(name);
  std::vector<std::string> suffixes = principal_suffixes(session);
  if (!principal.suffix.empty() && find_suffix(suffixes, principal.suffix).empty())
    suffixes.push_back(principal.suffix);
  window.AD_Domain.clear_items();
  for (const std::string& suffix : suffixes)
    window.AD_Domain.add_item(suffix);
  window.User_logon_name.text = principal.prefix;
  window.AD_Domain.text = principal.suffix.empty() ? suffixes.front() : principal.suffix;
  window.PrincipalShown = principal_name(window);
}

bool has_refused_text(Session& session) {
  const session::RenameUser& window = session.rename_user;
  return stores::refuses(session, stores::control_refusal,
                         {window.Full_Name.text.get(), window.First_Name.text.get(),
                          window.Last_Name.text.get(), window.Display_Name.text.get()}) ||
         stores::refuses(session, stores::name_refusal,
                         {window.User_logon_name.text.get(), window.Logon_Name_pre2000.text.get()});
}

}  // namespace

void show_rename_user(Session& session) {
  base::Trap trap;
  if (trap([&] { RenameUser_Load(session); }))
    return session.platform.dialogs.show_modal("RenameUser");
  session.status.panel1 = "Unable to read the user: " + trap.description();
}

void RenameUser_Load(Session& session) {
  const controls::TreeNode* const node = session.domain.tree.selected();
  if (node == nullptr)
    base::raise(base::error::kOutOfBounds, "no user is selected");
  const ObjectPtr object = session.platform.directory.GetObject(node->key);
  const platform::User user(object);
  session::RenameUser& window = session.rename_user;
  window.Full_Name.text = plain_name(object->Name());
  window.First_Name.text = user.FirstName();
  window.Last_Name.text = user.LastName();
  window.Display_Name.text = user.FullName();
  window.WINNT_Domain.caption = session.NTDomainName + "\\";
  window.Logon_Name_pre2000.text = readable_text(object, "samAccountName");
  show_principal_name(session, readable_text(object, "userPrincipalName"));
  window.ReNameSD.value = 0;
  window.Full_Name_Changed = false;
  window.Logon_Name_Changed = false;
}

void RenameUser_Full_Name_Change(Session& session) {
  session.rename_user.Full_Name_Changed = true;
}

void RenameUser_Logon_Name_pre2000_Change(Session& session) {
  session.rename_user.Logon_Name_Changed = true;
}

bool RenameUser_Command2_Click(Session& session) {
  controls::TreeNode* const node = session.domain.tree.selected();
  if (node == nullptr || has_refused_text(session))
    return false;
  session.log.begin_block();
  session.log.line("Renaming user:" + node->text);
  RenameRun run{session, *node};
  base::Trap trap;
  const bool renamed = trap([&] {
    const session::Hourglass hourglass(session.form1);
    rename(run);
  });
  if (!renamed) {
    session.log.reason(run.title + ": " + base::in_words(trap.number(), trap.description()));
    session::LOG_TAB(session, session::kRed, "Error Renaming " + node->text);
  }
  session.log.close();
  if (!renamed) {
    session.platform.dialogs.MsgBox(run.text + "\r\n\r\n" + trap.description(), platform::Buttons::kOk,
                                    platform::Icon::kCritical, run.title);
  }
  return renamed;
}

}  // namespace twk::lifecycle
