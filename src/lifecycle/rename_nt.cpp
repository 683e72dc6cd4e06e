#include "lifecycle/rename_nt.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/operations.hpp"
#include "lifecycle/rename_shr_dir.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"
#include "stores/typed_text.hpp"

namespace twk::lifecycle {
namespace {

using platform::ObjectPtr;
using session::Session;

constexpr std::string_view kRefused = ",<>?/\\*[]{};:'\"";

/// Logs each character that no account name has; the first of them, or nothing.
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

std::string domain_path(const Session& session) {
  return "WinNT://" + session.DomainName;
}

void rename_account(Session& session, controls::TreeNode& node, const std::string& new_name) {
  const std::string old_name = session.rename_nt.OldName;
  session.platform.directory.GetObject(domain_path(session))
      ->MoveHere(domain_path(session) + "/" + old_name, new_name);
  session.form1.StatusBar1.panel1 = old_name + " Renamed to " + new_name;
  session.form1.TreeView1.set_text(node, new_name);
  base::Trap taken;
  taken([&] { session.form1.TreeView1.set_key(node, new_name); });
  for (controls::ListView* const list : {&session.multi_user.ListView2, &session.groups.NotMembers}) {
    if (const controls::ListRow* const row = list->find_key(old_name)) {
      controls::ListRow& found = list->at(list->place_of(*row));
      taken([&] { list->set_key(found, new_name); });
      list->set_text(found, new_name);
    }
  }
  session.rename_nt.OldName = new_name;
  session::LOG_TAB(session, session::kGreen, " " + old_name + " renamed to " + new_name);
}

void rename_directories(Session& session, const std::string& old_name, const std::string& new_name) {
  if (!session.rename_nt.RenameDir.on())
    return;
  session.form1.StatusBar1.panel1 = "Renaming User Share(s)/Directory(s)";
  const ObjectPtr user = session.platform.directory.GetObject(domain_path(session) + "/" + new_name);
  rename_folders_of(session, user, old_name, new_name,
                    {"Renamed Profile Dir: ", "Failed to Rename Profile Directory: "});
}

void change_logon_name(Session& session, controls::TreeNode& node) {
  const std::string old_name = session.rename_nt.OldName;
  const std::string new_name(base::trim(session.rename_nt.User_Logon.text.get()));
  session.log.begin_block(session);
  session.log.line("Rename User " + old_name + " to " + new_name);
  const std::string refused = find_refused(session, session.rename_nt.User_Logon.text.get());
  if (refused.empty()) {
    rename_account(session, node, new_name);
    return rename_directories(session, old_name, new_name);
  }
  session::LOG_TAB(session, session::kRed, " Error Renaming " + old_name);
  session.form1.StatusBar1.panel1 = "Invalid Character in User Name: " + refused;
}

void change_full_name(Session& session) {
  const ObjectPtr object =
      session.platform.directory.GetObject(domain_path(session) + "/" + session.rename_nt.OldName);
  platform::User user(object);
  user.put_FullName(session.rename_nt.Full_Name.text.get());
  user.SetInfo();
}

}  // namespace

void show_rename_nt(Session& session) {
  base::Trap trap;
  if (trap([&] { Rename_NT_Load(session); }))
    return session.platform.dialogs.show_modal("Rename_NT");
  session.form1.StatusBar1.panel1 = "Unable to read the user: " + trap.description();
}

void Rename_NT_Load(Session& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr)
    base::raise(base::error::kOutOfBounds, "no user is selected");
  const platform::User user(
      session.platform.directory.GetObject(domain_path(session))->GetObject("user", node->text));
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
  controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (!window.Logon_Changed && !window.Name_Changed)
    return true;
  if (node == nullptr || base::trim(window.User_Logon.text.get()).empty() ||
      stores::refuses_control_characters(session,
                                         {window.User_Logon.text.get(), window.Full_Name.text.get()}))
    return false;
  session.form1.mouse_pointer = 11;
  base::Trap trap;
  trap([&] {
    if (window.Logon_Changed)
      change_logon_name(session, *node);
    if (window.Name_Changed)
      change_full_name(session);
  });
  if (trap.number() != 0) {
    session.log.line("Error Number: " + base::to_text(trap.number()));
    session.log.line(trap.description());
    session::LOG_TAB(session, session::kRed, " Error Renaming " + window.OldName);
    session.form1.StatusBar1.panel1 = trap.description();
  }
  session.log.close();
  session.form1.mouse_pointer = 0;
  return true;
}

}  // namespace twk::lifecycle
