#include "lifecycle/rename_user.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "lifecycle/rename_shr_dir.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/session.hpp"
#include "stores/typed_text.hpp"

namespace twk::lifecycle {
namespace {

using platform::ObjectPtr;
using session::Session;

/// Without its "CN=" and with the commas as they are read.
std::string plain_name(const std::string& name) {
  return platform::unescape_dn_value(base::mid(name, 4));
}

/// Empty when the attribute has no value.
std::string text_of(const ObjectPtr& object, std::string_view attribute) {
  std::string text;
  base::Trap without_value;
  without_value([&] { text = object->Get(attribute).text(); });
  return text;
}

struct RenameRun {
  Session& session;
  controls::TreeNode& node;
  ObjectPtr user;
  std::string OldName;  ///< what shares and folders are named after
  std::string text;     ///< of the box that tells a refusal
  std::string title;
};

void put_or_clear(const ObjectPtr& user, std::string_view attribute, const std::string& value) {
  if (!value.empty())
    user->Put(attribute, value);
  else if (!text_of(user, attribute).empty())
    user->PutEx(1, attribute, {});
}

void save_logon_names(RenameRun& run) {
  const session::RenameUser& window = run.session.rename_user;
  run.text =
      "Error renaming user account\r\n\r\nCheck user logon name and pre windows 2000 names are Unique.";
  run.title = "Error renaming users logon names";
  run.user = run.session.platform.directory.GetObject(run.node.key);
  run.OldName =
      run.session.form1.CNName.value ? plain_name(run.user->Name()) : text_of(run.user, "samAccountName");
  const std::string logon(base::trim(window.Logon_Name_pre2000.text.get()));
  if (!logon.empty())
    run.user->Put("samAccountName", logon);
  const std::string& principal = window.User_logon_name.text;
  put_or_clear(run.user, "userPrincipalName",
               principal.empty() ? std::string() : principal + window.AD_Domain.caption.get());
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
    session.form1.TreeView1.set_text(run.node, text);
}

void rename_object(RenameRun& run) {
  Session& session = run.session;
  run.text = "Error renaming user in AD\r\nCheck the names does not exist in the current OU";
  run.title = "Error renaming user object in AD";
  if (!session.rename_user.Full_Name_Changed)
    return;
  // A comma of the name, and whatever else a name in a path must have escaped.
  const std::string name = platform::escape_dn_value(base::trim(session.rename_user.Full_Name.text.get()));
  const std::string old_path = run.user->ADsPath();
  // The container by the server in the key; its own node may be hidden by a limit to one OU.
  run.user = session.platform.directory.GetObject(run.user->Parent())->MoveHere(old_path, "CN=" + name);
  const std::string old_key = run.node.key;
  session.form1.TreeView1.set_key(run.node, "LDAP://" + session.DomainName + "/" +
                                                std::string(directory::name_in_path(run.user->ADsPath())));
  show_new_text(run);
  set_row(session.multi_user.ListView2, old_key, run.node);
  set_row(session.groups.NotMembers, old_key, run.node);
}

void rename_directories(RenameRun& run) {
  Session& session = run.session;
  const session::RenameUser& window = session.rename_user;
  const bool by_common_name = session.form1.CNName.value;
  const bool changed = by_common_name ? window.Full_Name_Changed : window.Logon_Name_Changed;
  if (!window.ReNameSD.on() || !changed)
    return;
  const std::string NewName(
      base::trim(by_common_name ? window.Full_Name.text.get() : window.Logon_Name_pre2000.text.get()));
  const ObjectPtr user = session.platform.directory.GetObject(run.node.key);
  rename_folders_of(session, user, run.OldName, NewName,
                    {"Renamed profile Dir :", "Failed to Rename Profile Directory: "});
  session::LOG_TAB(session, session::kGreen, run.OldName + " to " + NewName + " has been renamed");
}

void rename(RenameRun& run) {
  save_logon_names(run);
  save_display_names(run);
  rename_object(run);
  run.session.log.line("Changing Names for: " + text_of(run.user, "samAccountName"));
  run.user.reset();
  rename_directories(run);
  show_new_text(run);
}

bool has_refused_text(Session& session) {
  const session::RenameUser& window = session.rename_user;
  return stores::refuses_control_characters(
      session, {window.Full_Name.text.get(), window.First_Name.text.get(), window.Last_Name.text.get(),
                window.Display_Name.text.get(), window.User_logon_name.text.get(),
                window.Logon_Name_pre2000.text.get()});
}

}  // namespace

void show_rename_user(Session& session) {
  base::Trap trap;
  if (trap([&] { RenameUser_Load(session); }))
    return session.platform.dialogs.show_modal("RenameUser");
  session.form1.StatusBar1.panel1 = "Unable to read the user: " + trap.description();
}

void RenameUser_Load(Session& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr)
    base::raise(base::error::kOutOfBounds, "no user is selected");
  const ObjectPtr object = session.platform.directory.GetObject(node->key);
  const platform::User user(object);
  session::RenameUser& window = session.rename_user;
  window.Full_Name.text = plain_name(object->Name());
  window.First_Name.text = user.FirstName();
  window.Last_Name.text = user.LastName();
  window.Display_Name.text = user.FullName();
  window.AD_Domain.caption = "@" + session.DomainName;
  window.WINNT_Domain.caption = session.NTDomainName + "\\";
  window.Logon_Name_pre2000.text = text_of(object, "samAccountName");
  const std::string principal = text_of(object, "userPrincipalName");
  window.User_logon_name.text = principal.substr(0, principal.find('@'));
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
  controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr || has_refused_text(session))
    return false;
  session.form1.mouse_pointer = 11;
  session.log.begin_block(session);
  session.log.line("Renaming user:" + node->text);
  RenameRun run{session, *node, {}, {}, {}, {}};
  base::Trap trap;
  const bool renamed = trap([&] { rename(run); });
  if (!renamed)
    session.log.line(run.title + ": " + trap.description());
  session.log.close();
  session.form1.mouse_pointer = 0;
  if (!renamed) {
    session.platform.dialogs.MsgBox(run.text + "\r\n\r\n" + trap.description(), platform::Buttons::kOk,
                                    platform::Icon::kCritical, run.title);
  }
  return renamed;
}

}  // namespace twk::lifecycle
