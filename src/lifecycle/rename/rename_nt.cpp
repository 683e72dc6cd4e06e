#include "lifecycle/rename/rename_nt.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/operations.hpp"
#include "lifecycle/rename/rename_shr_dir.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
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

/// An account that already has the new name is one whose renaming was interrupted.
void rename_account(Session& session, controls::TreeNode& node, PreparedRename& prepared) {
  const std::string old_name = session.rename_nt.OldName;
  const std::string& new_name = prepared.user.new_name;
  if (old_name != new_name) {
    prepared.user.object = session.platform.directory.GetObject(directory::winnt_path(session))
                               ->MoveHere(directory::winnt_path(session) + "/" + old_name, new_name);
  }
  session.status.panel1 = old_name + " Renamed to " + new_name;
  show_new_name(session, node, old_name, new_name);
  session.rename_nt.OldName = new_name;
  session::LOG_TAB(session, session::kGreen, " " + old_name + " renamed to " + new_name);
}

/// Tests what could prevent the renaming before anything is changed.
PreparedRename prepare(Session& session, const ObjectPtr& user, const std::string& new_name) {
  const session::Rename_NT& window = session.rename_nt;
  RenameOrder order;
  order.object = user;
  order.account = window.OldName;
  order.new_account = new_name;
  if (window.OldName != new_name)
    order.names = {window.OldName};
  order.folders = window.RenameDir.on();
  order.old_name = window.OldName;
  order.new_name = new_name;
  return prepare_rename(session, order);
}

/// False when what was typed is not a valid name, which is reported.
bool accepts_logon_name(Session& session) {
  const std::string refused = find_refused(session, session.rename_nt.User_Logon.text.get());
  if (refused.empty())
    return true;
  session.log.reason("no account name has the character " + refused);
  session::LOG_TAB(session, session::kRed, " Error Renaming " + session.rename_nt.OldName);
  session.status.panel1 = "Invalid Character in User Name: " + refused;
  return false;
}

/// False when a folder could not be renamed that should have been.
bool rename_directories(Session& session, const PreparedRename& prepared) {
  if (!session.rename_nt.RenameDir.on())
    return true;
  session.status.panel1 = "Renaming User Share(s)/Directory(s)";
  return rename_folders_of(session, prepared,
                           {"Renamed Profile Dir: ", "Failed to Rename Profile Directory: "});
}

void put_full_name(Session& session, const ObjectPtr& object) {
  platform::User user(object);
  user.put_FullName(session.rename_nt.Full_Name.text.get());
  user.SetInfo();
}

ObjectPtr account_of(Session& session) {
  return session.platform.directory.GetObject(directory::winnt_path(session) + "/" +
                                              session.rename_nt.OldName);
}

void change_names(Session& session, controls::TreeNode& node) {
  const session::Rename_NT& window = session.rename_nt;
  const KnownFolders known(session);
  const std::string new_name(base::trim(window.User_Logon.text.get()));
  session.log.begin_block();
  session.log.line("Rename User " + window.OldName + " to " + new_name);
  if (!accepts_logon_name(session)) {
    if (window.Name_Changed)
      put_full_name(session, account_of(session));
    return;
  }
  PreparedRename prepared = prepare(session, account_of(session), new_name);
  rename_account(session, node, prepared);
  const bool folders_done = rename_directories(session, prepared);
  if (window.Name_Changed)
    put_full_name(session, prepared.user.object);
  if (folders_done)
    end_rename(session, prepared);
}

void change_full_name(Session& session) {
  const session::Rename_NT& window = session.rename_nt;
  put_full_name(session, account_of(session));
  if (window.RenameDir.on())
    tell_folders_stay(session, "account name", window.OldName);
}

}  // namespace

void show_rename_nt(Session& session) {
  base::Trap trap;
  if (trap([&] { Rename_NT_Load(session); }))
    return session.platform.dialogs.show_modal("Rename_NT");
  session.status.panel1 = "Unable to read the user: " + trap.description();
}

void Rename_NT_Load(Session& session) {
  const controls::TreeNode* const node = session.domain.tree.selected();
  if (node == nullptr)
    base::raise(base::error::kOutOfBounds, "no user is selected");
  const platform::User user(
      session.platform.directory.GetObject(directory::winnt_path(session))->GetObject("user", node->text));
  session::Rename_NT& window = session.rename_nt;
  window.OldName = node->text;
  window.User_Logon.text = node->text;
  window.Full_Name.text = user.FullName();
  window.RenameDir.value = 0;
  window.Logon_Changed = false;
  window.Name_Changed = false;
}

void Rename_NT_User_Logon_Change(Session& session) {
  session.rename_nt.Logon_Changed = true;
}

void Rename_NT_Full_Name_Change(Session& session) {
  session.rename_nt.Name_Changed = true;
}

bool Rename_NT_OKButton_Click(Session& session) {
  session::Rename_NT& window = session.rename_nt;
  controls::TreeNode* const node = session.domain.tree.selected();
  if (!window.Logon_Changed && !window.Name_Changed)
    return true;
  if (node == nullptr || base::trim(window.User_Logon.text.get()).empty() ||
      stores::refuses(session, stores::name_refusal, {window.User_Logon.text.get()}) ||
      stores::refuses(session, stores::control_refusal, {window.Full_Name.text.get()}))
    return false;
  const session::Hourglass hourglass(session.form1);
  base::Trap trap;
  trap([&] {
    if (window.Logon_Changed)
      change_names(session, *node);
    else
      change_full_name(session);
  });
  if (trap.number() != 0) {
    session.log.line("Error Number: " + base::to_text(trap.number()));
    session.log.reason(base::in_words(trap.number(), trap.description()));
    session::LOG_TAB(session, session::kRed, " Error Renaming " + window.OldName);
    session.status.panel1 = trap.description();
  }
  session.log.close();
  return true;
}

}  // namespace twk::lifecycle
